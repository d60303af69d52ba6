#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "engine/atlas/basin_plan.h"

namespace zelvion::atlas {

/// Finds the fates of multisets for one thread, with the table that all threads share. Those that are not in
/// the table are iterated side by side, a step at a time, so that the slot that each needs is prefetched
/// during a round.
template <std::size_t kLimbs>
class FateFinder {
 public:
  explicit FateFinder(BasinPlan<kLimbs>& plan) : plan_(plan) {}

  /// Puts the fates of the multisets into `fates`, as words. The slots of the multisets are prefetched.
  void find(std::span<const PackedSilhouette> multisets, std::span<std::uint64_t> fates) {
    std::size_t ways = 0;
    for (std::size_t i = 0; i < multisets.size(); ++i) {
      fates[i] = plan_.table.find(multisets[i]);
      if (fates[i] != 0) continue;
      if (ways == ways_.size()) ways_.emplace_back();
      Way& way = ways_[ways++];
      way.start = i;
      way.place = multisets[i];
      way.path.clear();
      way.kept = 0;
      advance(way);
    }
    while (ways > 0) {
      for (std::size_t i = 0; i < ways;) {
        Way& way = ways_[i];
        if (const std::uint64_t word = step(way)) {
          fates[way.start] = finish(way, Fate::of(word)).word();
          std::swap(way, ways_[--ways]);
        } else {
          ++i;
        }
      }
    }
  }

  /// How many steps the image of a multiset takes if the multiset of the image has this fate. Who has read a
  /// fate of one step sees the points of its cycle: they were entered, under the lock, before it was stored.
  std::size_t tailOfImage(PackedSilhouette digits, const Fate& fate) const {
    if (fate.steps > 1) return fate.steps;
    const FixedSum<kLimbs> image = plan_.powers.image(digits);
    const FixedSum<kLimbs>* const point = plan_.cycles.pointWith(packed(image));
    return point != nullptr && *point == image ? 0 : 1;
  }

 private:
  // The iterates of a multiset up to one whose fate is known. Coming back is looked for by Brent's method,
  // which needs no search of the path, and seldom: nearly all meet the table first.
  struct Way {
    std::size_t start = 0;               // its place among the multisets
    PackedSilhouette place = 0;          // the latest iterate
    std::vector<PackedSilhouette> path;  // to there
    std::size_t kept = 0;                // the iterate on the path that a later one is compared with
  };

  // The fate of the latest iterate; if it is unknown, 0 and one more step. An iterate that comes back closes
  // a cycle.
  std::uint64_t step(Way& way) {
    if (const std::uint64_t word = plan_.table.find(way.place)) return word;
    if (way.place == way.path[way.kept]) {
      const std::size_t cycle = plan_.cycles.enter(way.place);
      if (cycle >> Fate::kCycleBits != 0) throw std::length_error("more cycles than can be told apart");
      return Fate{cycle, 1}.word();
    }
    if (way.path.size() > 2 * way.kept) way.kept = way.path.size();
    advance(way);
    return 0;
  }

  void advance(Way& way) {
    way.path.push_back(way.place);
    way.place = plan_.powers.next(way.place);
    plan_.table.prefetch(way.place);
  }

  // Stores the fates of the path, its end first, and returns that of its start.
  Fate finish(const Way& way, Fate fate) {
    for (std::size_t i = way.path.size(); i-- > 0;) {
      fate.steps = 1 + tailOfImage(way.path[i], fate);
      plan_.table.store(way.path[i], fate.word());
    }
    return fate;
  }

  BasinPlan<kLimbs>& plan_;
  std::vector<Way> ways_;
};

}  // namespace zelvion::atlas
