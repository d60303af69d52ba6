#include "engine/atlas/basins.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

#include "engine/antecedents/antecedents.h"
#include "engine/atlas/range.h"
#include "engine/atlas/records.h"
#include "engine/atlas/tail_table.h"
#include "engine/atlas/weight.h"

namespace zelvion::atlas {
namespace {

Basins count(std::int32_t k, int digits, unsigned threads = 1, std::size_t bytes = 1 << 22, Part part = {}) {
  Progress progress;
  return basinsOf(k, digits, threads, progress, {bytes, nullptr}, part).value();
}

/// Follows numbers one by one.
class Plain {
 public:
  explicit Plain(int k) : k_(k) {}

  std::uint64_t image(std::uint64_t number) const {
    std::uint64_t sum = 0;
    for (; number > 0; number /= 10) {
      std::uint64_t power = 1;
      for (int i = 0; i < k_; ++i) power *= number % 10;
      sum += power;
    }
    return sum;
  }

  /// The least point of the cycle that the number falls into, and its tail.
  std::pair<std::uint64_t, std::size_t> fate(std::uint64_t number) {
    std::vector<std::uint64_t> path;
    for (; !known_.contains(number); number = image(number)) {
      const auto first = std::find(path.begin(), path.end(), number);
      if (first != path.end()) {
        const std::uint64_t least = *std::min_element(first, path.end());
        for (auto point = first; point != path.end(); ++point) known_[*point] = {least, 0};
        path.erase(first, path.end());
        break;
      }
      path.push_back(number);
    }
    std::pair<std::uint64_t, std::size_t> end = known_[number];
    for (auto place = path.rbegin(); place != path.rend(); ++place) {
      ++end.second;
      known_[*place] = end;
    }
    return end;
  }

  /// The basins of the numbers below 10^digits, each number followed.
  Basins basins(int digits) {
    std::map<std::uint64_t, Basin> found;
    std::uint64_t number = 0;
    std::uint64_t limit = 1;
    for (std::size_t n = 0; n <= static_cast<std::size_t>(digits); ++n, limit *= 10) {
      for (; number < limit; ++number) {
        const auto [least, tail] = fate(number);
        if (!found.contains(least)) found.emplace(least, Basin{cycle(least), {}, {}, {}});
        Basin& basin = found.at(least);
        basin.below.resize(n + 1, basin.below.empty() ? Decimal() : basin.below.back());
        basin.below[n] += Decimal(1);
        if (tail >= basin.tails.size()) {
          basin.tails.resize(tail + 1);
          basin.leastByTail.resize(tail + 1);
        }
        if (basin.tails[tail].isZero()) basin.leastByTail[tail] = Decimal(number);
        basin.tails[tail] += Decimal(1);
      }
    }
    Basins basins{k_, digits, {}};
    for (auto& [least, basin] : found) {
      basin.below.resize(static_cast<std::size_t>(digits) + 1, basin.below.back());
      basins.basins.push_back(basin);
    }
    std::sort(basins.basins.begin(), basins.basins.end(),
              [](const Basin& a, const Basin& b) { return a.cycle < b.cycle; });
    return basins;
  }

 private:
  Cycle cycle(std::uint64_t least) const {
    std::vector<Decimal> points;
    std::uint64_t point = least;
    do points.emplace_back(point);
    while ((point = image(point)) != least);
    return Cycle(std::move(points));
  }

