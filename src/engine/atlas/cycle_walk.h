#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/atlas/common_digits.h"
#include "engine/atlas/cycle.h"
#include "engine/atlas/cycle_list.h"
#include "engine/atlas/followers.h"
#include "engine/atlas/found_cycles.h"
#include "engine/atlas/range.h"
#include "engine/atlas/rarity.h"
#include "engine/atlas/rarity_table.h"
#include "engine/parallel/pieces.h"
#include "engine/transform/power_multiples.h"

namespace zelvion::atlas {

/// The null witness of a walk.
struct NullWitness {
  void pruned(PackedSilhouette, int, int) {}
};

/// The walk over the multisets of the range in search of every cycle, in three lines: choose the counts of
/// the digits 9, 8, 7, ... in turn; prune where all images are less rare than the multisets; follow what
/// remains.
///
/// On each cycle of multisets there is a point w whose rarity is least, so that none of its iterates has a
/// lesser one. The walk goes through the multisets, the count of 9 first, then that of 8 and so on down to 1
/// (the rest are zeros), and prunes those that cannot be such a w:
/// - Let the counts of the digits above d be chosen, with a sum S of powers, and let r digits from 0 to d be
///   still to come. Every image of such a multiset lies from S to S + r * d^k. The leading digits that these
///   two have in common are those of every image; more digits can only make the rarity less, since no weight
///   rises. So the weights of the common digits bound the rarity of the images from above.
/// - The weights of the chosen counts and the least weights that r digits can have bound the rarity of the
///   multisets from below. Where that is more, all of them are pruned: their images are less rare. Where it
///   is the same they stay.
/// - A multiset that is not pruned is followed to the first iterate that is less rare, or that is the
/// multiset
///   itself: that is a cycle.
///
/// For k = 3 and d = 4 digits, with three nines and nothing else chosen, S = 3 * 729 = 2187 and r = 1 digit
/// up to 8 is to come: the images lie from 2187 to 2699. They have the 2 in common, whose rarity bounds
/// theirs; if three nines are rarer than that, 9990 to 9998 are pruned at once. The multiset of 1530 is
/// followed: its image, 153 or 0153, is the multiset itself, and the cycle is the fixed point 153.
///
/// `Witness` is told what is pruned: pruned(counts, digit, rest), the multisets that have `counts` above
/// `digit` and `rest` digits from 0 to `digit`.
template <std::size_t kLimbs, typename Witness = NullWitness>
class CycleWalk {
 public:
  CycleWalk(const PowerMultiples<kLimbs>& powers, const RarityTable& rarity, int digits,
            FoundCycles<kLimbs>& found, Witness witness)
      : powers_(powers),
        rarity_(rarity),
        digits_(digits),
        followers_(powers, rarity, digits, found),
        witness_(witness) {}

  /// Walks over the multisets with these counts of the digits 9, 8 and 7.
  void run(const std::array<std::uint8_t, 3>& counts) {
    Sum sum;
    PackedSilhouette chosen = 0;
    std::uint32_t weight = 0;
    int rest = digits_;
    for (int i = 0; i < 3; ++i) {
      const int count = counts[static_cast<std::size_t>(i)];
      sum += powers_.multiple(9 - i, count);
      chosen += packed(9 - i, count);
      weight += rarity_.weight(9 - i, count);
      rest -= count;
    }
    // Only the digits of the range count: what the limbs have more are zeros in front of all images.
    const Known known{{0, digits_ - static_cast<int>(Sum::kDigits)}, kLimbs - 1};
    descend(6, rest, sum, known, weight, chosen);
  }

  /// Follows what has not been followed to its end.
  void finish() { followers_.finish(); }

 private:
  using Sum = FixedSum<kLimbs>;
  static constexpr int kLimbDigits = Sum::kLimbDigits;

  /// What is known of a range of numbers.
  struct Known {
    CommonDigits common;
    std::size_t limb;  ///< the highest that is not common as a whole, as far as is known
  };

  // Prunes a node, or goes through the counts of `digit`, above which all are chosen.
  void descend(int digit, int rest, const Sum& sum, Known known, std::uint32_t weight,
               PackedSilhouette chosen) {
    const Sum high = sum + powers_.multiple(digit, rest);
    // The highest limb that differs has an index of its own. With `limbs` counted down and `limbs - 1` for an
    // index GCC 11.3 and 12.2 read another limb of two at -O2: where `limbs` is above 1 their FRE pass takes
    // high[limbs - 1] for high[1], and the same expression below, where `limbs` can be 1, for the same. A
    // test watches over it.
    for (; known.limb > 0 && sum.limbs[known.limb] == high.limbs[known.limb]; --known.limb) {
      known.common.add(packedOfSixteen(sum.limbs[known.limb]), kLimbDigits);
    }
    CommonDigits all = known.common;
    all.addOfLimb(sum.limbs[known.limb], high.limbs[known.limb]);
    const std::uint32_t most = rarity_.of(all.counts, all.size);
    if (weight + rarity_.least(digit, rest) > most) {
      witness_.pruned(chosen, digit, rest);
      return;
    }
    Sum next = sum;
    for (int count = 0; count <= rest; ++count) {
      const std::uint32_t nextWeight = weight + rarity_.weight(digit, count);
      const PackedSilhouette nextChosen = chosen + packed(digit, count);
      if (nextWeight + rarity_.least(digit - 1, rest - count) > most) {
        witness_.pruned(nextChosen, digit - 1, rest - count);
      } else if (digit > 2) {
        descend(digit - 1, rest - count, next, known, nextWeight, nextChosen);
      } else {
        tryOnes(rest - count, next, known, nextWeight, nextChosen);
      }
      next += powers_.multiple(digit, 1);
    }
  }

