#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "command/arguments.h"
#include "command/atlas_facts.h"
#include "command/run.h"
#include "engine/atlas/cycle_list.h"

namespace zelvion::command {

inline constexpr Option kDigitsOption = {
    0, "chiffres", "D", "compte les nombres d'au plus D chiffres (par défaut tous, ou 18 dès k = 46)"};
inline constexpr Option kMemoryOption = {0, "memoire", "Mo",
                                         "la mémoire pour compter (par défaut, au plus 512 Mo)"};

/// What the atlas is to work out, as a call has it.
struct AtlasWork {
  /// Reads kDigitsOption, kMemoryOption and kThreadsOption. Throws WrongCall.
  AtlasWork(const Arguments& arguments, const Environment& environment);

  /// How many digits the numbers that are counted for the power `k` may have.
  int digitsFor(std::int32_t k) const;

  std::optional<int> digits;
  std::size_t memory;  ///< in bytes
  unsigned threads;
  atlas::Part part = {};
};

// The engines, with a line of progress; nothing if the work was stopped.
std::optional<std::vector<atlas::Cycle>> findCycles(std::int32_t k, const AtlasWork& work,
                                                    Environment& environment);
std::optional<atlas::Basins> countBasins(std::int32_t k, const AtlasWork& work, Environment& environment);

/// Says on the error stream which power the work was interrupted in.
void tellInterrupted(std::int32_t k, Environment& environment);

/// The facts of one power. Throws std::runtime_error, with a French sentence, where the two engines do not
/// agree.
AtlasFacts factsOf(std::int32_t k, std::vector<atlas::Cycle> cycles, atlas::Basins basins);
/// The same, worked out.
std::optional<AtlasFacts> findFacts(std::int32_t k, const AtlasWork& work, Environment& environment);

}  // namespace zelvion::command