  int k_;
  std::unordered_map<std::uint64_t, std::pair<std::uint64_t, std::size_t>> known_;
};

void expectEqual(const Basins& actual, const Basins& expected) {
  EXPECT_EQ(actual.k, expected.k);
  EXPECT_EQ(actual.digits, expected.digits);
  ASSERT_EQ(actual.basins.size(), expected.basins.size());
  for (std::size_t i = 0; i < actual.basins.size(); ++i) {
    const Basin& a = actual.basins[i];
    const Basin& b = expected.basins[i];
    SCOPED_TRACE("k = " + std::to_string(actual.k) + ", cycle of " + b.cycle.least().text());
    EXPECT_EQ(a.cycle.points(), b.cycle.points());
    EXPECT_EQ(a.below, b.below);
    EXPECT_EQ(a.tails, b.tails);
    EXPECT_EQ(a.leastByTail, b.leastByTail);
  }
}

TEST(Basins, AreThoseOfTheNumbersOneByOne) {
  // All digits that there have to be, fewer (points lie above the numbers then), and more.
  const std::pair<int, int> rows[] = {{1, 1}, {2, 3}, {3, 4}, {4, 5}, {5, 6},  {2, 1}, {3, 1},
                                      {3, 3}, {4, 3}, {6, 4}, {7, 5}, {15, 4}, {1, 4}, {3, 5}};
  for (const auto& [k, digits] : rows) expectEqual(count(k, digits), Plain(k).basins(digits));
}

// The next one is the least antecedent of a number with as many steps as the one before, and no such number
// is above digits * 9^k.
TEST(Records, BeyondTheNumbersCountedAreLeastAntecedents) {
  for (int k = 1; k <= 5; ++k) {
    Plain plain(k);
    Progress progress;
    const Basins counted = count(k, std::max(2, rangeDigits(k)));
    const FarRecords beyond = recordsBeyond(counted, 1, progress, 1000);
    ASSERT_FALSE(beyond.numbers.empty());
    EXPECT_EQ(beyond.excluded, 1000U);
    EXPECT_EQ(recordsBeyond(counted, 3, progress, 1000).numbers, beyond.numbers);
    std::string before = counted.leastByTail().back().text();
    std::size_t steps = counted.leastByTail().size() - 1;
    for (const Silhouette& number : beyond.numbers) {
      const std::uint32_t digits = totalOf(number);
      std::optional<Silhouette> least;
      for (std::uint64_t m = std::stoull(before); m <= digits * plain.image(9); ++m) {
        if (plain.fate(m).second != steps) continue;
        const auto antecedent = leastAntecedent(k, Decimal(m), digits, progress.stop).silhouette;
        if (antecedent && (!least || hasLesserNumber(*antecedent, *least))) least = antecedent;
      }
      EXPECT_EQ(least, number) << k << " " << steps;
      ++steps;
      before = leastNumber(number);
    }
  }
}

TEST(Basins, DependOnNothingElse) {
  const int digits = rangeDigits(7);
  const Basins expected = count(7, digits);
  expectEqual(count(7, digits, 1, 0), expected);  // a table that loses nearly all
  expectEqual(count(7, digits, 1, 1 << 10), expected);
  expectEqual(count(7, digits, 2, 1 << 14), expected);
  expectEqual(count(7, digits, 3), expected);
  expectEqual(count(23, 5, 2, 1 << 12), count(23, 5));

  std::vector<Basins> parts;
  for (std::uint32_t number = 5; number > 0; --number) {
    parts.push_back(count(7, digits, 1 + number % 2, 1 << (10 + number), {number, 5}));
  }
  expectEqual(joined(parts), expected);
  EXPECT_THROW(joined(std::vector<Basins>(parts.begin(), parts.end() - 1)), std::logic_error);
  parts.push_back(parts[2]);
  EXPECT_THROW(joined(parts), std::logic_error);
  EXPECT_THROW(joined(std::vector<Basins>{expected, count(7, digits - 1)}), std::logic_error);
  EXPECT_THROW(joined(std::vector<Basins>()), std::logic_error);
  // With one piece more than there is work some parts are empty.
  parts.clear();
  for (std::uint32_t number = 1; number <= 5; ++number) parts.push_back(count(1, 1, 1, 0, {number, 5}));
  expectEqual(joined(parts), count(1, 1));

  Progress progress;
  progress.stop = true;
  EXPECT_FALSE(basinsOf(7, digits, 2, progress));
}

TEST(Basins, AreThoseOfTheListedCyclesAndAsDeepAsKnown) {
  struct Row {
    int k;
    std::size_t longestTail;
    const char* farthest;
  };
  const Row rows[] = {{2, 11, "269"},
                      {3, 13, "177"},
                      {4, 52, "2899"},
                      {5, 57, "111266"},
                      {7, 106, "355588"},
                      {10, 166, "1233999999"},
                      {16, 639, "3333445555789999"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.k);
    const Basins all = count(row.k, rangeDigits(row.k));
    std::vector<Cycle> cycles;
    std::size_t points = 0;
    Decimal below, numbers;
    for (const Basin& basin : all.basins) {
      cycles.push_back(basin.cycle);
      points += basin.cycle.order();
      below += basin.below.back();
      for (const Decimal& tail : basin.tails) numbers += tail;
    }
    const std::string ofDigits = "1" + std::string(static_cast<std::size_t>(rangeDigits(row.k)), '0');
    EXPECT_EQ(below.text(), ofDigits);
    EXPECT_EQ(numbers.text(), ofDigits);
    Progress progress;
    EXPECT_EQ(cycles, cyclesOf(row.k, 1, progress));
    EXPECT_EQ(all.deepest().longestTail(), row.longestTail);
    EXPECT_EQ(all.deepest().farthest().text(), row.farthest);
    EXPECT_EQ(all.tails()[0], Decimal(points));
  }
}

TEST(TailTable, LosesButNeverErrs) {
  constexpr std::uint64_t kKeys = 512, kStride = (std::uint64_t{1} << 54) + 1;  // up to 63 bits
  for (const std::size_t slots : {512U, 4096U, 65536U}) {
    TailTable table(slots, nullptr);
    std::size_t kept = 0;
    for (std::uint64_t key = 0; key < kKeys; ++key) {
      EXPECT_EQ(table.find(key * kStride), 0U);
      table.store(key * kStride, key + 1);
      EXPECT_EQ(table.find(key * kStride), key + 1);
    }
    for (std::uint64_t key = 0; key < kKeys; ++key) {
      if (const std::uint64_t answer = table.find(key * kStride)) {
        EXPECT_EQ(answer, key + 1);
        ++kept;
      }
    }
    EXPECT_GT(kept, slots / 200);
    EXPECT_TRUE(kept < kKeys || slots > kKeys);
  }
  TailTable narrow(4, nullptr);  // three bits beside the key
  narrow.store(99, 7);
  narrow.store(99, 8);
  EXPECT_EQ(narrow.find(99), 7U);
}

TEST(Weight, IsExact) {
  Weight power{1};  // of 10^16 - 1 and others, up to 192 bits
  mpz_class expected = 1;
  Weight sum;
  mpz_class expectedSum = 0;
  for (const std::uint64_t factor :
       {std::uint64_t{9'999'999'999'999'999U}, std::uint64_t{18'446'744'073'709'551'615U}, std::uint64_t{3},
        std::uint64_t{18'446'744'073'709'551'557U}}) {
    power = power * factor;
    expected *= mpz_class(std::to_string(factor));
    EXPECT_EQ(power.decimal().text(), expected.get_str());
    sum += power;
    expectedSum += expected;
    EXPECT_EQ(sum.decimal().text(), expectedSum.get_str());
    Weight quotient = power;
    EXPECT_EQ(quotient.divideBy(1'000'000'007), mpz_class(expected % 1'000'000'007).get_ui());
    EXPECT_EQ(quotient.decimal().text(), mpz_class(expected / 1'000'000'007).get_str());
  }
  for (sum -= power, expectedSum -= expected; sum != Weight(); sum.divideBy(1000), expectedSum /= 1000) {
    EXPECT_EQ(sum.decimal().text(), expectedSum.get_str());
  }
}

}  // namespace
}  // namespace zelvion::atlas
