#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/atlas/cycle.h"
#include "engine/atlas/cycle_list.h"
#include "engine/atlas/range.h"
#include "engine/atlas/rarity.h"
#include "engine/parallel/pieces.h"

namespace zelvion::atlas {

/// A multiset of as many digits as the range has in one word: how many there are of the digits 1 to 9 in
/// seven bits each, which hold them all together, too; that of 1 lowest. The others are zeros.
using Multiset = std::uint64_t;
inline constexpr unsigned kCountBits = 7;
static_assert(kMaxRangeDigits < 1 << kCountBits);

inline constexpr Multiset ones(int digit, int count) {
  return digit == 0 ? 0 : static_cast<Multiset>(count) << (kCountBits * static_cast<unsigned>(digit - 1));
}

/// How many of the digits 1 to 9 there are in all.
inline constexpr int nonZeros(Multiset counts) {
  // The product holds the sums of the lowest one, two, three counts and so on, the last that of all nine.
  constexpr Multiset kOneOfEach = 0x0102040810204081;
  return static_cast<int>(counts * kOneOfEach >> 56 & 127);
}

/// The digits of every number below 10,000.
inline constexpr std::array<Multiset, 10'000> kDigitsOf = [] {
  std::array<Multiset, 10'000> table{};
  for (std::size_t i = 1; i < table.size(); ++i) table[i] = table[i / 10] + ones(static_cast<int>(i % 10), 1);
  return table;
}();

/// A natural number in limbs of sixteen digits, the lowest first.
template <std::size_t kLimbs>
using LongSum = std::array<std::uint64_t, kLimbs>;
inline constexpr std::uint64_t kLongBase = 10'000'000'000'000'000;
inline constexpr int kLongDigits = 16;

/// Adds up any number of limbs below kLongBase, few enough for 64 bits, and hands their carries on. The sum
/// has room.
template <std::size_t kLimbs>
void handCarries(LongSum<kLimbs>& sum) {
  for (std::size_t i = 0; i + 1 < kLimbs; ++i) {
    sum[i + 1] += sum[i] / kLongBase;
    sum[i] %= kLongBase;
  }
}

inline Multiset digitsOfEight(std::uint64_t number) {
  return kDigitsOf[number / 10'000] + kDigitsOf[number % 10'000];
}
inline Multiset digitsOfLimb(std::uint64_t limb) {
  return digitsOfEight(limb / 100'000'000) + digitsOfEight(limb % 100'000'000);
}

/// The images under one power of the multisets of the range.
template <std::size_t kLimbs>
class Images {
 public:
  explicit Images(std::int32_t k) : digits_(rangeDigits(k)) {
    assert(static_cast<std::size_t>(digits_) <= kLimbs * kLongDigits);
    for (std::uint64_t digit = 0; digit < 10; ++digit) {
      const Decimal power = Decimal::power(Decimal(digit), static_cast<std::uint64_t>(k));
      Decimal multiple;
      for (int count = 0; count <= digits_; ++count, multiple += power) {
        LongSum<kLimbs> sum{};
        const auto limbs = multiple.limbs();
        for (std::size_t i = 0; i < limbs.size(); ++i) {
          sum[i / 2] += limbs[i] * (i % 2 == 0 ? 1 : std::uint64_t{Decimal::kBase});
        }
        multiples_[place(static_cast<int>(digit), count)] = sum;
      }
    }
  }

  int digits() const { return digits_; }
  /// count * digit^k
  const LongSum<kLimbs>& multiple(int digit, int count) const { return multiples_[place(digit, count)]; }
  LongSum<kLimbs> image(Multiset counts) const {
    LongSum<kLimbs> sum{};
    for (int digit = 1; digit <= 9; ++digit, counts >>= kCountBits) {
      const LongSum<kLimbs>& term = multiple(digit, static_cast<int>(counts % kCounts));
      for (std::size_t i = 0; i < kLimbs; ++i) sum[i] += term[i];
    }
    handCarries(sum);
    return sum;
  }
  Multiset next(Multiset counts) const {
    const LongSum<kLimbs> sum = image(counts);
    Multiset result = 0;
    for (const std::uint64_t limb : sum) result += digitsOfLimb(limb);
    return result;
  }

