#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/atlas/basins.h"
#include "engine/atlas/cycle.h"

namespace zelvion::pages {

/// What the atlas tells of one power.
struct AtlasFacts {
  std::int32_t k;
  int rangeDigits;                   ///< every orbit falls below 10 to the power of this
  std::vector<atlas::Cycle> cycles;  ///< all there are, sorted
  atlas::Basins basins;              ///< of the numbers below 10^basins.digits

  std::size_t fixedPoints() const;
  /// Whether all numbers below 10^rangeDigits are counted.
  bool countsAll() const { return basins.digits == rangeDigits; }
  /// The basin of a cycle, null if no number that was counted falls into it.
  const atlas::Basin* basinOf(const atlas::Cycle& cycle) const;
  /// The share of the numbers counted, from 0 to 1.
  double share(const atlas::Basin* basin) const;
  double largestShare() const;
};

/// The facts of one power. Throws std::runtime_error, with a French sentence, where the two engines do not
/// agree.
AtlasFacts factsOf(std::int32_t k, std::vector<atlas::Cycle> cycles, atlas::Basins basins);

/// `part` / 10^digits, from 0 to 1.
double shareOf(const Decimal& part, int digits);

/// What is proven of the cycles, in two sentences.
std::string proofText(const AtlasFacts& facts);
/// Which numbers were counted, in a sentence.
std::string countedText(const AtlasFacts& facts);

}  // namespace zelvion::pages
