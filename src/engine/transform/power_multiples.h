#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "engine/arith/decimal.h"
#include "engine/arith/fixed_sum.h"
#include "engine/transform/packed_silhouette.h"

namespace zelvion {

/// The powers d^k of the ten digits d; `k` is at least 1.
inline std::array<Decimal, 10> digitPowers(std::int32_t k) {
  std::array<Decimal, 10> powers;
  for (std::size_t digit = 0; digit < 10; ++digit) {
    powers[digit] = Decimal::power(Decimal(digit), static_cast<std::uint64_t>(k));
  }
  return powers;
}

/// The multiples of the digits' powers, and the images that they add up to, for numbers of up to
/// FixedSum<kLimbs>::kDigits digits. For searches that know how many digits there are; Transformation takes
/// any number.
template <std::size_t kLimbs>
class PowerMultiples {
 public:
  using Sum = FixedSum<kLimbs>;

  /// Of the digits from 0 to `greatest`, whose powers fit a sum, up to `count` times each.
  PowerMultiples(const std::array<Decimal, 10>& powers, std::size_t count, std::size_t greatest = 9) {
    assert(count <= Sum::kDigits);
    for (std::size_t digit = 0; digit <= greatest; ++digit) {
      auto& multiples = multiples_[digit];
      const Sum power = Sum::of(powers[digit]);
      for (std::size_t i = 1; i <= count; ++i) multiples[i] = multiples[i - 1] + power;
    }
  }

  /// count * digit^k
  const Sum& multiple(std::size_t digit, std::size_t count) const { return multiples_[digit][count]; }

  Sum image(PackedSilhouette silhouette) const {
    Sum sum;
    for (std::size_t digit = 1; digit <= 9; ++digit) {
      sum.addLimbs(multiple(digit, silhouette & kMaxPackedCount));
      silhouette >>= kPackedCountBits;
    }
    sum.carry();
    return sum;
  }
  /// The silhouette of the image.
  PackedSilhouette next(PackedSilhouette silhouette) const { return packed(image(silhouette)); }

 private:
  std::array<std::array<Sum, Sum::kDigits + 1>, 10> multiples_{};
};

}  // namespace zelvion
