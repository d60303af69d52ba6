#include "engine/cycles/cycle_finder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "engine/plain_power.h"

namespace zelvion {
namespace {

void expectSameReturn(unsigned k, const std::string& start) {
  const testing::PlainPower plain(k);
  std::map<std::string, std::int32_t> seen;
  std::string value = plain.image(start), before;
  std::int32_t step = 1;
  for (; seen.emplace(value, step).second; ++step) value = plain.image(before = value);

  DigitPower power(std::to_string(k));
  CycleFinder finder(power, start);
  EXPECT_FALSE(finder.advance(step / 2));
  EXPECT_FALSE(finder.advance(step - 1));
  EXPECT_EQ(finder.current(), before) << k << " " << start;
  const std::optional<Return> cycle = finder.advance(100'000);
  ASSERT_TRUE(cycle) << k << " " << start;
  EXPECT_EQ(cycle->step, step) << k << " " << start;
  EXPECT_EQ(cycle->first, seen[value]) << k << " " << start;
  EXPECT_EQ(finder.current(), value) << k << " " << start;
}

TEST(CycleFinder, AgreesWithAMapOfAllIterates) {
  std::mt19937 random(148);
  for (unsigned k = 1; k <= 30; ++k) {
    std::string onCycle = "789";
    for (int i = 0; i < 3'000; ++i) onCycle = testing::PlainPower(k).image(onCycle);
    for (int i = 0; i < 4; ++i) {
      expectSameReturn(k, std::string(static_cast<std::size_t>(i), '0') + onCycle);
      std::shuffle(onCycle.begin(), onCycle.end(), random);  // a start whose digits come back, but not it
      expectSameReturn(k, onCycle);
      expectSameReturn(k, std::to_string(random()) + std::to_string(random()) + std::to_string(random()));
      expectSameReturn(k, std::to_string(random() % 1'000));
    }
  }
  for (const char* start : {"10", "153", "407", "000", "136", "919"}) expectSameReturn(3, start);
  expectSameReturn(3, std::string(32'766, '9'));
}

TEST(CycleFinder, LongIterations) {
  const std::tuple<unsigned, int, int> rows[] = {
      {60, 6'047, 5'290}, {100, 32'167, 2'281}, {148, 128'948, 662}};
  for (const auto& [k, step, order] : rows) {
    DigitPower power(std::to_string(k));
    CycleFinder finder(power, "789");
    EXPECT_FALSE(finder.advance(step - 1)) << k;
    const std::optional<Return> cycle = finder.advance(step);
    ASSERT_EQ(cycle ? cycle->order() : 0, order) << k;
    const testing::PlainPower plain(k);
    std::string point = finder.current();
    std::string expected;
    for (int i = 1; i < order; ++i) expected.append(", ").append(point = plain.image(point));
    std::string list;
    finder.appendFurtherPoints(*cycle, list);
    EXPECT_TRUE(list == expected) << k;
  }
}

TEST(SilhouetteHistory, KeepsSilhouettesOfAnySize) {
  std::vector<Silhouette> silhouettes;
  const auto latestEqual = [&](std::size_t step) {
    while (step > 0 && silhouettes[step - 1] != silhouettes.back()) --step;
    return step == 0 ? 0 : step - 1;
  };
  SilhouetteHistory history;
  std::mt19937 random(7);
  const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
  for (std::size_t step = 0; step < 10'000; ++step) {
    Silhouette silhouette{{1 + below(40), 0, 0, 0, below(40), 0, 0, 0, 127}};
    if (below(4) == 0) silhouette.counts[below(9)] += 128 + below(2) * 100'000;
    silhouettes.push_back(silhouette);
    history.push(silhouette);
    ASSERT_EQ(history.at(step), silhouette);
    ASSERT_EQ(history.latestEqual(step), latestEqual(step)) << step;
  }
  std::size_t step = 0;
  for (std::size_t size = 1; step < history.size(); step += std::max<std::size_t>(size, 1)) {
    const auto fitting = history.packedFrom(step, 5'000);
    size = fitting.size();
    for (std::size_t i = 0; i < size; ++i) ASSERT_EQ(unpacked(fitting[i]), silhouettes[step + i]);
    ASSERT_EQ(size == 0, !packed(silhouettes[step]));
  }
}

}  // namespace
}  // namespace zelvion
