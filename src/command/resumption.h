#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "command/parts.h"
#include "command/subcommands.h"

namespace zelvion::command {

inline constexpr Option kResumeOption = {
    0, "reprise", "FICHIER", "y garde ce qui est fait : le même appel, refait, continue là où il en était"};

/// The file in which a search keeps the parts that are done, so that the same call can resume from there: a
/// line for the call, then one for each part, as jsonOf() writes it, whole or not at all. A damaged part is
/// searched anew.
class Resumption {
 public:
  /// Reads the file, or creates it for the search that `call` describes. Throws std::runtime_error, with a
  /// French sentence, where the file cannot be read or written or is of another search; it stays as it was
  /// then.
  Resumption(std::string file, const std::string& call);

  /// The power `k`, searched in `count` parts, of which those in the file are taken from there; work(part,
  /// done) is called for each other one, with how many are done. Nothing if it returned nothing. Throws
  /// std::runtime_error likewise.
  using Work = std::function<std::optional<SearchPart>(Part part, std::uint32_t done)>;
  std::optional<SearchPart> search(std::int32_t k, std::uint32_t count, const Work& work);

 private:
  void append(const std::string& line);

  std::string file_;
  bool cutShort_ = false;                                              ///< the last line has no end
  std::map<std::int32_t, std::map<std::uint32_t, SearchPart>> parts_;  ///< by power and number
};

/// That of kResumeOption, if a call has it. Throws WrongCall if it does not go with the others.
std::optional<Resumption> resumptionOf(const Arguments& arguments, const std::string& call);

}  // namespace zelvion::command
