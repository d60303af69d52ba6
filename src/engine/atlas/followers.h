#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/atlas/found_cycles.h"
#include "engine/atlas/rarity_table.h"

namespace zelvion::atlas {

/// Follows multisets, many side by side, each until an iterate is less rare than its start or equals it,
/// which is a cycle.
///
/// A return is looked for at the start alone: that is one comparison a step without memory, and a cycle is
/// found from its rarest point whatever else leads into it. Nearly all followers end after a step or two; one
/// that takes long goes on by Brent's method, since it may have run into a cycle without its start.
template <std::size_t kLimbs>
class Followers {
 public:
  /// All have to outlive the object. `digits` is how many a multiset has.
  Followers(const PowerMultiples<kLimbs>& powers, const RarityTable& rarity, int digits,
            FoundCycles<kLimbs>& found)
      : powers_(powers), rarity_(rarity), digits_(digits), found_(found), batch_(kBatch) {}

  /// `image` is that of the multiset `start`, whose rarity is `rarity`.
  void add(PackedSilhouette start, PackedSilhouette image, std::uint32_t rarity) {
    batch_[waiting_++] = {start, image, rarity, 0};
    while (waiting_ == kBatch) stepAll();
  }

  /// Follows all to their ends.
  void finish() {
    while (waiting_ > 0) stepAll();
  }

 private:
  static constexpr std::size_t kBatch = 512;
  static constexpr std::uint32_t kPatience = 100;

  struct Follower {
    PackedSilhouette start;
    PackedSilhouette current;
    std::uint32_t rarity;  // of the start
    std::uint32_t steps;
  };

  bool isStillRarer(const Follower& follower) const {
    return rarity_.of(follower.current, digits_) >= follower.rarity;
  }

  void stepAll() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < waiting_; ++i) {
      Follower follower = batch_[i];
      follower.current = powers_.next(follower.current);
      ++follower.steps;
      batch_[kept] = follower;
      if (follower.current == follower.start) {
        found_.enter(follower.start);
      } else if (follower.steps >= kPatience) {
        followOn(follower);
      } else {
        kept += isStillRarer(follower) ? 1 : 0;
      }
    }
    waiting_ = kept;
  }

  void followOn(Follower follower) {
    PackedSilhouette mark = 0;
    for (std::uint64_t step = 0, markAt = 1; isStillRarer(follower); ++step) {
      if (follower.current == follower.start) {
        found_.enter(follower.start);
        return;
      }
      if (step > 0 && follower.current == mark) return;
      if (step == markAt - 1) {
        mark = follower.current;
        markAt *= 2;
      }
      follower.current = powers_.next(follower.current);
    }
  }

  const PowerMultiples<kLimbs>& powers_;
  const RarityTable& rarity_;
  int digits_;
  FoundCycles<kLimbs>& found_;
  std::vector<Follower> batch_;
  std::size_t waiting_ = 0;
};

}  // namespace zelvion::atlas
