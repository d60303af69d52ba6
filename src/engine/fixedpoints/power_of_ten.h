#pragma once

#include <cstdint>

namespace zelvion {

/// Division of a number below 10^16 by a power of ten, as a product: exact since 2^54 is more than 10^16 and
/// the multiplier, rounded up, has 63 bits.
class PowerOfTen {
 public:
  explicit PowerOfTen(std::uint64_t value = 1) {
    __extension__ using Wide = unsigned __int128;
    while ((std::uint64_t{2} << shift_) <= value) ++shift_;
    multiplier_ = static_cast<std::uint64_t>(((static_cast<Wide>(1) << (63 + shift_)) - 1) / value) + 1;
  }

  std::uint64_t divide(std::uint64_t number) const {
    __extension__ using Wide = unsigned __int128;
    return static_cast<std::uint64_t>((static_cast<Wide>(2 * number) * multiplier_) >> 64) >> shift_;
  }

 private:
  std::uint64_t multiplier_;
  unsigned shift_ = 0;
};

}  // namespace zelvion