 private:
  static constexpr std::size_t kCounts = std::size_t{1} << kCountBits;  // a constant, for speed

  static std::size_t place(int digit, int count) {
    return static_cast<std::size_t>(digit) * kCounts + static_cast<std::size_t>(count);
  }

  int digits_;
  std::vector<LongSum<kLimbs>> multiples_ = std::vector<LongSum<kLimbs>>(10 * kCounts);
};

/// The weights of a rarity as the walk looks them up: those of two digits at once.
class RarityTable {
 public:
  explicit RarityTable(const Rarity& rarity) : rarity_(rarity) {
    for (std::size_t pair = 0; pair < 5; ++pair) {
      for (std::size_t i = 0; i < kPairs; ++i) {
        pairs_.push_back(static_cast<std::uint16_t>(rarity.weights[2 * pair + 1][i & 127] +
                                                    rarity.weights[(2 * pair + 2) % 10][i >> kCountBits]));
      }
    }
    for (int digit = 0; digit < 10; ++digit) {
      const auto d = static_cast<std::size_t>(digit);
      for (std::size_t rest = 0; rest <= kMaxRangeDigits; ++rest) {
        std::uint32_t least = digit == 0 ? weight(0, static_cast<int>(rest)) : ~std::uint32_t{0};
        for (std::size_t count = 0; digit > 0 && count <= rest; ++count) {
          least = std::min(least, rarity.weights[d][count] + least_[d - 1][rest - count]);
        }
        least_[d][rest] = least;
      }
    }
  }

  std::uint32_t weight(int digit, int count) const {
    return rarity_.weights[static_cast<std::size_t>(digit)][static_cast<std::size_t>(count)];
  }
  /// The rarity of `digits` digits of which `counts` are no zeros.
  std::uint32_t of(Multiset counts, int digits) const {
    const auto zeros = static_cast<std::uint64_t>(digits - nonZeros(counts));
    const std::uint16_t* const pairs = pairs_.data();
    return std::uint32_t{pairs[counts % kPairs]} + pairs[kPairs + (counts >> 14) % kPairs] +
           pairs[2 * kPairs + (counts >> 28) % kPairs] + pairs[3 * kPairs + (counts >> 42) % kPairs] +
           pairs[4 * kPairs + (counts >> 56 | zeros << kCountBits)];
  }
  /// The least that the weights of the digits 0 to `digit` can be where there are `rest` of them.
  std::uint32_t least(int digit, int rest) const {
    return least_[static_cast<std::size_t>(digit)][static_cast<std::size_t>(rest)];
  }

 private:
  static constexpr std::size_t kPairs = std::size_t{1} << (2 * kCountBits);

  Rarity rarity_;
  std::vector<std::uint16_t> pairs_;  // of the digits 1 and 2, of 3 and 4, ..., of 9 and 0
  std::array<std::array<std::uint32_t, kMaxRangeDigits + 1>, 10> least_{};
};

/// The cycles that several walks have found.
template <std::size_t kLimbs>
class FoundCycles {
 public:
  explicit FoundCycles(const Images<kLimbs>& images) : images_(images) {}

  /// Takes the cycle of a multiset that comes back; returns how many cycles there are now.
  std::size_t add(Multiset start) {
    const std::scoped_lock lock(mutex_);
    if (known_.contains(start)) return cycles_.size();
    std::vector<Decimal> points;
    Multiset counts = start;
    do {
      known_.insert(counts);
      std::vector<Decimal::Limb> limbs;
      for (const std::uint64_t limb : images_.image(counts)) {
        limbs.push_back(static_cast<Decimal::Limb>(limb % Decimal::kBase));
        limbs.push_back(static_cast<Decimal::Limb>(limb / Decimal::kBase));
      }
      points.emplace_back().assign(limbs);
      counts = images_.next(counts);
    } while (counts != start);
    cycles_.emplace_back(std::move(points));
    return cycles_.size();
  }
  std::vector<Cycle> sorted() {
    std::sort(cycles_.begin(), cycles_.end());
    return std::move(cycles_);
  }

