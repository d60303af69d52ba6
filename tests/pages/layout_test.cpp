#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "engine/atlas/cycle_list.h"
#include "engine/atlas/range.h"
#include "pages/chart.h"
#include "pages/map_layout.h"

namespace zelvion::pages {
namespace {

AtlasFacts factsFor(std::int32_t k) {
  Progress progress;
  auto cycles = *atlas::cyclesOf(k, 1, progress);
  return factsOf(k, std::move(cycles), *atlas::basinsOf(k, atlas::rangeDigits(k), 1, progress));
}

// How far the corners of a label reach from `from` along a direction: from first to second.
std::pair<double, double> reach(const Label& label, double angle) {
  const double turn = label.turn * std::numbers::pi / 180 - angle;
  const double middle = label.middle.x * std::cos(angle) + label.middle.y * std::sin(angle);
  const double half =
      std::abs(label.width / 2 * std::cos(turn)) + std::abs(label.height / 2 * std::sin(turn));
  return {middle - half, middle + half};
}

// Two rectangles are apart if they are so along a side of one of them.
bool areApart(const Label& a, const Label& b) {
  for (const double turn : {a.turn, a.turn + 90, b.turn, b.turn + 90}) {
    const auto [lowA, highA] = reach(a, turn * std::numbers::pi / 180);
    const auto [lowB, highB] = reach(b, turn * std::numbers::pi / 180);
    if (highA < lowB + 1 || highB < lowA + 1) return true;
  }
  return false;
}

TEST(MapLayout, HasRoomForEveryLabelAndSpot) {
  for (const std::int32_t k : {2, 3, 4, 5}) {
    const MapLayout map = mapLayout(factsFor(k));
    std::vector<Label> labels;
    for (const MapTree& tree : map.trees) {
      labels.insert(labels.end(), tree.points.begin(), tree.points.end());
      labels.push_back(tree.share);
      EXPECT_EQ(tree.arrows.empty(), tree.ring.size() == 1);
    }
    for (std::size_t i = 0; i < labels.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_TRUE(areApart(labels[i], labels[j]))
            << "k = " << k << ": " << labels[i].text << ", " << labels[j].text;
      }
    }
    for (std::size_t i = 0; i < map.spots.size(); ++i) {
      const MapSpot& spot = map.spots[i];
      const MapTree& tree = map.trees[spot.tree];
      EXPECT_LE(std::hypot(spot.at.x - tree.centre.x, spot.at.y - tree.centre.y), tree.radius + 1e-6);
      const std::size_t next = map.nodes[i].next;
      EXPECT_EQ(map.spots[next].tree, spot.tree);
      EXPECT_EQ(map.spots[next].steps, spot.steps > 0 ? spot.steps - 1 : 0);
    }
  }
}

TEST(Charts, PutTheirValuesWhereTheTicksSay) {
  const Frame frame{10, 20, 110, 120};
  const double values[] = {1, 4, 2};
  const BarChart bars = barChart(values, 5, frame, [](double value) { return std::to_string(value); });
  EXPECT_EQ(bars.bars[1].top, 20);
  EXPECT_EQ(bars.bars[0].top, 95);
  ASSERT_EQ(bars.numbers.size(), 3U);
  EXPECT_EQ(bars.numbers[1].text, "6");
  EXPECT_EQ(bars.numbers[1].at, (bars.bars[1].left + bars.bars[1].right) / 2);

  // 1,000 is beyond 10^2; on the other scale the powers of ten are as far from each other as the ticks say.
  const Decimal orbit[] = {Decimal(1000), Decimal(50), Decimal(100), Decimal(0)};
  const PathChart linear = pathChart(orbit, 2, 2, Scale::kLinear, frame);
  EXPECT_TRUE(linear.path[0].isBeyond);
  EXPECT_EQ(linear.path[0].at.y, 20);
  EXPECT_EQ(linear.path[1].at.y, 70);
  EXPECT_FALSE(linear.path[1].isOnCycle);
  EXPECT_TRUE(linear.path[2].isOnCycle);
  const PathChart steps = pathChart(orbit, 2, 2, Scale::kLogarithmic, frame);
  EXPECT_EQ(steps.values.size(), 4U);
  EXPECT_NEAR(steps.path[0].at.y, steps.values[3].at, 1e-9);
  EXPECT_NEAR(steps.path[2].at.y, steps.values[2].at, 1e-9);
  EXPECT_NEAR(steps.path[3].at.y, steps.values[0].at, 1e-9);
}

}  // namespace
}  // namespace zelvion::pages
