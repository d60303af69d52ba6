#pragma once

#include <cstddef>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engine/atlas/cycle.h"
#include "engine/parallel/pieces.h"
#include "engine/transform/power_multiples.h"

namespace zelvion::atlas {

/// The cycles that several threads find, each once.
template <std::size_t kLimbs>
class FoundCycles {
 public:
  using Sum = FixedSum<kLimbs>;

  /// Counts the cycles in `progress`. Both arguments have to outlive the object.
  FoundCycles(const PowerMultiples<kLimbs>& powers, Progress& progress)
      : powers_(powers), progress_(progress) {}

  /// Takes the cycle of a multiset that comes back, and returns its number.
  std::size_t enter(PackedSilhouette start) {
    const std::scoped_lock lock(mutex_);
    if (const auto known = points_.find(start); known != points_.end()) return known->second.cycle;
    std::vector<Decimal> points;
    PackedSilhouette place = start;
    do {
      const Sum point = powers_.image(place);
      place = packed(point);
      points_.emplace(place, Point{point, cycles_.size()});
      points.push_back(point.decimal());
    } while (place != start);
    cycles_.emplace_back(std::move(points));
    progress_.found = cycles_.size();
    return cycles_.size() - 1;
  }

  /// The point with these digits on a cycle that was entered, or null. There is only one: two would have the
  /// same image, and a point of a cycle is the image of one point of it. It stays where it is.
  const Sum* pointWith(PackedSilhouette digits) const {
    const std::scoped_lock lock(mutex_);
    const auto place = points_.find(digits);
    return place == points_.end() ? nullptr : &place->second.number;
  }

  /// The cycles by their numbers, once no thread enters any more.
  const std::vector<Cycle>& all() const { return cycles_; }

 private:
  struct Point {
    Sum number;
    std::size_t cycle;
  };

  const PowerMultiples<kLimbs>& powers_;
  Progress& progress_;
  mutable std::mutex mutex_;
  std::unordered_map<PackedSilhouette, Point> points_;  // of all cycles
  std::vector<Cycle> cycles_;
};

}  // namespace zelvion::atlas