 private:
  const Images<kLimbs>& images_;
  std::mutex mutex_;
  std::unordered_set<Multiset> known_;
  std::vector<Cycle> cycles_;
};

/// Where nobody looks at what a walk leaves.
struct NoWitness {
  void left(Multiset, int, int) {}
};

/// The walk over the multisets of the range in search of every cycle.
///
/// On each cycle of multisets there is a point w whose rarity is least, so that none of its iterates has a
/// lesser one. The walk goes through the multisets, the count of 9 first, then that of 8 and so on down to 1
/// (the rest are zeros), and leaves those that cannot be such a w:
/// - Let the counts of the digits above d be chosen, with a sum S of powers, and let r digits from 0 to d be
///   still to come. Every image of such a multiset lies from S to S + r * d^k. The leading digits that these
///   two have in common are those of every image; more digits can only make the rarity less, since no weight
///   rises. So the weights of the common digits bound the rarity of the images from above.
/// - The weights of the chosen counts and the least weights that r digits can have bound the rarity of the
///   multisets from below. Where that is more, all of them are left: their images are less rare. Where it is
///   the same they stay.
/// - A multiset that is not left is followed to the first iterate that is less rare, or that is the multiset
///   itself: that is a cycle.
///
/// `Witness` is told what is left: left(counts, digit, rest), the multisets that have `counts` above `digit`
/// and `rest` digits from 0 to `digit`.
template <std::size_t kLimbs, typename Witness = NoWitness>
class CycleWalk {
 public:
  CycleWalk(const Images<kLimbs>& images, const RarityTable& rarity, FoundCycles<kLimbs>& found,
            std::atomic<std::uint64_t>& foundCount, Witness witness = {})
      : images_(images), rarity_(rarity), found_(found), foundCount_(foundCount), witness_(witness) {
    batch_.resize(kBatch);
  }

  /// Walks over the multisets with these counts of the digits 9, 8 and 7.
  void run(const std::array<std::uint8_t, 3>& counts) {
    Sum sum{};
    Multiset chosen = 0;
    std::uint32_t weight = 0;
    int rest = images_.digits();
    for (int i = 0; i < 3; ++i) {
      const int count = counts[static_cast<std::size_t>(i)];
      add(sum, images_.multiple(9 - i, count));
      chosen += ones(9 - i, count);
      weight += rarity_.weight(9 - i, count);
      rest -= count;
    }
    // Only the digits of the range count: what the limbs have more are zeros in front of all images.
    const Known known{0, images_.digits() - static_cast<int>(kLimbs) * kLongDigits, kLimbs};
    descend(6, rest, sum, known, weight, chosen);
  }

  /// Follows what has not been followed to its end.
  void finish() {
    while (waiting_ > 0) stepAll();
  }

 private:
  using Sum = LongSum<kLimbs>;

  static constexpr std::size_t kBatch = 512;
  static constexpr std::uint32_t kPatience = 100;

  /// The leading digits that a range of numbers has in common.
  struct Known {
    Multiset counts;
    int digits;         ///< how many there are
    std::size_t limbs;  ///< those below this one are still to be looked at; at least 1
  };

  /// A multiset that is followed.
  struct Follower {
    Multiset start;
    Multiset current;
    std::uint32_t rarity;  ///< of the start
    std::uint32_t steps;
  };

