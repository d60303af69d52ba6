#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "command/atlas_pictures.h"
#include "command/typography.h"
#include "engine/atlas/silhouette_map.h"

// The map of a power: around the ring of each cycle stand the trees of what leads there, a step a circle. A
// node has as much of the full angle as it has leaves above it, and its largest branch goes on straight
// outwards.
namespace zelvion::command {
namespace {

using std::numbers::pi;
using Point = std::complex<double>;

constexpr double kStep = 9;          // between the circles, at least
constexpr double kLeaf = 2.2;        // of the outermost circle for each leaf
constexpr double kRingPoint = 15;    // of a ring for each of its points
constexpr double kWidest = 1.1;      // to each side, the angle of a tree on a ring
constexpr double kMargin = 22;       // around a cycle's picture, with its caption
constexpr double kDigitWidth = 5.2;  // of a label

/// What flows into one cycle.
struct Flow {
  const atlas::Cycle* cycle = nullptr;
  std::vector<std::size_t> ring;  ///< the nodes on the cycle, in its order
  std::vector<std::size_t> tree;  ///< all others
  double ringRadius = 0;
  double step = kStep;
  double radius = 0;  ///< of the circle around all of it
  Point centre;       ///< of that circle
  Point ringCentre;   ///< seen from there
};

class Map {
 public:
  explicit Map(const AtlasFacts& facts)
      : facts_(facts),
        nodes_(atlas::silhouetteMap(facts.k)),
        before_(nodes_.size()),
        leaves_(nodes_.size()),
        place_(nodes_.size()) {
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      if (!nodes_[i].onCycle) before_[nodes_[i].next].push_back(i);
    }
    for (const atlas::Cycle& cycle : facts.cycles) flows_.push_back(flowOf(cycle));
    std::ranges::stable_sort(flows_, std::greater(), &Flow::radius);
    pack();
  }

  std::string draw(bool alone) {
    Point least = flows_[0].centre;
    Point most = least;
    for (const Flow& flow : flows_) {
      const double reach = flow.radius + kMargin;
      least = {std::min(least.real(), flow.centre.real() - reach),
               std::min(least.imag(), flow.centre.imag() - reach)};
      most = {std::max(most.real(), flow.centre.real() + reach),
              std::max(most.imag(), flow.centre.imag() + reach)};
    }
    const double head = alone ? 90 : 0;
    const Point size = most - least + Point(0, head);
    for (Flow& flow : flows_) flow.centre += Point(0, head) - least;
    const std::string title = "Carte de la puissance " + std::to_string(facts_.k);
    const std::string description =
        "Les " + groupedDigits(std::to_string(nodes_.size())) + " multiensembles de " +
        std::to_string(nodes_[0].digits.size()) +
        " chiffres et où chacun mène : " + std::to_string(facts_.cycles.size()) +
        " anneaux ou points fixes, avec autour de chacun l'arbre de ce qui y mène, un cercle par pas.";
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " +
                      decimalText(size.real(), 0) + " " + decimalText(size.imag(), 0) +
                      "\" role=\"img\" class=\"carte\"><title>" + typeset(title) + "</title><desc>" +
                      typeset(description) + "</desc>";
    if (alone) {
      svg += "<style>" + std::string(kAtlasColours) + "</style><path d=\"M0 0H" +
             decimalText(size.real(), 0) + "V" + decimalText(size.imag(), 0) +
             "H0Z\" style=\"fill:var(--fond)\"/>";
      const double centre = size.real() / 2;
      svg += "<text x=\"" + decimalText(centre) +
             "\" y=\"46\" text-anchor=\"middle\" style=\"font-size:30px\">" +
             typeset("La somme des puissances " + std::to_string(facts_.k) + " des chiffres") +
             "</text><text x=\"" + decimalText(centre) +
             "\" y=\"74\" text-anchor=\"middle\" style=\"font-size:15px;fill:var(--gris)\">" +
             typeset(proofText(facts_)) + "</text>";
    }
    for (const Flow& flow : flows_) svg += drawn(flow);
    return svg + "</svg>\n";
  }

 private:
  Flow flowOf(const atlas::Cycle& cycle) {
    Flow flow;
    flow.cycle = &cycle;
    for (const Decimal& point : cycle.points()) {
      std::string digits = point.padded(nodes_[0].digits.size());
      std::ranges::sort(digits, std::greater());
      flow.ring.push_back(static_cast<std::size_t>(
          std::ranges::lower_bound(nodes_, digits, {}, &atlas::MapNode::digits) - nodes_.begin()));
    }
    const auto order = static_cast<double>(flow.ring.size());
    const double labels = kDigitWidth * static_cast<double>(cycle.greatest().digits());
    if (flow.ring.size() > 1) flow.ringRadius = std::max(order * kRingPoint / (2 * pi), labels + 20);
    std::size_t leaves = 0;
    std::size_t levels = 0;
    for (const std::size_t node : flow.ring) leaves += measure(node, 0, levels);
    const auto depth = static_cast<double>(levels);
    const double outermost = static_cast<double>(leaves) * kLeaf / (2 * pi);
    if (levels > 0) flow.step = std::max(kStep, (outermost - flow.ringRadius) / depth);
    // Half of the full angle is for the ring's points alike, half for their leaves; no branch crosses a ring.
    double from = -pi / 2;
    for (const std::size_t node : flow.ring) {
      const double half =
          pi / 2 / order + pi / 2 * static_cast<double>(leaves_[node]) / static_cast<double>(leaves);
      const double reach = flow.ring.size() == 1 ? half : std::min(half, kWidest);
      place(flow, node, 0, from + half - reach, from + half + reach);
      from += 2 * half;
    }
    enclose(flow, labels / 2 + 8);
    return flow;
  }

