#pragma once

#include <array>
#include <cstdint>

#include "engine/atlas/range.h"

namespace zelvion::atlas {

/// How far a multiset is from what images look like: the sum over the ten digits of a weight of their count.
/// What is proven with it holds for any weights that never rise with the count; good ones save time.
struct Rarity {
  using Weight = std::uint16_t;

  /// weights[digit][count]; no weight is above kGreatestWeight.
  std::array<std::array<Weight, kMaxRangeDigits + 1>, 10> weights{};

  static constexpr Weight kGreatestWeight = 0x7FFF;

  /// Weights that suit the power `k`: the logarithm of how unlikely a count is where it has the distribution
  /// of Poisson, level from a little above the mean. The means are those of images of images of drawn
  /// numbers. All in integers, so that every machine has the same weights.
  static Rarity of(std::int32_t k);
};

}  // namespace zelvion::atlas
