#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "engine/atlas/basin_plan.h"
#include "engine/atlas/tally.h"

namespace zelvion::atlas {

/// One thread of a count of basins:
/// 1. It takes the multisets in rows that differ in their ones, whose images are successive numbers.
/// 2. It iterates the images that are not in the table, all of a batch side by side, to one that is.
/// 3. It adds the numbers of each multiset to the tally of its cycle.
///
/// For k = 3 and four digits, a 5, a 3 and 0 to 2 ones make a row with the images 152, 153 and 154. The
/// second multiset is that of 1530: 24 numbers, one of which is the fixed point 153, with a tail of 0; the
/// tail of the 23 others, 135 the least of them, is 1.
template <std::size_t kLimbs>
class BasinWorker {
 public:
  /// A piece has fixed counts of the digits from here to 9.
  static constexpr std::size_t kPieceDigit = 7;

  explicit BasinWorker(BasinPlan<kLimbs>& plan) : plan_(plan) {}

  void run(const BasinNode<kLimbs>& piece) {
    expand(plan_, piece, kPieceDigit - 1, 2, [this](const BasinNode<kLimbs>& row) { add(row); });
    flush();
  }

  /// By the numbers of the cycles.
  const std::vector<std::unique_ptr<Tally>>& tallies() const { return tallies_; }

 private:
  using Sum = FixedSum<kLimbs>;

  static constexpr std::size_t kBatch = 256;
  static constexpr std::size_t kMaxImages = kBatch + kMaxCountedDigits + 1;

  // Multisets that differ in how many of `left` digits are ones; the others are zeros.
  struct Row {
    LeastNumber least;
    Weight weight;
    std::size_t left;
  };

  // The iterates of an image up to one whose fate is known. Coming back is looked for by Brent's method,
  // which needs no search of the path, and seldom: nearly all meet the table first.
  struct Way {
    std::size_t image = 0;               // its place among the images
    PackedSilhouette place = 0;          // the latest iterate
    std::vector<PackedSilhouette> path;  // to there
    std::size_t kept = 0;                // the iterate on the path that a later one is compared with
  };

  // Takes the images of a row.
  void add(const BasinNode<kLimbs>& row) {
    rows_.push_back({row.least, row.weight, row.left});
    Sum image = row.sum;
    for (std::size_t ones = 0; ones <= row.left;) {
      const PackedSilhouette upper = upperOf(image);
      const std::uint64_t lastFour = image.limbs[0] % kPackedOfFour.size();
      const std::size_t end = std::min<std::size_t>(row.left + 1, ones + kPackedOfFour.size() - lastFour);
      const PackedSilhouette* lower = &kPackedOfFour[lastFour];
      const std::size_t ran = end - ones;
      for (; ones < end; ++ones) {
        const PackedSilhouette digits = upper + *lower++;
        plan_.table.prefetch(digits);
        images_[size_++] = digits;
      }
      if (ones <= row.left) image += Sum{{ran}};
    }
    if (size_ > kBatch) flush();
  }

  // The digits of an image above its lowest four. Most limbs are those of the image before.
  PackedSilhouette upperOf(const Sum& image) {
    PackedSilhouette digits = 0;
    for (std::size_t i = 0; i < kLimbs; ++i) {
      const std::uint64_t limb = image.limbs[i];
      if (limb != lastImage_.limbs[i]) {
        lastImage_.limbs[i] = limb;
        lastDigits_[i] = i == 0 ? packedOfTwelve(limb / kPackedOfFour.size()) : packedOfSixteen(limb);
      }
      digits += lastDigits_[i];
    }
    return digits;
  }

  // Counts the multisets of the rows. Unknown images are iterated together, a step at a time, so that the
  // slot of the table that each needs is prefetched during a round.
  void flush() {
    std::size_t ways = 0;
    for (std::size_t i = 0; i < size_; ++i) {
      fates_[i] = plan_.table.find(images_[i]);
      if (fates_[i] != 0) continue;
      if (ways == ways_.size()) ways_.emplace_back();
      Way& way = ways_[ways++];
      way.image = i;
      way.place = images_[i];
      way.path.clear();
      way.kept = 0;
      advance(way);
    }
    while (ways > 0) {
      for (std::size_t i = 0; i < ways;) {
        Way& way = ways_[i];
        if (const std::uint64_t word = step(way)) {
          fates_[way.image] = finish(way, Fate::of(word)).word();
          std::swap(way, ways_[--ways]);
        } else {
          ++i;
        }
      }
    }
    const std::uint64_t* fate = fates_.data();
    for (const Row& row : rows_) {
      for (std::size_t ones = 0; ones <= row.left; ++ones) count(row, ones, Fate::of(*fate++));
    }
    rows_.clear();
    size_ = 0;
  }

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

  // Stores the fates of the path, its end first, and returns that of the image.
  Fate finish(const Way& way, Fate fate) {
    for (std::size_t i = way.path.size(); i-- > 0;) {
      fate.steps = 1 + tailOfImage(way.path[i], fate);
      plan_.table.store(way.path[i], fate.word());
    }
    return fate;
  }

  // How many steps the image of a multiset takes if the multiset of the image has this fate. Who has read a
  // fate of one step sees the points of its cycle: they were entered, under the lock, before it was stored.
  std::size_t tailOfImage(PackedSilhouette digits, const Fate& fate) const {
    if (fate.steps > 1) return fate.steps;
    const Sum image = plan_.powers.image(digits);
    const Sum* const point = plan_.cycles.pointWith(packed(image));
    return point != nullptr && *point == image ? 0 : 1;
  }

  // Counts a multiset of a row whose image has this fate.
  void count(const Row& row, std::size_t ones, const Fate& fate) {
    while (fate.cycle >= tallies_.size()) tallies_.push_back(std::make_unique<Tally>());
    Tally& tally = *tallies_[fate.cycle];
    const Weight weight = row.weight * plan_.binomials[row.left][ones];
    tally.byNonzero[plan_.digits - row.left + ones] += weight;
    LeastNumber least = row.least;
    least.add(1, ones);
    const std::size_t tail = 1 + tailOfImage(least.silhouette(), fate);
    if (tail >= Tally::kNear) {
      tally.add(tail, weight, least);
    } else {
      countNear(tally, weight, least);
    }
  }

  // Counts a multiset whose image is on the cycle, as one of its numbers may be, too.
  void countNear(Tally& tally, Weight weight, const LeastNumber& least) {
    std::string others = least.decimal().padded(plan_.digits);
    if (const Sum* const sum = plan_.cycles.pointWith(least.silhouette())) {
      const Decimal point = sum->decimal();
      if (point.digits() <= plan_.digits) {
        tally.addNear(0, Weight(1), point);
        weight -= Weight(1);
        if (weight == Weight()) return;
        if (point.padded(plan_.digits) == others) std::next_permutation(others.begin(), others.end());
      }
    }
    tally.addNear(1, weight, Decimal::parse(others));
  }

  BasinPlan<kLimbs>& plan_;
  std::vector<std::unique_ptr<Tally>> tallies_;
  std::vector<Row> rows_;
  std::array<PackedSilhouette, kMaxImages> images_{};  // of the multisets of the rows
  std::array<std::uint64_t, kMaxImages> fates_{};      // of the images, in words
  std::size_t size_ = 0;
  Sum lastImage_;
  std::array<PackedSilhouette, kLimbs> lastDigits_{};
  std::vector<Way> ways_;
};

}  // namespace zelvion::atlas
