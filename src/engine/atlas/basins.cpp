#include "engine/atlas/basins.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

#include "engine/atlas/range.h"
#include "engine/atlas/tail_table.h"
#include "engine/atlas/weight.h"

namespace zelvion::atlas {
namespace {

constexpr std::uint64_t kLimbBase = 10'000'000'000'000'000;
constexpr std::size_t kLimbDigits = 16;
constexpr std::uint64_t kGroupBase = 10'000;  // of four digits, which are counted at a time
constexpr int kPieceDigit = 7;                // a piece has fixed counts of the digits from here to 9

// A number in limbs of sixteen digits, the lowest first.
template <std::size_t kLimbs>
using Number = std::array<std::uint64_t, kLimbs>;

// Ten to the sixteenth taken out of each limb and carried.
template <std::size_t kLimbs>
void carry(Number<kLimbs>& number) {
  for (std::size_t i = 0; i + 1 < kLimbs; ++i) {
    const std::uint64_t quotient = number[i] / kLimbBase;
    number[i] -= quotient * kLimbBase;
    number[i + 1] += quotient;
  }
}

template <std::size_t kLimbs>
Number<kLimbs> operator+(const Number<kLimbs>& a, const Number<kLimbs>& b) {
  Number<kLimbs> sum;
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < kLimbs; ++i) {
    const std::uint64_t limb = a[i] + b[i] + carry;
    carry = limb >= kLimbBase ? 1 : 0;
    sum[i] = limb - carry * kLimbBase;
  }
  assert(carry == 0);
  return sum;
}

template <std::size_t kLimbs>
Number<kLimbs> toNumber(const Decimal& decimal) {
  Number<kLimbs> number{};
  const auto limbs = decimal.limbs();
  assert(limbs.size() <= 2 * kLimbs);
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    number[i / 2] += limbs[i] * (i % 2 == 0 ? 1 : std::uint64_t{Decimal::kBase});
  }
  return number;
}

template <std::size_t kLimbs>
Decimal toDecimal(const Number<kLimbs>& number) {
  std::vector<Decimal::Limb> limbs;
  for (const std::uint64_t limb : number) {
    limbs.push_back(static_cast<Decimal::Limb>(limb % Decimal::kBase));
    limbs.push_back(static_cast<Decimal::Limb>(limb / Decimal::kBase));
  }
  Decimal decimal;
  decimal.assign(limbs);
  return decimal;
}

// The counts of the digits 1 to 9 of a number or multiset in one word.
using Census = std::uint64_t;

// The digits of numbers of a given length, counted.
class Counter {
 public:
  // For numbers of up to `width` digits, at most 127.
  explicit Counter(int width) : bits_(static_cast<unsigned>(std::bit_width(static_cast<unsigned>(width)))) {
    for (std::size_t group = 1; group < kGroupBase; ++group) {
      groups_[group] = groups_[group / 10] + (group % 10 == 0 ? 0 : one(static_cast<int>(group % 10)));
    }
  }

  unsigned keyBits() const { return 9 * bits_; }
  // The census of one digit, 1 to 9.
  Census one(int digit) const { return Census{1} << (bits_ * static_cast<unsigned>(digit - 1)); }
  // The count of the lowest digit, and the census with the counts of the others moved one digit down.
  std::uint64_t lowest(Census census) const { return census & ((1U << bits_) - 1); }
  Census withoutLowest(Census census) const { return census >> bits_; }

  const Census& ofGroup(std::uint64_t group) const { return groups_[group]; }
  // The digits of a limb above its lowest four.
  Census ofUpper(std::uint64_t limb) const {
    const std::uint64_t half = limb / Decimal::kBase;
    return ofGroup(limb / kGroupBase % kGroupBase) + ofGroup(half % kGroupBase) + ofGroup(half / kGroupBase);
  }
  Census ofLimb(std::uint64_t limb) const { return ofUpper(limb) + ofGroup(limb % kGroupBase); }
  template <std::size_t kLimbs>
  Census of(const Number<kLimbs>& number) const {
    Census census = 0;
    for (const std::uint64_t limb : number) census += ofLimb(limb);
    return census;
  }

