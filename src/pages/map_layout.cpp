#include "pages/map_layout.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>

#include "engine/text/utf8.h"
#include "pages/typography.h"

// A node has as much of the full angle as it has leaves above it, and its largest branch goes on straight
// outwards.
namespace zelvion::pages {
namespace {

using std::numbers::pi;
using Point = std::complex<double>;

constexpr double kStep = 9;          // between the circles, at least
constexpr double kLeaf = 2.2;        // of the outermost circle for each leaf
constexpr double kWidest = 1.1;      // to each side, the angle of a tree on a ring
constexpr double kMargin = 8;        // around a tree
constexpr double kFont = 13;         // of the labels
constexpr double kCharacter = 0.57;  // the width of one, in parts of the font's size
constexpr double kFromPoint = 8;     // of a label
constexpr double kArrowRoom = 20;    // between two points
constexpr double kArrowPitch = 40;   // of a ring for each arrow, at least

Place placeOf(Point point) { return {point.real(), point.imag()}; }
double degrees(double angle) { return angle * 180 / pi; }

Label labelOf(const std::string& text) {
  return {text, {}, kFont * kCharacter * static_cast<double>(text::length(text)), kFont, 0};
}

/// A tree while it is worked out: places are seen from the middle of its ring.
struct Flow {
  MapTree tree;
  std::vector<std::size_t> others;  ///< the nodes that are not on the ring
  double step = kStep;
  Point centre;      ///< of the circle around all of it, on the map
  Point ringCentre;  ///< seen from there
};

class Layouter {
 public:
  explicit Layouter(const AtlasFacts& facts)
      : nodes_(atlas::silhouetteMap(facts.k)),
        before_(nodes_.size()),
        leaves_(nodes_.size()),
        steps_(nodes_.size()),
        place_(nodes_.size()) {
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      if (!nodes_[i].onCycle) before_[nodes_[i].next].push_back(i);
    }
    for (std::size_t i = 0; i < facts.cycles.size(); ++i) flows_.push_back(flowOf(facts, i));
    std::ranges::stable_sort(flows_, std::greater(), [](const Flow& flow) { return flow.tree.radius; });
    pack();
  }

  MapLayout layout() && {
    Point least = flows_[0].centre;
    Point most = least;
    for (const Flow& flow : flows_) {
      const Point reach(flow.tree.radius + kMargin, flow.tree.radius + kMargin);
      const Point low = flow.centre - reach;
      const Point high = flow.centre + reach;
      least = {std::min(least.real(), low.real()), std::min(least.imag(), low.imag())};
      most = {std::max(most.real(), high.real()), std::max(most.imag(), high.imag())};
    }
    MapLayout map{most.real() - least.real(), most.imag() - least.imag(), {}, {}, {}};
    map.spots.resize(nodes_.size());
    for (Flow& flow : flows_) {
      const Point centre = flow.centre - least;
      const Point ringCentre = centre + flow.ringCentre;
      const std::size_t rank = map.trees.size();
      for (const std::size_t node : flow.tree.ring)
        map.spots[node] = {placeOf(ringCentre + place_[node]), rank, 0, {}, {}};
      for (const std::size_t node : flow.others) {
        // A branch leaves both of its nodes straight away from the ring or towards it.
        const Point from = place_[node];
        const Point to = place_[nodes_[node].next];
        const double middle = (std::abs(from) + std::abs(to)) / 2;
        const Point turn = std::abs(to) > 0 ? std::polar(middle, std::arg(to)) : to;
        map.spots[node] = {placeOf(ringCentre + from), rank, steps_[node],
                           placeOf(ringCentre + std::polar(middle, std::arg(from))),
                           placeOf(ringCentre + turn)};
      }
      MapTree& tree = map.trees.emplace_back(std::move(flow.tree));
      tree.centre = placeOf(centre);
      tree.ringCentre = placeOf(ringCentre);
      const auto move = [&](Place& place) {
        place = {place.x + ringCentre.real(), place.y + ringCentre.imag()};
      };
      for (Arrow& arrow : tree.arrows) move(arrow.at);
      for (Label& label : tree.points) move(label.middle);
      move(tree.share.middle);
    }
    map.nodes = std::move(nodes_);
    return map;
  }

