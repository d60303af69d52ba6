#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/atlas/rarity.h"
#include "engine/transform/packed_silhouette.h"

namespace zelvion::atlas {

/// The weights of a rarity as the walk looks them up: those of two digits at once.
class RarityTable {
 public:
  explicit RarityTable(const Rarity& rarity) : rarity_(rarity) {
    for (std::size_t pair = 0; pair < 5; ++pair) {
      for (std::size_t i = 0; i < kPairs; ++i) {
        pairs_.push_back(
            static_cast<std::uint16_t>(rarity.weights[2 * pair + 1][i & kMaxPackedCount] +
                                       rarity.weights[(2 * pair + 2) % 10][i >> kPackedCountBits]));
      }
    }
    for (int digit = 0; digit < 10; ++digit) {
      const auto d = static_cast<std::size_t>(digit);
      for (std::size_t rest = 0; rest <= kMaxRangeDigits; ++rest) {
        std::uint32_t least = digit == 0 ? weight(0, static_cast<int>(rest)) : ~std::uint32_t{0};
        for (std::size_t count = 0; digit > 0 && count <= rest; ++count) {
          least = std::min(least, rarity.weights[d][count] + least_[d - 1][rest - count]);
        }
        least_[d][rest] = least;
      }
    }
  }

  std::uint32_t weight(int digit, int count) const {
    return rarity_.weights[static_cast<std::size_t>(digit)][static_cast<std::size_t>(count)];
  }
  /// The rarity of `digits` digits of which `counts` are no zeros.
  std::uint32_t of(PackedSilhouette counts, int digits) const {
    const auto zeros = static_cast<std::uint64_t>(digits) - totalOf(counts);
    const std::uint16_t* const pairs = pairs_.data();
    return std::uint32_t{pairs[counts % kPairs]} + pairs[kPairs + (counts >> 14) % kPairs] +
           pairs[2 * kPairs + (counts >> 28) % kPairs] + pairs[3 * kPairs + (counts >> 42) % kPairs] +
           pairs[4 * kPairs + (counts >> 56 | zeros << kPackedCountBits)];
  }
  /// The least that the weights of the digits 0 to `digit` can be where there are `rest` of them.
  std::uint32_t least(int digit, int rest) const {
    return least_[static_cast<std::size_t>(digit)][static_cast<std::size_t>(rest)];
  }

 private:
  static constexpr std::size_t kPairs = std::size_t{1} << (2 * kPackedCountBits);

  Rarity rarity_;
  std::vector<std::uint16_t> pairs_;  // of the digits 1 and 2, of 3 and 4, ..., of 9 and 0
  std::array<std::array<std::uint32_t, kMaxRangeDigits + 1>, 10> least_{};
};

}  // namespace zelvion::atlas
