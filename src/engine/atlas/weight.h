#pragma once

#include <cassert>
#include <cstdint>
#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion::atlas {

/// A natural number below 2^192, exact: how many numbers there are of some kind. Overflow is not detected;
/// the caller keeps below the limit.
class Weight {
 public:
  Weight() = default;
  explicit Weight(std::uint64_t value) : low_(value) {}

  Weight& operator+=(const Weight& other) {
    low_ += other.low_;
    high_ += other.high_ + (low_ < other.low_ ? 1 : 0);
    return *this;
  }

  /// Subtracts `other`, which must not be greater.
  Weight& operator-=(const Weight& other) {
    assert(high_ > other.high_ || (high_ == other.high_ && low_ >= other.low_));
    high_ -= other.high_ + (low_ < other.low_ ? 1 : 0);
    low_ -= other.low_;
    return *this;
  }

  friend Weight operator*(const Weight& weight, std::uint64_t factor) {
    const Wide lowest = static_cast<Wide>(static_cast<std::uint64_t>(weight.low_)) * factor;
    const Wide middle = (weight.low_ >> 64) * factor + (lowest >> 64);
    Weight product;
    product.low_ = middle << 64 | static_cast<std::uint64_t>(lowest);
    product.high_ = weight.high_ * factor + static_cast<std::uint64_t>(middle >> 64);
    return product;
  }

  /// Divides by `divisor`, not 0, and returns the remainder.
  std::uint64_t divideBy(std::uint64_t divisor) {
    std::uint64_t remainder = high_ % divisor;
    high_ /= divisor;
    Wide quotient = 0;
    for (const std::uint64_t word :
         {static_cast<std::uint64_t>(low_ >> 64), static_cast<std::uint64_t>(low_)}) {
      const Wide rest = static_cast<Wide>(remainder) << 64 | word;
      quotient = quotient << 64 | rest / divisor;
      remainder = static_cast<std::uint64_t>(rest % divisor);
    }
    low_ = quotient;
    return remainder;
  }

  Decimal decimal() const {
    std::vector<Decimal::Limb> limbs;
    for (Weight rest = *this; rest != Weight();) {
      limbs.push_back(static_cast<Decimal::Limb>(rest.divideBy(Decimal::kBase)));
    }
    Decimal number;
    number.assign(limbs);
    return number;
  }

  friend bool operator==(const Weight&, const Weight&) = default;

 private:
  __extension__ using Wide = unsigned __int128;

  Wide low_ = 0;
  std::uint64_t high_ = 0;
};

}  // namespace zelvion::atlas
