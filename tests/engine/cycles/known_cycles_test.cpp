#include "engine/cycles/known_cycles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

#include "engine/plain_power.h"

namespace zelvion {
namespace {

constexpr std::int32_t kLimit = 1'000'000;

void expectFall(KnownCycles& cycles, const testing::PlainPower& plain, const std::string& start) {
  std::map<std::string, std::size_t> steps;
  std::vector<std::string> values;
  std::string value = start;
  for (; steps.emplace(value, values.size()).second; value = plain.image(value)) values.push_back(value);
  const std::size_t tail = steps[value];
  const auto isLess = [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  };
  std::vector<std::string> points(values.begin() + static_cast<std::ptrdiff_t>(tail), values.end());
  std::rotate(points.begin(), std::ranges::min_element(points, isLess), points.end());

  const auto fall = cycles.find(start, kLimit, false);
  ASSERT_TRUE(fall) << start;
  EXPECT_EQ(static_cast<std::size_t>(fall->tail), tail) << start;
  ASSERT_EQ(fall->cycle->order(), points.size()) << start;
  EXPECT_EQ(fall->cycle->greatest.text(), *std::ranges::max_element(points, isLess)) << start;
  std::vector<std::string> texts;
  for (const Decimal& point : cycles.points(*fall->cycle)) texts.push_back(point.text());
  EXPECT_EQ(texts, points) << start;
}

TEST(KnownCycles, AgreeWithAMapOfAllIteratesWhateverCameBefore) {
  std::mt19937_64 random(135);
  for (const unsigned k : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 9U, 16U, 25U}) {
    const testing::PlainPower plain(k);
    Transformation transformation(static_cast<std::int32_t>(k));
    KnownCycles cycles(transformation);
    for (int number = 0; number < 400; ++number) expectFall(cycles, plain, std::to_string(number));
    for (const std::size_t size : {7U, 8U, 71U, 72U, 639U, 640U}) {  // where images pass four millions
      expectFall(cycles, plain, std::string(size, '9'));
    }
    std::string onCycle = "789";
    for (int i = 0; i < 900; ++i) onCycle = plain.image(onCycle);
    for (int i = 0; i < 40; ++i) {
      expectFall(cycles, plain, std::to_string(1 + random() % 1'000'000'000));
      expectFall(cycles, plain, onCycle);
      std::string shuffled = onCycle;  // one step away from the cycle, or on it
      std::ranges::shuffle(shuffled, random);
      if (shuffled.front() != '0') expectFall(cycles, plain, shuffled);
      onCycle = plain.image(onCycle);
    }
  }
}

// Counts above 127 have no place in the table.
TEST(KnownCycles, TakeNumbersOfAnyLength) {
  Transformation transformation(7);
  KnownCycles cycles(transformation);
  const testing::PlainPower plain(7);
  for (const std::size_t size : {126U, 127U, 128U, 5'000U, 5'000U, 2'000'000U}) {
    expectFall(cycles, plain, std::string(size, '9'));
  }
}

// More silhouettes than the table holds, which drops earlier ones.
TEST(KnownCycles, ForgetWithoutHarm) {
  Transformation transformation(100);
  KnownCycles cycles(transformation);
  const auto first = cycles.find("789", kLimit, false);
  ASSERT_TRUE(first);
  std::mt19937_64 random(60);
  for (int i = 0; i < 60; ++i) ASSERT_TRUE(cycles.find(std::to_string(random()), kLimit, false));
  KnownCycles fresh(transformation);
  for (int i = 0; i < 6; ++i) {
    const std::string start = i == 0 ? "789" : std::to_string(random());
    const auto known = cycles.find(start, kLimit, false);
    const auto anew = fresh.find(start, kLimit, false);
    ASSERT_TRUE(known && anew) << start;
    EXPECT_EQ(known->tail, anew->tail) << start;
    EXPECT_EQ(known->cycle->least, anew->cycle->least) << start;
  }
}

TEST(KnownCycles, KeepToTheLimitWhateverIsKnown) {
  const std::atomic<bool> stopped{true};
  for (const std::int32_t k : {2, 9}) {
    Transformation transformation(k);
    KnownCycles first(transformation);
    const auto fall = first.find("789", kLimit, false);
    const auto needed = fall->tail + static_cast<std::int32_t>(fall->cycle->order());
    KnownCycles cycles(transformation);
    EXPECT_FALSE(cycles.find("789", needed - 1, false));
    EXPECT_FALSE(KnownCycles(transformation).find("789", needed, stopped));
    EXPECT_TRUE(cycles.find("789", needed, false));
    EXPECT_FALSE(cycles.find("789", needed - 1, false));
  }
}

}  // namespace
}  // namespace zelvion
