#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/atlas/basin_plan.h"
#include "engine/atlas/fate_finder.h"
#include "engine/atlas/tally.h"

namespace zelvion::atlas {

/// One thread of a count of basins:
/// 1. It takes the multisets in rows that differ in their ones, whose images are successive numbers.
/// 2. It looks up the fates of the images, a batch at a time.
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

  explicit BasinWorker(BasinPlan<kLimbs>& plan) : plan_(plan), finder_(plan) {}

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
    std::size_t left = 0;
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

  // Counts the multisets of the rows.
  void flush() {
    finder_.find({images_.data(), size_}, fates_);
    const std::uint64_t* fate = fates_.data();
    for (const Row& row : rows_) {
      for (std::size_t ones = 0; ones <= row.left; ++ones) count(row, ones, Fate::of(*fate++));
    }
    rows_.clear();
    size_ = 0;
  }

  // Counts a multiset of a row whose image has this fate.
  void count(const Row& row, std::size_t ones, const Fate& fate) {
    while (fate.cycle >= tallies_.size()) tallies_.push_back(std::make_unique<Tally>());
    Tally& tally = *tallies_[fate.cycle];
    const Weight weight = row.weight * plan_.binomials[row.left][ones];
    tally.byNonzero[plan_.digits - row.left + ones] += weight;
    LeastNumber least = row.least;
    least.add(1, ones);
    const std::size_t tail = 1 + finder_.tailOfImage(least.silhouette(), fate);
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
  FateFinder<kLimbs> finder_;
  std::vector<std::unique_ptr<Tally>> tallies_;
  std::vector<Row> rows_;
  std::array<PackedSilhouette, kMaxImages> images_{};  // of the multisets of the rows
  std::array<std::uint64_t, kMaxImages> fates_{};      // of the images, in words
  std::size_t size_ = 0;
  Sum lastImage_;
  std::array<PackedSilhouette, kLimbs> lastDigits_{};
};

}  // namespace zelvion::atlas
