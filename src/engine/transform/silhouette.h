#pragma once

#include <array>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>

#include "engine/arith/decimal.h"

namespace zelvion {

/// How many digits 1, 2, ... 9 a number has: counts[0] is for the digit 1, counts[8] for the digit 9.
struct Silhouette {
  std::array<std::uint32_t, 9> counts{};

  friend bool operator==(const Silhouette&, const Silhouette&) = default;
};

/// How many digits other than zero there are in all.
inline std::uint32_t totalOf(const Silhouette& silhouette) {
  return std::accumulate(silhouette.counts.begin(), silhouette.counts.end(), 0U);
}

/// The silhouette of the number.
Silhouette silhouetteOf(const Decimal& number);
/// The silhouette of a text of digits; other characters are passed over.
Silhouette silhouetteOf(std::string_view digits);

/// The least number with a silhouette, as text: its digits ascend.
std::string leastNumber(const Silhouette& silhouette);

}  // namespace zelvion
