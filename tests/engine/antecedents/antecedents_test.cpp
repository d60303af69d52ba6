#include "engine/antecedents/antecedents.h"

#include <gtest/gtest.h>

#include <map>

#include "engine/transform/transformation.h"

namespace zelvion {
namespace {

const std::atomic<bool> kNoStop{false};

TEST(Antecedents, AreThoseOfAllNumbersBelowAPowerOfTen) {
  for (const int k : {1, 2, 3, 5}) {
    Transformation transformation(k);
    std::map<std::string, std::size_t> counts;
    for (int number = 0; number < 10'000; ++number)
      ++counts[transformation.image(silhouetteOf(std::to_string(number))).text()];
    for (int image = 0; image < 3000; ++image) {
      Decimal count;
      findAntecedents(k, 4, Decimal(static_cast<std::uint64_t>(image)), kNoStop,
                      [&](const Silhouette& silhouette) { count += arrangements(silhouette, 4); });
      EXPECT_EQ(count, Decimal(counts[std::to_string(image)])) << k << " " << image;
    }
  }
}

// The fewest coins of the values 1, 2^k, ... 9^k, and of those the least number.
TEST(Antecedents, HaveALeastOne) {
  for (const auto& [k, last] : {std::pair(1, 60), {2, 400}, {3, 3000}, {6, 5000}}) {
    std::vector<std::uint64_t> powers;
    for (std::uint64_t digit = 1; digit <= 9; ++digit)
      powers.push_back(std::stoull(Decimal::power(Decimal(digit), static_cast<std::uint64_t>(k)).text()));
    std::vector<std::string> least(1);
    for (std::uint64_t number = 1; number <= static_cast<std::uint64_t>(last); ++number) {
      std::string& best = least.emplace_back();
      for (std::size_t i = 0; i < 9 && powers[i] <= number; ++i) {
        const std::string text = static_cast<char>('1' + i) + least[number - powers[i]];
        if (best.empty() || text.size() < best.size()) best = text;
      }
      const auto found = leastAntecedent(k, Decimal(number), 1'000'000, kNoStop);
      ASSERT_TRUE(found.silhouette);
      EXPECT_EQ(leastNumber(*found.silhouette), best) << k << " " << number;
      EXPECT_EQ(found.excluded, best.size() - 1);
    }
  }
  // Of many nines, and of too many.
  Decimal large = Decimal::power(Decimal(9), 3) * Decimal(973);
  large += Decimal(27 + 343 + 512 + 729);
  EXPECT_EQ(leastNumber(*leastAntecedent(3, large, 977, kNoStop).silhouette), "378" + std::string(974, '9'));
  EXPECT_EQ(leastAntecedent(3, large, 976, kNoStop).excluded, 976U);
}

}  // namespace
}  // namespace zelvion
