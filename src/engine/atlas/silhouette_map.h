#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion::atlas {

/// The greatest power whose map is drawn: 5,005 multisets.
inline constexpr std::int32_t kMaxMapPower = 5;

/// A multiset of digits, and where the transformation leads from it.
struct MapNode {
  std::string digits;    ///< from the greatest down, zeros included
  Decimal image;         ///< of all its numbers
  std::size_t next = 0;  ///< the node that the digits of the image make
  bool onCycle = false;
};

/// All multisets of rangeDigits(k) digits, ascending by `digits`; `k` is from 1 to kMaxMapPower. One multiset
/// of a cycle leads to the next, and the numbers on that cycle are the images of its multisets.
std::vector<MapNode> silhouetteMap(std::int32_t k);

}  // namespace zelvion::atlas
