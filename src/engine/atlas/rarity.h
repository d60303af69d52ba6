#pragma once

#include <array>
#include <cstdint>

#include "engine/atlas/range.h"

namespace zelvion::atlas {

/// How unlike an image a multiset is: the sum over the ten digits of a weight for their count. The proofs
/// hold for any weights that never increase with the count; good weights save time.
struct Rarity {
  using Weight = std::uint16_t;

  /// weights[digit][count]; no weight is above kGreatestWeight.
  std::array<std::array<Weight, kMaxRangeDigits + 1>, 10> weights{};

  static constexpr Weight kGreatestWeight = 0x7FFF;

  /// Weights that suit the power `k`: the negative logarithm of a count's probability under a Poisson
  /// distribution, constant from a little above the mean. The means are sampled: from the second images of
  /// random numbers. All in integers, so that every machine gets the same weights.
  static Rarity of(std::int32_t k);
};

}  // namespace zelvion::atlas
