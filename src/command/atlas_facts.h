#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/atlas/basins.h"
#include "engine/atlas/cycle.h"

namespace zelvion::command {

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

/// `part` / 10^digits, from 0 to 1.
double shareOf(const Decimal& part, int digits);

// Numbers for French readers: digits in groups, and a share as "41,3 %", in powers of ten where it is tiny.
std::string groupedDigits(std::string_view digits);
std::string percentText(double share);
/// "10⁸".
std::string powerOfTenText(int exponent);
/// A number with at most `decimals` decimals, for a picture.
std::string decimalText(double value, int decimals = 1);

/// What is proven of the cycles, in two sentences.
std::string proofText(const AtlasFacts& facts);
/// Which numbers were counted, in a sentence.
std::string countedText(const AtlasFacts& facts);

}  // namespace zelvion::command