 private:
  unsigned bits_;
  std::array<Census, kGroupBase> groups_{};
};

// Where the numbers of a multiset end: the cycle, and after how many steps for one that is not on it (at
// least 1). In one word, not 0, for the table.
struct Fate {
  static constexpr unsigned kCycleBits = 10;

  std::size_t cycle;
  std::size_t steps;

  std::uint64_t word() const { return std::uint64_t{steps} << kCycleBits | cycle; }
  static Fate of(std::uint64_t word) {
    return {static_cast<std::size_t>(word & ((1U << kCycleBits) - 1)),
            static_cast<std::size_t>(word >> kCycleBits)};
  }
};

// The cycles that were found, for all threads. Who has read a fate of one step from the table sees the points
// of its cycle here: they were entered, under the lock, before the fate was stored.
template <std::size_t kLimbs>
class Cycles {
 public:
  using Points = std::vector<Number<kLimbs>>;

  // The number of the cycle of these points, which enters it if it is new.
  std::size_t enter(const Points& points, const Counter& counter, Progress& progress) {
    const std::scoped_lock lock(mutex_);
    const auto [place, isNew] =
        numbers_.try_emplace(*std::min_element(points.begin(), points.end()), all_.size());
    if (isNew) {
      if (all_.size() >> Fate::kCycleBits != 0) throw std::length_error("more cycles than can be told apart");
      all_.push_back(points);
      for (const Number<kLimbs>& point : points) byCensus_[counter.of(point)].push_back(point);
      ++progress.found;
    }
    return place->second;
  }

  // The points with these digits.
  Points withDigits(Census census) const {
    const std::scoped_lock lock(mutex_);
    const auto place = byCensus_.find(census);
    return place == byCensus_.end() ? Points() : place->second;
  }

  Cycle cycle(std::size_t number) const {
    std::vector<Decimal> points;
    for (const Number<kLimbs>& point : all_[number]) points.push_back(toDecimal(point));
    return Cycle(std::move(points));
  }

 private:
  mutable std::mutex mutex_;
  std::vector<Points> all_;
  std::map<Number<kLimbs>, std::size_t> numbers_;  // of the cycles by one of their points
  std::unordered_map<Census, Points> byCensus_;
};

// What was counted for one cycle.
struct Tally {
  std::array<Weight, kMaxCountedDigits + 1> byNonzero;  // numbers by how many of their digits are not 0
  std::vector<Weight> tails;
  Decimal farthest;

  // Takes note of a number with a tail of this length.
  void note(std::size_t tail, const Decimal& number) {
    if (tail >= tails.size()) {
      tails.resize(tail + 1);
      farthest = number;
    } else if (tail + 1 == tails.size() && number < farthest) {
      farthest = number;
    }
  }
};

// What all threads share.
template <std::size_t kLimbs>
struct Plan {
  Plan(std::int32_t k, int numberDigits, Progress& counted, const TableMemory& memory)
      : digits(numberDigits),
        width(std::max(digits, rangeDigits(k))),
        progress(counted),
        counter(width),
        table(counter.keyBits(), std::min(memory.bytes / sizeof(std::uint64_t), wantedSlots(width)),
              memory.prepare) {
    for (std::size_t digit = 1; digit <= 9; ++digit) {
      powers[digit] = toNumber<kLimbs>(Decimal::power(Decimal(digit), static_cast<std::uint64_t>(k)));
      multiples.emplace_back();
      for (int count = 1; count <= width; ++count) multiples.push_back(multiples.back() + powers[digit]);
    }
    for (std::size_t n = 0; n < binomials.size(); ++n) {
      binomials[n][0] = 1;
      for (std::size_t i = 1; i <= n; ++i) binomials[n][i] = binomials[n - 1][i - 1] + binomials[n - 1][i];
    }
  }

