#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/arguments.h"
#include "engine/atlas/basins.h"
#include "engine/atlas/cycle_list.h"

namespace zelvion::command {

/// What a search has found of one power, or of a part of it: the fixed points, or else the cycles and, where
/// they were counted, the basins.
struct SearchPart {
  std::int32_t k = 0;
  Part part;
  std::optional<std::vector<Decimal>> points;  ///< sorted
  std::vector<atlas::Cycle> cycles;
  std::optional<atlas::Basins> basins;

  /// The subcommand that searches so.
  std::string_view search() const { return points ? "points-fixes" : "cycles"; }
};

inline constexpr Option kPartOption = {0, "partie", "I/N",
                                       "ne fait que la partie I de N, et l'écrit en JSON pour --reunir"};
inline constexpr Option kJoinOption = {0, "reunir", "", "réunit les parties que donnent les fichiers nommés"};

/// The part that the value of an option means, as "3/64". Throws WrongCall.
Part readPart(std::string_view text);

/// A part as a line of JSON with a checksum, and back; nothing if it is damaged.
std::string jsonOf(const SearchPart& part);
std::optional<SearchPart> partOf(std::string_view json);

/// Joins all parts of one power, which must be complete and of the same search.
SearchPart joined(std::vector<SearchPart> parts);

/// The same of parts in the files that a call of the subcommand `search` with kJoinOption names. Throws
/// WrongCall, and std::runtime_error, with a French sentence, at a file that cannot be read or holds no whole
/// part of that search, and where parts are missing, doubled, or not of one work.
SearchPart joinedFiles(const Arguments& arguments, std::string_view search);

/// A line of JSON that holds a text under `key`, with a sum as parts have it, and the text of such a line:
/// nothing if it is none or damaged.
std::string sealed(std::string_view key, std::string_view text);
std::optional<std::string> unsealed(std::string_view key, std::string_view json);

}  // namespace zelvion::command