 private:
  Flow flowOf(const AtlasFacts& facts, std::size_t rank) {
    const atlas::Cycle& cycle = facts.cycles[rank];
    Flow flow;
    MapTree& tree = flow.tree;
    tree.cycle = rank;
    for (const Decimal& point : cycle.points()) {
      std::string digits = point.padded(nodes_[0].digits.size());
      std::ranges::sort(digits, std::greater());
      tree.ring.push_back(static_cast<std::size_t>(
          std::ranges::lower_bound(nodes_, digits, {}, &atlas::MapNode::digits) - nodes_.begin()));
      tree.points.push_back(labelOf(groupedDigits(point.text())));
    }
    const atlas::Basin* basin = facts.basinOf(cycle);
    if (basin != nullptr) tree.share = labelOf(percentText(facts.share(basin)));
    const auto order = static_cast<double>(tree.ring.size());
    const double widest = std::ranges::max(tree.points, {}, &Label::width).width;
    // Inside a ring stand the labels, along its radius, and the share in the middle.
    if (tree.ring.size() > 1) {
      // Two points are at least half of an equal part of the ring apart.
      const double inner = std::max(tree.share.width / 2 + kFromPoint, order * kFont / pi);
      tree.ringRadius = inner + widest + kFromPoint;
    }
    std::size_t leaves = 0;
    std::size_t levels = 0;
    for (const std::size_t node : tree.ring) leaves += measure(node, 0, levels);
    const auto depth = static_cast<double>(levels);
    const double outermost = static_cast<double>(leaves) * kLeaf / (2 * pi);
    if (levels > 0) flow.step = std::max(kStep, (outermost - tree.ringRadius) / depth);
    // Half of the full angle is for the ring's points alike, half for their leaves; no branch crosses a ring.
    double from = -pi / 2;
    for (const std::size_t node : tree.ring) {
      const double half =
          pi / 2 / order + pi / 2 * static_cast<double>(leaves_[node]) / static_cast<double>(leaves);
      const double reach = tree.ring.size() == 1 ? half : std::min(half, kWidest);
      place(flow, node, 0, from + half - reach, from + half + reach);
      from += 2 * half;
    }
    label(tree);
    enclose(flow);
    return flow;
  }

  // Places the labels and arrows of a ring.
  void label(MapTree& tree) const {
    if (tree.ring.size() == 1) {
      tree.points[0].middle = {0, -kFromPoint - kFont / 2};
      tree.share.middle = {0, kFromPoint + kFont / 2};
      return;
    }
    const auto angleOf = [&](std::size_t i) { return std::arg(place_[tree.ring[i]]); };
    double sinceArrow = kArrowPitch;
    for (std::size_t i = 0; i < tree.ring.size(); ++i) {
      Label& label = tree.points[i];
      const double angle = angleOf(i);
      label.middle = placeOf(std::polar(tree.ringRadius - kFromPoint - label.width / 2, angle));
      label.turn = degrees(angle) + (std::cos(angle) < 0 ? 180 : 0);
      const double gap = std::fmod(angleOf((i + 1) % tree.ring.size()) - angle + 4 * pi, 2 * pi);
      sinceArrow += gap * tree.ringRadius;
      if (sinceArrow < kArrowPitch || gap * tree.ringRadius < kArrowRoom) continue;
      sinceArrow = 0;
      tree.arrows.push_back(
          {placeOf(std::polar(tree.ringRadius, angle + gap / 2)), degrees(angle + gap / 2) + 90});
    }
  }

  // Finds the circle around all of `flow`.
  void enclose(Flow& flow) const {
    MapTree& tree = flow.tree;
    Point low(-tree.ringRadius, -tree.ringRadius);
    Point high = -low;
    for (const std::size_t node : flow.others) {
      const Point point = place_[node];
      low = {std::min(low.real(), point.real()), std::min(low.imag(), point.imag())};
      high = {std::max(high.real(), point.real()), std::max(high.imag(), point.imag())};
    }
    flow.ringCentre = -(low + high) / 2.0;
    const double labels =
        tree.ring.size() > 1
            ? 0
            : std::hypot(std::max(tree.points[0].width, tree.share.width) / 2, kFromPoint + kFont);
    tree.radius = std::abs(flow.ringCentre) + std::max(tree.ringRadius, labels);
    for (const std::size_t node : flow.others) {
      tree.radius = std::max(tree.radius, std::abs(place_[node] + flow.ringCentre));
    }
  }

