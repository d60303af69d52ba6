#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/transform/packed_silhouette.h"

namespace zelvion::atlas {

/// The leading digits that two numbers have in common, from the highest limb down.
struct CommonDigits {
  PackedSilhouette counts = 0;
  int size = 0;  ///< how many there are, zeros among them

  void add(PackedSilhouette more, int count) {
    counts += more;
    size += count;
  }

  /// Adds the leading digits that two limbs of sixteen digits share; nothing below these limbs is common.
  /// Bisects: takes the half of the digits in which the limbs differ, then half of that.
  void addOfLimb(std::uint64_t low, std::uint64_t high) {
    const auto halve = [&](std::uint64_t unit, int digits) {
      if (low / unit == high / unit) {
        add(packedOfEight(low / unit), digits);
        low %= unit;
        high %= unit;
      } else {
        low /= unit;
        high /= unit;
      }
    };
    halve(100'000'000, 8);
    halve(10'000, 4);
    addOfFour(low, high);
  }

  /// The same for numbers of four digits, or for those in front of their last ones. The units are constants,
  /// so that the divisions compile to products.
  template <std::uint32_t kUnit = 1, int kDigits = 4>
  void addOfFour(std::uint64_t low, std::uint64_t high) {
    const std::uint32_t front = static_cast<std::uint32_t>(low) / kUnit;
    if (front == static_cast<std::uint32_t>(high) / kUnit) {
      add(kPackedOfFour[front], kDigits);
    } else if constexpr (kDigits > 1) {
      addOfFour<10 * kUnit, kDigits - 1>(low, high);
    }
  }
};

}  // namespace zelvion::atlas