  static void add(Sum& sum, const Sum& term) {
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < kLimbs; ++i) {
      const std::uint64_t limb = sum[i] + term[i] + carry;
      carry = limb >= kLongBase ? 1 : 0;
      sum[i] = limb - carry * kLongBase;
    }
  }

  // Adds the leading digits that two limbs, the rest of which has no digit in common, share: the half of the
  // digits that tells them apart is looked at, then half of that.
  static void addCommonOfLimb(Known& known, std::uint64_t low, std::uint64_t high) {
    const auto halve = [&](std::uint64_t unit, int digits) {
      if (low / unit == high / unit) {
        known.counts += digitsOfEight(low / unit);
        known.digits += digits;
        low %= unit;
        high %= unit;
      } else {
        low /= unit;
        high /= unit;
      }
    };
    halve(100'000'000, 8);
    halve(10'000, 4);
    addCommonOfFour(known, low, high);
  }
  // The same of four digits, or those in front of the last ones. The units are constants, for then the
  // divisions are products.
  template <std::uint32_t kUnit = 1, int kDigits = 4>
  static void addCommonOfFour(Known& known, std::uint64_t low, std::uint64_t high) {
    const std::uint32_t front = static_cast<std::uint32_t>(low) / kUnit;
    if (front == static_cast<std::uint32_t>(high) / kUnit) {
      known.digits += kDigits;
      known.counts += kDigitsOf[front];
    } else if constexpr (kDigits > 1) {
      addCommonOfFour<10 * kUnit, kDigits - 1>(known, low, high);
    }
  }

  // Leaves all multisets of a node, or goes through the counts of `digit`, above which all are chosen.
  void descend(int digit, int rest, const Sum& sum, Known known, std::uint32_t weight, Multiset chosen) {
    Sum high = sum;
    add(high, images_.multiple(digit, rest));
    // With `known.limbs - 1` for an index GCC 12 takes another limb at -O2; a test watches over it.
    std::size_t limb = known.limbs - 1;
    for (; limb > 0 && sum[limb] == high[limb]; --limb) {
      known.counts += digitsOfLimb(sum[limb]);
      known.digits += kLongDigits;
    }
    known.limbs = limb + 1;
    Known all = known;
    addCommonOfLimb(all, sum[limb], high[limb]);
    const std::uint32_t most = rarity_.of(all.counts, all.digits);
    if (weight + rarity_.least(digit, rest) > most) {
      witness_.left(chosen, digit, rest);
      return;
    }
    Sum next = sum;
    for (int count = 0; count <= rest; ++count) {
      const std::uint32_t nextWeight = weight + rarity_.weight(digit, count);
      const Multiset nextChosen = chosen + ones(digit, count);
      if (nextWeight + rarity_.least(digit - 1, rest - count) > most) {
        witness_.left(nextChosen, digit - 1, rest - count);
      } else if (digit > 2) {
        descend(digit - 1, rest - count, next, known, nextWeight, nextChosen);
      } else {
        tryOnes(rest - count, next, known, nextWeight, nextChosen);
      }
      add(next, images_.multiple(digit, 1));
    }
  }

  // The last level: the images are sum, sum + 1, ... sum + rest. As a rule the last four digits take all of
  // that, and those in front of them are counted once.
  void tryOnes(int rest, const Sum& sum, const Known& known, std::uint32_t weight, Multiset chosen) {
    Multiset upper = known.counts;
    for (std::size_t i = 1; i < known.limbs; ++i) upper += digitsOfLimb(sum[i]);
    const std::uint64_t lastFour = sum[0] % 10'000;
    const std::uint64_t front = sum[0] / 10'000;
    upper += digitsOfEight(front / 10'000) + kDigitsOf[front % 10'000];
    if (lastFour + static_cast<std::uint64_t>(rest) >= 10'000) {
      for (int count = 0; count <= rest; ++count) {
        const Multiset counts = chosen + ones(1, count);
        tryOne(counts, images_.next(counts), weight, rest, count);
      }
      return;
    }
    Known all{upper, images_.digits() - 4, 0};
    addCommonOfFour(all, lastFour, lastFour + static_cast<std::uint64_t>(rest));
    const std::uint32_t most = rarity_.of(all.counts, all.digits);
    if (weight + rarity_.least(1, rest) > most) {
      witness_.left(chosen, 1, rest);
      return;
    }
    for (int count = 0; count <= rest; ++count) {
      const Multiset counts = chosen + ones(1, count);
      if (weight + rarity_.weight(1, count) + rarity_.weight(0, rest - count) > most) {
        witness_.left(counts, 0, rest - count);
      } else {
        tryOne(counts, upper + kDigitsOf[lastFour + static_cast<std::uint64_t>(count)], weight, rest, count);
      }
    }
  }

  void tryOne(Multiset counts, Multiset image, std::uint32_t weight, int rest, int count) {
    const std::uint32_t rarity = weight + rarity_.weight(1, count) + rarity_.weight(0, rest - count);
    if (rarity_.of(image, images_.digits()) < rarity) {
      witness_.left(counts, 0, rest - count);
      return;
    }
    batch_[waiting_++] = {counts, image, rarity, 0};
    while (waiting_ == kBatch) stepAll();
  }

  // Takes all followers a step on, one beside the other, and lets go those that have got less rare.
  void stepAll() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < waiting_; ++i) {
      Follower follower = batch_[i];
      follower.current = images_.next(follower.current);
      ++follower.steps;
      batch_[kept] = follower;
      if (follower.current == follower.start) {
        foundCount_ = found_.add(follower.start);
      } else if (follower.steps >= kPatience) {
        followOn(follower);
      } else {
        kept += rarity_.of(follower.current, images_.digits()) >= follower.rarity ? 1 : 0;
      }
    }
    waiting_ = kept;
  }

  // Brent's method: an iterate that comes back before the start does is on a cycle without it.
  void followOn(Follower follower) {
    Multiset mark = 0;
    for (std::uint64_t step = 0, markAt = 1;
         rarity_.of(follower.current, images_.digits()) >= follower.rarity; ++step) {
      if (follower.current == follower.start) {
        foundCount_ = found_.add(follower.start);
        return;
      }
      if (step > 0 && follower.current == mark) return;
      if (step == markAt - 1) {
        mark = follower.current;
        markAt *= 2;
      }
      follower.current = images_.next(follower.current);
    }
  }

  const Images<kLimbs>& images_;
  const RarityTable& rarity_;
  FoundCycles<kLimbs>& found_;
  std::atomic<std::uint64_t>& foundCount_;
  [[no_unique_address]] Witness witness_;
  std::vector<Follower> batch_;
  std::size_t waiting_ = 0;
};

/// Every cycle of the power `k` that lies in a part, as cyclesOf() in cycle_list.h, with a rarity of the
/// caller's choice.
template <std::size_t kLimbs, typename Witness = NoWitness>
std::optional<std::vector<Cycle>> walkCycles(std::int32_t k, const Rarity& rarity, unsigned threads,
                                             Progress& progress, Part part, Witness witness = {}) {
  const Images<kLimbs> images(k);
  const RarityTable table(rarity);
  FoundCycles<kLimbs> found(images);
  std::vector<std::array<std::uint8_t, 3>> pieces;
  for (int nines = 0; nines <= images.digits(); ++nines) {
    for (int eights = 0; nines + eights <= images.digits(); ++eights) {
      for (int sevens = 0; nines + eights + sevens <= images.digits(); ++sevens) {
        pieces.push_back({static_cast<std::uint8_t>(nines), static_cast<std::uint8_t>(eights),
                          static_cast<std::uint8_t>(sevens)});
      }
    }
  }
  std::vector<CycleWalk<kLimbs, Witness>> walks(std::max(threads, 1U),
                                                {images, table, found, progress.found, witness});
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
  return found.sorted();
}

}  // namespace zelvion::atlas