  // The last level: the images are sum, sum + 1, ... sum + rest. As a rule the last four digits take all of
  // that, and those in front of them are counted once.
  void tryOnes(int rest, const Sum& sum, const Known& known, std::uint32_t weight, PackedSilhouette chosen) {
    PackedSilhouette upper = known.common.counts;
    for (std::size_t i = 1; i <= known.limb; ++i) upper += packedOfSixteen(sum.limbs[i]);
    const std::uint64_t lastFour = sum.limbs[0] % kPackedOfFour.size();
    upper += packedOfTwelve(sum.limbs[0] / kPackedOfFour.size());
    if (lastFour + static_cast<std::uint64_t>(rest) >= kPackedOfFour.size()) {
      for (int count = 0; count <= rest; ++count) {
        const PackedSilhouette counts = chosen + packed(1, count);
        tryOne(counts, powers_.next(counts), weight, rest, count);
      }
      return;
    }
    CommonDigits all{upper, digits_ - 4};
    all.addOfFour(lastFour, lastFour + static_cast<std::uint64_t>(rest));
    const std::uint32_t most = rarity_.of(all.counts, all.size);
    if (weight + rarity_.least(1, rest) > most) {
      witness_.pruned(chosen, 1, rest);
      return;
    }
    for (int count = 0; count <= rest; ++count) {
      const PackedSilhouette counts = chosen + packed(1, count);
      if (weight + rarity_.weight(1, count) + rarity_.weight(0, rest - count) > most) {
        witness_.pruned(counts, 0, rest - count);
      } else {
        tryOne(counts, upper + kPackedOfFour[lastFour + static_cast<std::uint64_t>(count)], weight, rest,
               count);
      }
    }
  }

  void tryOne(PackedSilhouette counts, PackedSilhouette image, std::uint32_t weight, int rest, int count) {
    const std::uint32_t rarity = weight + rarity_.weight(1, count) + rarity_.weight(0, rest - count);
    if (rarity_.of(image, digits_) < rarity) {
      witness_.pruned(counts, 0, rest - count);
      return;
    }
    followers_.add(counts, image, rarity);
  }

  const PowerMultiples<kLimbs>& powers_;
  const RarityTable& rarity_;
  int digits_;
  Followers<kLimbs> followers_;
  [[no_unique_address]] Witness witness_;
};

/// Every cycle of the power `k` that lies in a part, as cyclesOf() in cycle_list.h, with a rarity of the
/// caller's choice.
template <std::size_t kLimbs, typename Witness = NullWitness>
std::optional<std::vector<Cycle>> walkCycles(std::int32_t k, const Rarity& rarity, unsigned threads,
                                             Progress& progress, Part part, Witness witness = {}) {
  const int digits = rangeDigits(k);
  const PowerMultiples<kLimbs> powers(digitPowers(k), static_cast<std::size_t>(digits));
  const RarityTable table(rarity);
  FoundCycles<kLimbs> found(powers, progress);
  std::vector<std::array<std::uint8_t, 3>> pieces;
  for (int nines = 0; nines <= digits; ++nines) {
    for (int eights = 0; nines + eights <= digits; ++eights) {
      for (int sevens = 0; nines + eights + sevens <= digits; ++sevens) {
        pieces.push_back({static_cast<std::uint8_t>(nines), static_cast<std::uint8_t>(eights),
                          static_cast<std::uint8_t>(sevens)});
      }
    }
  }
  std::vector<CycleWalk<kLimbs, Witness>> walks(std::max(threads, 1U),
                                                {powers, table, digits, found, witness});
  const std::size_t count = (pieces.size() + part.count - part.number) / part.count;
  progress.pieces = count;
  const bool whole = runPieces(count, threads, progress, [&](std::size_t piece, unsigned worker) {
    // Mixed, so that all parts and all stretches of a run are much alike. The prime is above any number of
    // pieces: each comes once.
    constexpr std::uint64_t kPrime = 1'000'003;
    const std::uint64_t place = std::uint64_t{piece} * part.count + part.number - 1;
    walks[worker].run(pieces[place * kPrime % pieces.size()]);
  });
  if (!whole) return std::nullopt;
  for (auto& walk : walks) walk.finish();
  std::vector<Cycle> cycles = found.all();
  std::sort(cycles.begin(), cycles.end());
  return cycles;
}

}  // namespace zelvion::atlas
