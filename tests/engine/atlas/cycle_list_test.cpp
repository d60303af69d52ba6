#include "engine/atlas/cycle_list.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "engine/atlas/cycle_walk.h"
#include "engine/plain_power.h"

namespace zelvion::atlas {
namespace {

using zelvion::testing::PlainPower;

std::vector<Cycle> listOf(std::int32_t k, unsigned threads = 1, Part part = {}) {
  Progress progress;
  return cyclesOf(k, threads, progress, part).value();
}

using Points = std::vector<std::vector<std::string>>;

Points pointsOf(const std::vector<Cycle>& cycles) {
  Points result;
  for (const Cycle& cycle : cycles) {
    for (auto& points = result.emplace_back(); const Decimal& point : cycle.points())
      points.push_back(point.text());
  }
  return result;
}

std::string sortedDigits(std::string number, int digits) {
  number.insert(0, static_cast<std::size_t>(digits) - number.size(), '0');
  std::sort(number.begin(), number.end());
  return number;
}

TEST(Range, IsTheLeastThatHoldsItsImages) {
  for (std::int32_t k = 1; k <= kMaxPower; ++k) {
    mpz_class nine, ten;
    mpz_ui_pow_ui(nine.get_mpz_t(), 9, static_cast<unsigned>(k));
    const int digits = rangeDigits(k);
    ASSERT_TRUE(digits >= 1 && digits <= kMaxRangeDigits);
    mpz_ui_pow_ui(ten.get_mpz_t(), 10, static_cast<unsigned>(digits));
    EXPECT_LT(nine * digits, ten) << k;
    EXPECT_TRUE(digits == 1 || nine * (digits - 1) >= ten / 10) << k;
  }
}

TEST(CycleList, IsTheSameWhateverTheRarity) {
  for (std::int32_t k = 5; k <= 8; ++k) {
    const Points expected = pointsOf(listOf(k));
    Rarity falling = Rarity::of(k);
    std::reverse(falling.weights.begin(), falling.weights.end());
    for (const Rarity& rarity : {Rarity{}, falling}) {
      Progress progress;
      EXPECT_EQ(pointsOf(walkCycles<2>(k, rarity, 1, progress, {}).value()), expected) << k;
      EXPECT_EQ(progress.found, expected.size());
    }
  }
}

TEST(CycleList, AgreesWithWhatIsKnown) {
  struct Row {
    std::int32_t k;
    std::size_t cycles, fixedPoints, longest, points;
  };
  const Row rows[] = {{1, 10, 10, 1, 10},   {2, 3, 2, 8, 10},     {3, 10, 6, 3, 16},
                      {4, 7, 5, 7, 14},     {5, 17, 8, 28, 104},  {7, 18, 7, 92, 272},
                      {10, 9, 3, 123, 239}, {16, 8, 4, 371, 653}, {32, 11, 3, 543, 1135}};
  for (const Row& row : rows) {
#ifdef ZELVION_SANITIZED
    if (row.k > 20) continue;  // half a minute
#endif
    const std::vector<Cycle> cycles = listOf(row.k, 2);
    std::size_t points = 0;
    for (const Cycle& cycle : cycles) {
      points += cycle.order();
      EXPECT_EQ(cycle.least(), *std::min_element(cycle.points().begin(), cycle.points().end()));
      EXPECT_LE(cycle.least(), cycle.greatest());
    }
    EXPECT_EQ(cycles.size(), row.cycles) << row.k;
    EXPECT_EQ(std::count_if(cycles.begin(), cycles.end(), [](const Cycle& c) { return c.isFixedPoint(); }),
              static_cast<std::ptrdiff_t>(row.fixedPoints));
    EXPECT_EQ(cycles.back().order(), row.longest) << row.k;
    EXPECT_EQ(points, row.points) << row.k;
    EXPECT_TRUE(cycles.front().least().isZero());
    EXPECT_TRUE(std::is_sorted(cycles.begin(), cycles.end()));
  }
}

TEST(CycleList, IsTheSameInPartsAndOnThreads) {
  for (const std::int32_t k : {1, 9, 14}) {
    const Points whole = pointsOf(listOf(k));
    EXPECT_EQ(pointsOf(listOf(k, 2)), whole);
    for (const std::uint32_t count : {2U, 7U, 64U}) {
      std::vector<std::vector<Cycle>> parts;
      for (std::uint32_t number = count; number > 0; --number) parts.push_back(listOf(k, 1, {number, count}));
      EXPECT_EQ(pointsOf(joined(parts)), whole) << k << " in " << count;
    }
  }
  Progress progress;
  progress.stop = true;
  EXPECT_FALSE(cyclesOf(9, 2, progress));
}

/// Works out from scratch, for some of the multisets that a walk prunes, that their images are less rare.
class Trial {
 public:
  struct Counters {
    std::size_t pruned = 0, wrong = 0;
  };