  // A quarter of the multisets, which are images again and again.
  static std::size_t wantedSlots(int width) {
    std::uint64_t multisets = 1;
    for (std::uint64_t i = 1; i <= 9 && multisets >> 32 == 0; ++i)
      multisets = multisets * (static_cast<unsigned>(width) + i) / i;
    return static_cast<std::size_t>(std::bit_ceil(multisets / 4));
  }

  Number<kLimbs> image(Census census) const {
    Number<kLimbs> sum{};
    const Number<kLimbs>* ofDigit = multiples.data();
    for (int digit = 1; digit <= 9; ++digit, ofDigit += width + 1) {
      const Number<kLimbs>& multiple = ofDigit[counter.lowest(census)];
      for (std::size_t i = 0; i < kLimbs; ++i) sum[i] += multiple[i];
      census = counter.withoutLowest(census);
    }
    carry(sum);
    return sum;
  }

  int digits;
  int width;
  Progress& progress;
  Counter counter;
  TailTable table;
  Cycles<kLimbs> cycles;
  std::array<Number<kLimbs>, 10> powers{};
  std::vector<Number<kLimbs>> multiples;  // by 0 to `width` of the power of 1, then of 2, ...
  std::array<std::array<std::uint64_t, kMaxCountedDigits + 1>, kMaxCountedDigits + 1> binomials{};
};

// Multisets on the way down: those with these counts of the digits that were chosen.
template <std::size_t kLimbs>
struct Node {
  Number<kLimbs> sum{};  // of the powers of the digits chosen
  Census census = 0;
  Weight weight{1};      // arrangements, the digits left taken for equal
  std::size_t left = 0;  // digits that are not chosen
};

// Calls action(child) for all choices of the counts of the digits from `digit` down to `last`.
template <std::size_t kLimbs, typename Action>
void expand(const Plan<kLimbs>& plan, const Node<kLimbs>& node, int digit, int last, Action&& action) {
  if (plan.progress.stop.load(std::memory_order_relaxed)) return;
  Node<kLimbs> child = node;
  for (std::size_t count = 0; count <= node.left; ++count) {
    child.left = node.left - count;
    child.weight = node.weight * plan.binomials[node.left][count];
    if (digit == last) {
      action(child);
    } else {
      expand(plan, child, digit - 1, last, action);
    }
    child.census += plan.counter.one(digit);
    if (child.left > 0) child.sum = child.sum + plan.powers[static_cast<std::size_t>(digit)];
  }
}

template <std::size_t kLimbs>
class Worker {
 public:
  explicit Worker(Plan<kLimbs>& plan) : plan_(plan) {}

  void run(const Node<kLimbs>& piece) {
    expand(plan_, piece, kPieceDigit - 1, 2, [this](const Node<kLimbs>& row) { add(row); });
    flush();
  }

  const std::vector<std::unique_ptr<Tally>>& tallies() const { return tallies_; }

 private:
  // The images of the multisets with these digits from 2 on and any number of ones, and zeros for the rest.
  void add(const Node<kLimbs>& row) {
    rows_.push_back({row.census, row.weight, row.left});
    Number<kLimbs> image = row.sum;
    for (std::size_t ones = 0; ones <= row.left;) {
      const Census upper = ofUpper(image);
      const std::uint64_t group = image[0] % kGroupBase;
      const std::size_t end = std::min<std::size_t>(row.left + 1, ones + kGroupBase - group);
      const Census* lowest = &plan_.counter.ofGroup(group);
      const std::size_t ran = end - ones;
      for (; ones < end; ++ones) {
        const Census census = upper + *lowest++;
        plan_.table.prefetch(census);
        images_[size_++] = census;
      }
      if (ones <= row.left) image = image + Number<kLimbs>{ran};
    }
    if (size_ > kBatch) flush();
  }

