#include "engine/fixedpoints/multiset_walk.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/fixedpoints/candidates.h"

namespace zelvion {
namespace {

using testing::candidatesOf;
using testing::fixedImage;

TEST(MultisetWalk, CountsAllAndPassesNoHitBy) {
  const std::tuple<int, int, int> rows[] = {{1, 0, 6},  {2, 0, 6},     {3, 0, 9},  {4, 0, 9},  {5, 0, 8},
                                            {7, 0, 9},  {10, 0, 10},   {14, 2, 6}, {17, 2, 7}, {24, 1, 6},
                                            {39, 8, 5}, {200, 100, 5}, {3, 3, 4}};
  for (const auto& [k, nines, greatest] : rows) {
    DigitPower power(k);
    MultisetWalk walk(power, nines);
    const testing::PlainPower plain(static_cast<unsigned>(k));
    for (int digits = 1; digits <= greatest; ++digits) {
      const std::vector<std::string>& candidates = candidatesOf(digits);
      std::vector<std::string> survivors;
      const std::int32_t count = walk.run(digits, [&](const std::string& c) { survivors.push_back(c); });
      EXPECT_EQ(count, static_cast<std::int32_t>(candidates.size()));
      EXPECT_EQ(count, MultisetWalk::count(digits));
      // In their order, each once, and none that is no candidate.
      EXPECT_TRUE(std::includes(candidates.begin(), candidates.end(), survivors.begin(), survivors.end()));
      for (const std::string& c : candidates) {
        const bool hit = !fixedImage(plain, std::string(static_cast<std::size_t>(nines), '9') + c).empty();
        ASSERT_TRUE(!hit || std::binary_search(survivors.begin(), survivors.end(), c)) << k << " " << c;
      }
    }
  }
}

}  // namespace
}  // namespace zelvion