  Trial(std::int32_t k, const Rarity& rarity, Counters& counters)
      : plain_(static_cast<unsigned>(k)), digits_(rangeDigits(k)), rarity_(rarity), counters_(counters) {}

  void pruned(PackedSilhouette counts, int digit, int rest) {
    ++counters_.pruned;
    std::array<int, 10> chosen{};
    for (int i = digit + 1; i <= 9; ++i) {
      chosen[static_cast<std::size_t>(i)] = static_cast<int>(countOf(static_cast<std::size_t>(i), counts));
    }
    // The one that is least rare is the likeliest to be pruned wrongly.
    std::array<int, 10> even = chosen;
    for (int i = 0; i < rest; ++i) ++even[leastRare(even, digit)];
    test(even);
    for (int trial = 0; trial < 3 && digit > 0 && rest > 0; ++trial) {
      std::array<int, 10> drawn = chosen;
      for (int i = 0; i < rest; ++i) ++drawn[generator_() % static_cast<unsigned>(digit + 1)];
      test(drawn);
    }
  }

 private:
  int weight(std::size_t digit, int count) const {
    return rarity_.weights[digit][static_cast<std::size_t>(count)];
  }

  std::size_t leastRare(const std::array<int, 10>& counts, int digit) const {
    std::size_t best = 0;
    int gain = -1;
    for (std::size_t i = 0; i <= static_cast<std::size_t>(digit); ++i) {
      const int here = weight(i, counts[i]) - weight(i, counts[i] + 1);
      if (here > gain) {
        gain = here;
        best = i;
      }
    }
    return best;
  }

  void test(const std::array<int, 10>& counts) {
    mpz_class image;
    int own = 0, total = 0;
    for (std::size_t digit = 0; digit <= 9; ++digit) {
      image += plain_[digit] * counts[digit];
      own += weight(digit, counts[digit]);
      total += counts[digit];
    }
    std::array<int, 10> imageCounts{};
    for (const char c : sortedDigits(image.get_str(), digits_))
      ++imageCounts[static_cast<std::size_t>(c - '0')];
    int next = 0;
    for (std::size_t digit = 0; digit <= 9; ++digit) next += weight(digit, imageCounts[digit]);
    if (next >= own || total != digits_) ++counters_.wrong;
  }

  PlainPower plain_;
  int digits_;
  const Rarity& rarity_;
  Counters& counters_;
  std::mt19937 generator_;
};

TEST(CycleWalk, PrunesOnlyWhatHasALessRareImage) {
  for (const std::int32_t k : {2, 5, 8, 11, 13}) {
    const Rarity rarity = Rarity::of(k);
    Progress progress;
    Trial::Counters counters;
    ASSERT_TRUE((walkCycles<2, Trial>(k, rarity, 1, progress, {}, Trial(k, rarity, counters))));
    EXPECT_GT(counters.pruned, 0U);
    EXPECT_EQ(counters.wrong, 0U) << k << ", of " << counters.pruned;
  }
}

}  // namespace
}  // namespace zelvion::atlas
