#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <utility>
#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion::atlas {

/// A cycle of a power: different numbers, each the image of the one before and the first that of the last.
class Cycle {
 public:
  /// `points` are all the points in the order of the cycle, from any of them on; there is at least one.
  explicit Cycle(std::vector<Decimal> points) : points_(std::move(points)) {
    std::rotate(points_.begin(), std::min_element(points_.begin(), points_.end()), points_.end());
  }

  std::size_t order() const noexcept { return points_.size(); }
  bool isFixedPoint() const noexcept { return order() == 1; }
  /// In the order of the cycle, the least first.
  const std::vector<Decimal>& points() const noexcept { return points_; }
  const Decimal& least() const noexcept { return points_.front(); }
  const Decimal& greatest() const noexcept { return *std::max_element(points_.begin(), points_.end()); }

  /// Cycles of one power are compared by their order, then by their least point.
  friend bool operator==(const Cycle& a, const Cycle& b) noexcept { return (a <=> b) == 0; }
  friend std::strong_ordering operator<=>(const Cycle& a, const Cycle& b) noexcept {
    if (const auto order = a.order() <=> b.order(); order != 0) return order;
    return a.least() <=> b.least();
  }

 private:
  std::vector<Decimal> points_;
};

}  // namespace zelvion::atlas
