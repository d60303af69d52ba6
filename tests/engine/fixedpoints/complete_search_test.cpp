#include "engine/fixedpoints/complete_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "engine/atlas/cycle_list.h"
#include "engine/plain_power.h"

namespace zelvion {
namespace {

std::vector<std::string> fixedPoints(int k, unsigned threads = 1) {
  Progress progress;
  std::vector<std::string> numbers;
  const int last = longestFixedPoint(k);
  EXPECT_EQ(findFixedPoints(k, 1, last, threads, progress,
                            [&](const Decimal& number) { numbers.push_back(number.text()); }),
            last);
  EXPECT_EQ(progress.done, progress.pieces);
  EXPECT_EQ(progress.found, numbers.size());
  return numbers;
}

bool isBefore(const std::string& a, const std::string& b) {
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

TEST(CompleteSearch, FindsTheFixedPointsAmongTheCycles) {
  for (int k = 1; k <= 12; ++k) {
    Progress progress;
    std::vector<std::string> expected;
    const auto cycles = atlas::cyclesOf(k, 1, progress);
    for (const auto& cycle : cycles.value()) {
      if (cycle.isFixedPoint()) expected.push_back(cycle.least().text());
    }
    std::ranges::sort(expected, isBefore);
    EXPECT_EQ(fixedPoints(k), expected) << k;
  }
}

TEST(CompleteSearch, FindsWhatIsKnownOfGreatPowers) {
  // How many there are beside 0 and 1 for the powers from 8 on.
  constexpr std::size_t kKnown[] = {3, 4, 1, 8, 0, 1, 1, 0, 2, 4, 0, 4, 1};
  for (int k = 8; k <= 30; ++k) {
    const std::vector<std::string> numbers = fixedPoints(k);
    const testing::PlainPower power(static_cast<unsigned>(k));
    for (const std::string& number : numbers) EXPECT_EQ(power.image(number), number) << k;
    EXPECT_TRUE(std::ranges::is_sorted(numbers, isBefore)) << k;
    if (k <= 20) {
      EXPECT_EQ(numbers.size(), kKnown[k - 8] + 2) << k;
    }
  }
  EXPECT_EQ(fixedPoints(14), (std::vector<std::string>{"0", "1", "28116440335967"}));
}

TEST(CompleteSearch, GoesPastTheLengthsThatFitSmallCounts) {
  // 9^68 itself has 65 digits: counts above 63 come, and limbs above four.
  EXPECT_EQ(longestFixedPoint(1), 2);
  EXPECT_EQ(longestFixedPoint(61), 60);
  Progress progress;
  std::vector<std::string> numbers;
  const auto keep = [&](const Decimal& number) { numbers.push_back(number.text()); };
  EXPECT_EQ(findFixedPoints(68, 1, 20, 1, progress, keep), 20);
  EXPECT_EQ(numbers, (std::vector<std::string>{"0", "1"}));
  numbers.clear();
  EXPECT_EQ(findFixedPoints(70, 60, 64, 2, progress, keep), 64);
  EXPECT_TRUE(numbers.empty());
}

TEST(CompleteSearch, GivesTheSameForAnyNumberOfThreads) {
  for (const int k : {3, 17, 25, 31}) {
    const std::vector<std::string> numbers = fixedPoints(k, 1);
    EXPECT_EQ(fixedPoints(k, 2), numbers) << k;
    EXPECT_EQ(fixedPoints(k, 7), numbers) << k;
  }
}

TEST(CompleteSearch, KeepsWhatWasFoundWhenStopped) {
  Progress progress;
  std::vector<std::string> numbers;
  const int complete = findFixedPoints(17, 1, longestFixedPoint(17), 1, progress, [&](const Decimal& number) {
    numbers.push_back(number.text());
    progress.stop = number.digits() == 15;
  });
  EXPECT_EQ(numbers, (std::vector<std::string>{"0", "1", "233411150132317"}));
  EXPECT_EQ(complete, 15);
}

TEST(CompleteSearch, FindsNoNarcissisticNumbersFromOrder40On) {
  std::size_t total = 0;
  for (int order = 1; order <= kLastPossibleOrder; ++order) {
    const std::vector<Decimal> numbers = narcissisticNumbers(order);
    total += numbers.size();
    EXPECT_TRUE(order < 40 || numbers.empty()) << order;
    for (const Decimal& number : numbers) EXPECT_EQ(number.digits(), static_cast<std::size_t>(order));
  }
  EXPECT_EQ(total, 89U);
}

}  // namespace
}  // namespace zelvion