  // Finds the circle around all of `flow`, no smaller than `least`.
  void enclose(Flow& flow, double least) const {
    Point low(-flow.ringRadius, -flow.ringRadius);
    Point high = -low;
    for (const std::size_t node : flow.tree) {
      const Point point = place_[node];
      low = {std::min(low.real(), point.real()), std::min(low.imag(), point.imag())};
      high = {std::max(high.real(), point.real()), std::max(high.imag(), point.imag())};
    }
    flow.ringCentre = -(low + high) / 2.0;
    flow.radius = std::max(std::abs(flow.ringCentre) + flow.ringRadius, least);
    for (const std::size_t node : flow.tree) {
      flow.radius = std::max(flow.radius, std::abs(place_[node] + flow.ringCentre));
    }
  }

  // Places the tree of `node`, which stands on the circle `level` and has the angles from `begin` to `end`.
  void place(Flow& flow, std::size_t node, std::size_t level, double begin, double end) {
    const double radius = flow.ringRadius + flow.step * static_cast<double>(level);
    place_[node] = std::polar(radius, (begin + end) / 2);
    if (level > 0) flow.tree.push_back(node);
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
    const auto reach = [](const Flow& flow) { return flow.radius + kMargin; };
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

  static std::string at(const Point& point) {
    return decimalText(point.real()) + " " + decimalText(point.imag());
  }

  std::string drawn(const Flow& flow) const {
    const Point ringCentre = flow.centre + flow.ringCentre;
    std::string branches;
    std::string dots;
    for (const std::size_t node : flow.tree) {
      // A branch leaves both of its nodes straight away from the ring or towards it.
      const Point from = place_[node];
      const Point to = place_[nodes_[node].next];
      const double middle = (std::abs(from) + std::abs(to)) / 2;
      const Point turn = std::abs(to) > 0 ? std::polar(middle, std::arg(to)) : to;
      branches += "M" + at(ringCentre + from) + "c" + at(std::polar(middle, std::arg(from)) - from) + " " +
                  at(turn - from) + " " + at(to - from);
      dots += "M" + at(ringCentre + from) + "h0";
    }
    std::string points;
    for (std::size_t i = 0; i < flow.ring.size(); ++i) points += pointOf(flow, i, ringCentre);
    std::string svg = "<g>";
    if (flow.ringRadius > 0) {
      svg += "<circle cx=\"" + decimalText(ringCentre.real()) + "\" cy=\"" + decimalText(ringCentre.imag()) +
             "\" r=\"" + decimalText(flow.ringRadius) +
             "\" style=\"fill:none;stroke:var(--anneau);stroke-width:2\"/>";
    }
    svg += "<path d=\"" + branches +
           "\" style=\"fill:none;stroke:var(--arbre);stroke-width:.6\"/><path d=\"" + dots +
           "\" style=\"fill:none;stroke:var(--arbre);stroke-width:2;stroke-linecap:round\"/>" + points;
    const double below = flow.centre.imag() + flow.radius + 16;
    return svg + "<text x=\"" + decimalText(flow.centre.real()) + "\" y=\"" + decimalText(below) +
           "\" text-anchor=\"middle\" style=\"font-size:11px;fill:var(--gris)\">" +
           percentText(facts_.share(facts_.basinOf(*flow.cycle))) + "</text></g>";
  }

  std::string pointOf(const Flow& flow, std::size_t index, Point ringCentre) const {
    constexpr const char* kLabel =
        "style=\"font-size:9px;paint-order:stroke;stroke:var(--fond);stroke-width:3px\"";
    const double angle = std::arg(place_[flow.ring[index]]);
    const Point place = ringCentre + place_[flow.ring[index]];
    const bool isFixed = flow.ring.size() == 1;
    std::string svg = "<circle cx=\"" + decimalText(place.real()) + "\" cy=\"" + decimalText(place.imag()) +
                      "\" r=\"3.5\" style=\"fill:var(" + (isFixed ? "--fixe" : "--anneau") + ")\"/>";
    const std::string text = flow.cycle->points()[index].text();
    if (isFixed) {
      return svg + "<text x=\"" + decimalText(place.real()) + "\" y=\"" + decimalText(place.imag() - 6) +
             "\" text-anchor=\"middle\" " + kLabel + ">" + text + "</text>";
    }
    // Inside the ring, along its radius, never upside down.
    const Point end = ringCentre + std::polar(flow.ringRadius - 7, angle);
    const bool isLeft = std::cos(angle) < 0;
    const double turn = angle * 180 / pi + (isLeft ? 180 : 0);
    return svg + "<text transform=\"translate(" + at(end) + ") rotate(" + decimalText(turn) +
           ")\" text-anchor=\"" + (isLeft ? "start" : "end") + "\" dy=\"3\" " + kLabel + ">" + text +
           "</text>";
  }

  const AtlasFacts& facts_;
  std::vector<atlas::MapNode> nodes_;
  std::vector<std::vector<std::size_t>> before_;  ///< those off the cycles that lead to each node
  std::vector<std::size_t> leaves_;
  std::vector<Point> place_;  ///< seen from the middle of its ring
  std::vector<Flow> flows_;
};

}  // namespace

std::string mapPicture(const AtlasFacts& facts, bool alone) { return Map(facts).draw(alone); }

}  // namespace zelvion::command