  // Places the tree of `node`, which stands on the circle `level` and has the angles from `begin` to `end`.
  void place(Flow& flow, std::size_t node, std::size_t level, double begin, double end) {
    const double radius = flow.tree.ringRadius + flow.step * static_cast<double>(level);
    place_[node] = std::polar(radius, (begin + end) / 2);
    steps_[node] = level;
    if (level > 0) flow.others.push_back(node);
    double from = begin;
    for (const std::size_t child : before_[node]) {
      const double to =
          from + (end - begin) * static_cast<double>(leaves_[child]) / static_cast<double>(leaves_[node]);
      place(flow, child, level + 1, from, to);
      from = to;
    }
  }

  // How many leaves the tree of `node` has, at least one; `levels` becomes the deepest level. Puts the
  // largest branch of each node in the middle.
  std::size_t measure(std::size_t node, std::size_t level, std::size_t& levels) {
    levels = std::max(levels, level);
    std::vector<std::size_t>& children = before_[node];
    std::size_t leaves = 0;
    for (const std::size_t child : children) leaves += measure(child, level + 1, levels);
    std::ranges::stable_sort(children, std::less(), [&](std::size_t child) { return leaves_[child]; });
    std::vector<std::size_t> inOrder;
    for (std::size_t i = 0; i < children.size(); i += 2) inOrder.push_back(children[i]);
    for (std::size_t i = children.size() - children.size() % 2; i > 1; i -= 2)
      inOrder.push_back(children[i - 1]);
    children = std::move(inOrder);
    return leaves_[node] = std::max<std::size_t>(leaves, 1);
  }

  // The greatest in the middle, each next one as near to it as it goes without touching another: beside two
  // of those that stand.
  void pack() {
    const auto reach = [](const Flow& flow) { return flow.tree.radius + kMargin; };
    for (std::size_t i = 1; i < flows_.size(); ++i) {
      std::vector<Point> places;
      for (std::size_t a = 0; a < i; ++a) {
        const double toA = reach(flows_[a]) + reach(flows_[i]);
        for (int part = 0; part < 36; ++part)
          places.push_back(flows_[a].centre + std::polar(toA, part * pi / 18));
        for (std::size_t b = 0; b < a; ++b) {
          const double toB = reach(flows_[b]) + reach(flows_[i]);
          const Point between = flows_[b].centre - flows_[a].centre;
          const double distance = std::abs(between);
          if (distance > toA + toB || distance < std::abs(toA - toB)) continue;
          const double cosine = (toA * toA + distance * distance - toB * toB) / (2 * toA * distance);
          const double angle = std::acos(std::clamp(cosine, -1.0, 1.0));
          for (const double side : {angle, -angle}) {
            places.push_back(flows_[a].centre + std::polar(toA, std::arg(between) + side));
          }
        }
      }
      // A little more weight on the height makes the whole wider than high.
      const auto cost = [&](const Point& place) {
        const Point off = place - flows_[0].centre;
        return std::hypot(off.real(), 1.25 * off.imag());
      };
      double best = 1e300;
      for (const Point& place : places) {
        const bool isFree = std::ranges::all_of(
            flows_.begin(), flows_.begin() + static_cast<std::ptrdiff_t>(i), [&](const Flow& other) {
              return std::abs(other.centre - place) >= reach(other) + reach(flows_[i]) - 1e-6;
            });
        if (isFree && cost(place) < best) {
          best = cost(place);
          flows_[i].centre = place;
        }
      }
    }
  }

  std::vector<atlas::MapNode> nodes_;
  std::vector<std::vector<std::size_t>> before_;  ///< those off the cycles that lead to each node
  std::vector<std::size_t> leaves_;
  std::vector<std::size_t> steps_;  ///< to the cycle
  std::vector<Point> place_;        ///< seen from the middle of its ring
  std::vector<Flow> flows_;
};

}  // namespace

MapLayout mapLayout(const AtlasFacts& facts) { return Layouter(facts).layout(); }

}  // namespace zelvion::pages
