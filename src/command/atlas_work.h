#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "command/arguments.h"
#include "command/parts.h"
#include "command/resumption.h"
#include "command/run.h"
#include "engine/atlas/records.h"
#include "pages/facts.h"

namespace zelvion::command {

inline constexpr Option kDigitsOption = {
    0, "chiffres", "D", "compte les nombres d'au plus D chiffres (par défaut tous, ou 18 dès k = 46)"};
inline constexpr Option kMemoryOption = {0, "memoire", "Mo",
                                         "la mémoire pour compter (par défaut, au plus 512 Mo)"};

/// The work that a call asks of the atlas.
struct AtlasWork {
  /// Reads kDigitsOption, kMemoryOption, kThreadsOption and kResumeOption. Throws WrongCall, and as
  /// Resumption.
  AtlasWork(const Arguments& arguments, const Environment& environment, IntegerRange powers, bool withBasins);

  /// How many digits the numbers that are counted for the power `k` may have.
  int digitsFor(std::int32_t k) const;

  bool withBasins;
  std::optional<int> digits;
  int leastDigits = 1;  ///< to count, whatever the power
  std::size_t memory;   ///< in bytes
  unsigned threads;
  std::optional<Resumption> resumption;
};

/// Progress within a power: `done` of `count` parts.
struct Stretch {
  std::uint32_t done = 0;
  std::uint32_t count = 1;
};

/// What lies in a part of the power `k`, with a line of progress; nothing if the work was stopped.
std::optional<SearchPart> findPart(std::int32_t k, Part part, const AtlasWork& work, Environment& environment,
                                   Stretch stretch = {});

/// The facts of one power, likewise, kept in and taken from the resumption if there is one.
std::optional<pages::AtlasFacts> findFacts(std::int32_t k, AtlasWork& work, Environment& environment);
/// Those of all parts of a power in one. Without basins there are none in the facts.
pages::AtlasFacts factsOf(SearchPart whole);

/// The least numbers with more steps than those counted, as atlas::recordsBeyond(), with a line of progress.
atlas::FarRecords findRecordsBeyond(const atlas::Basins& counted, const AtlasWork& work,
                                    Environment& environment);

}  // namespace zelvion::command