  // The digits of an image above its lowest four. Most limbs are those of the image before.
  Census ofUpper(const Number<kLimbs>& image) {
    Census census = 0;
    for (std::size_t i = 0; i < kLimbs; ++i) {
      if (image[i] != lastImage_[i]) {
        lastImage_[i] = image[i];
        lastCensus_[i] = i == 0 ? plan_.counter.ofUpper(image[i]) : plan_.counter.ofLimb(image[i]);
      }
      census += lastCensus_[i];
    }
    return census;
  }

  // Counts the multisets of the rows. The images that are not known go on together, a step at a time, so that
  // the memory has the time of a round to bring what each needs.
  void flush() {
    std::size_t ways = 0;
    for (std::size_t i = 0; i < size_; ++i) {
      fates_[i] = plan_.table.find(images_[i]);
      if (fates_[i] != 0) continue;
      if (ways == ways_.size()) ways_.emplace_back();
      ways_[ways].start(i, images_[i]);
      advance(ways_[ways++]);
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

  struct Row {
    Census census = 0;
    Weight weight;
    std::size_t left = 0;
  };

  // The way of an image to a multiset whose fate is known.
  struct Way {
    std::size_t image = 0;     // its place among the images
    Census place = 0;          // where it stands
    std::vector<Census> path;  // to there
    std::size_t kept = 0;      // a place on the path to see coming back

    void start(std::size_t itsImage, Census census) {
      image = itsImage;
      place = census;
      path.clear();
      kept = 0;
    }
  };

  // Counts a multiset of a row whose image has this fate.
  void count(const Row& row, std::size_t ones, const Fate& fate) {
    while (fate.cycle >= tallies_.size()) tallies_.push_back(std::make_unique<Tally>());
    Tally& tally = *tallies_[fate.cycle];
    Weight weight = row.weight * plan_.binomials[row.left][ones];
    tally.byNonzero[static_cast<std::size_t>(plan_.digits) - row.left + ones] += weight;
    std::size_t tail = fate.steps + 1;
    if (fate.steps == 1 || tail + 1 >= tally.tails.size()) {
      const Census census = row.census + ones;
      tail = 1 + tailOfImage(census, fate);
      countRarity(tally, census, tail, weight);
    }
    if (tail < tally.tails.size()) tally.tails[tail] += weight;
  }

  // Takes note of the numbers of a multiset whose tails are the longest so far or may be 0, and leaves as
  // weight the numbers that are not on the cycle.
  void countRarity(Tally& tally, Census census, std::size_t tail, Weight& weight) {
    std::string number;
    Census rest = census;
    for (char digit = '1'; digit <= '9'; ++digit) {
      number.append(plan_.counter.lowest(rest), digit);
      rest = plan_.counter.withoutLowest(rest);
    }
    if (tail > 1) {
      tally.note(tail, Decimal::parse(number));
      return;
    }
    number.insert(0, static_cast<std::size_t>(plan_.digits) - number.size(), '0');
    std::vector<std::string> points;
    for (const Number<kLimbs>& point : plan_.cycles.withDigits(census)) {
      const Decimal decimal = toDecimal(point);
      if (decimal.digits() > number.size()) continue;
      points.push_back(decimal.padded(number.size()));
      tally.note(0, decimal);
      tally.tails[0] += Weight(1);
      weight -= Weight(1);
    }
    if (weight == Weight()) return;
    while (std::find(points.begin(), points.end(), number) != points.end()) {
      std::next_permutation(number.begin(), number.end());
    }
    tally.note(1, Decimal::parse(number));
  }

  // How many steps the image of a multiset takes if the multiset of the image has this fate.
  std::size_t tailOfImage(Census census, const Fate& fate) const {
    if (fate.steps > 1) return fate.steps;
    const Number<kLimbs> image = plan_.image(census);
    const auto points = plan_.cycles.withDigits(plan_.counter.of(image));
    return std::find(points.begin(), points.end(), image) != points.end() ? 0 : 1;
  }

  // The fate of the place where the way stands, or 0 and a step further. A way without a known place on it
  // ends where one comes back (Brent's method).
  std::uint64_t step(Way& way) {
    if (const std::uint64_t word = plan_.table.find(way.place)) return word;
    if (way.place == way.path[way.kept]) {
      typename Cycles<kLimbs>::Points points;
      for (std::size_t i = way.kept; i < way.path.size(); ++i) points.push_back(plan_.image(way.path[i]));
      return Fate{plan_.cycles.enter(points, plan_.counter, plan_.progress), 1}.word();
    }
    if (way.path.size() > 2 * way.kept) way.kept = way.path.size();
    advance(way);
    return 0;
  }

  void advance(Way& way) {
    way.path.push_back(way.place);
    way.place = plan_.counter.of(plan_.image(way.place));
    plan_.table.prefetch(way.place);
  }

  // Enters the fates of all places on the way, from that of its end on, and returns that of the first.
  Fate finish(const Way& way, Fate fate) {
    for (std::size_t i = way.path.size(); i-- > 0;) {
      fate.steps = 1 + tailOfImage(way.path[i], fate);
      plan_.table.store(way.path[i], fate.word());
    }
    return fate;
  }

  static constexpr std::size_t kBatch = 256;

  Plan<kLimbs>& plan_;
  std::vector<std::unique_ptr<Tally>> tallies_;  // of the cycles by their number
  std::vector<Row> rows_;
  static constexpr std::size_t kMaxImages = kBatch + kMaxCountedDigits + 1;
  std::array<Census, kMaxImages> images_{};        // of the multisets of the rows
  std::array<std::uint64_t, kMaxImages> fates_{};  // of the images, in words
  std::size_t size_ = 0;
  Number<kLimbs> lastImage_{};
  std::array<Census, kLimbs> lastCensus_{};
  std::vector<Way> ways_;
};

// Throws unless the basins hold all numbers below 10^n for each n.
void check(const Basins& basins) {
  for (std::size_t n = 0; n <= static_cast<std::size_t>(basins.digits); ++n) {
    Decimal sum;
    for (const Basin& basin : basins.basins) sum += basin.below[n];
    if (sum != Decimal::power(Decimal(10), n)) {
      throw std::logic_error("the basins do not hold each number once");
    }
  }
}

void add(std::vector<Decimal>& sums, const std::vector<Decimal>& others) {
  if (sums.size() < others.size()) sums.resize(others.size());
  for (std::size_t i = 0; i < others.size(); ++i) sums[i] += others[i];
}

// Whether the longest tail of `a` is longer than that of `b`, or begins with a lesser number.
bool isDeeper(const Basin& a, const Basin& b) {
  if (a.tails.size() != b.tails.size()) return a.tails.size() > b.tails.size();
  return a.farthest < b.farthest;
}

// Adds what was counted for the same cycle elsewhere.
void add(Basin& basin, const Basin& other) {
  if (isDeeper(other, basin)) basin.farthest = other.farthest;
  add(basin.below, other.below);
  add(basin.tails, other.tails);
}

// All basins in one list, each cycle once, sorted.
std::vector<Basin> merged(std::vector<Basin> basins) {
  std::sort(basins.begin(), basins.end(), [](const Basin& a, const Basin& b) { return a.cycle < b.cycle; });
  std::vector<Basin> sums;
  for (Basin& basin : basins) {
    if (sums.empty() || sums.back().cycle != basin.cycle) {
      sums.push_back(std::move(basin));
    } else {
      add(sums.back(), basin);
    }
  }
  return sums;
}

template <std::size_t kLimbs>
Basin basinOf(const Plan<kLimbs>& plan, Cycle cycle, const Tally& tally) {
  Basin basin{std::move(cycle), {}, {}, tally.farthest};
  const auto digits = static_cast<std::size_t>(plan.digits);
  for (std::size_t n = 0; n <= digits; ++n) {
    Weight sum;
    for (std::size_t nonzero = 0; nonzero <= n; ++nonzero) {
      // Of the places of those digits, which are counted among all, the ones among the last n.
      Weight weight = tally.byNonzero[nonzero];
      weight.divideBy(plan.binomials[digits][nonzero]);
      sum += weight * plan.binomials[n][nonzero];
    }
    basin.below.push_back(sum.decimal());
  }
  for (const Weight& weight : tally.tails) basin.tails.push_back(weight.decimal());
  return basin;
}

template <std::size_t kLimbs>
std::optional<Basins> count(std::int32_t k, int digits, unsigned threads, Progress& progress,
                            const TableMemory& memory, Part part) {
  Plan<kLimbs> plan(k, digits, progress, memory);
  std::vector<Node<kLimbs>> pieces;
  Node<kLimbs> root;
  root.left = static_cast<std::size_t>(digits);
  std::uint32_t piece = 0;
  expand(plan, root, 9, kPieceDigit, [&](const Node<kLimbs>& node) {
    if (piece++ % part.count == part.number - 1) pieces.push_back(node);
  });
  progress.pieces = pieces.size();
  std::vector<Worker<kLimbs>> workers;
  for (unsigned i = 0; i < std::max(threads, 1U); ++i) workers.emplace_back(plan);
  if (!runPieces(pieces.size(), threads, progress,
                 [&](std::size_t i, unsigned worker) { workers[worker].run(pieces[i]); })) {
    return std::nullopt;
  }
  std::vector<Basin> basins;
  for (const Worker<kLimbs>& worker : workers) {
    for (std::size_t i = 0; i < worker.tallies().size(); ++i) {
      const Tally& tally = *worker.tallies()[i];
      if (!tally.tails.empty()) basins.push_back(basinOf(plan, plan.cycles.cycle(i), tally));
    }
  }
  return Basins{k, digits, merged(std::move(basins))};
}

}  // namespace

const Basin& Basins::deepest() const { return *std::min_element(basins.begin(), basins.end(), isDeeper); }

std::vector<Decimal> Basins::tails() const {
  std::vector<Decimal> sums;
  for (const Basin& basin : basins) add(sums, basin.tails);
  return sums;
}

std::optional<Basins> basinsOf(std::int32_t k, int digits, unsigned threads, Progress& progress,
                               TableMemory memory, Part part) {
  assert(k >= 1 && k <= kMaxPower && digits >= 1 && digits <= kMaxCountedDigits);
  assert(part.number >= 1 && part.number <= part.count);
  const auto width = static_cast<std::size_t>(std::max(digits, rangeDigits(k)));
  auto counted = [&] {
    switch ((width - 1) / kLimbDigits) {
      case 0:
        return count<1>(k, digits, threads, progress, memory, part);
      case 1:
        return count<2>(k, digits, threads, progress, memory, part);
      case 2:
        return count<3>(k, digits, threads, progress, memory, part);
      case 3:
        return count<4>(k, digits, threads, progress, memory, part);
      default:
        return count<8>(k, digits, threads, progress, memory, part);
    }
  }();
  if (counted && part.count == 1) check(*counted);
  return counted;
}

Basins joined(const std::vector<Basins>& parts) {
  if (parts.empty()) throw std::logic_error("no part to join");
  Basins whole{parts[0].k, parts[0].digits, {}};
  std::vector<Basin> basins;
  for (const Basins& part : parts) {
    if (part.k != whole.k || part.digits != whole.digits) {
      throw std::logic_error("parts of different counts");
    }
    basins.insert(basins.end(), part.basins.begin(), part.basins.end());
  }
  whole.basins = merged(std::move(basins));
  check(whole);
  return whole;
}

}  // namespace zelvion::atlas
