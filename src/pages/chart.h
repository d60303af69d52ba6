#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "engine/arith/decimal.h"
#include "pages/map_layout.h"

namespace zelvion::pages {

/// Where a chart draws its values: what is outside is room for the texts of the axes.
struct Frame {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

/// A round value of an axis, and where it stands: an x or a y in the picture.
struct Tick {
  double at = 0;
  std::string text;
};

enum class Scale { kLinear, kLogarithmic };

/// The values of an orbit, one after another over their steps.
struct PathChart {
  /// A value; `isBeyond` that it is greater than the axis goes, and stands at its end.
  struct Value {
    Place at;
    bool isOnCycle = false;
    bool isBeyond = false;
  };

  std::vector<Tick> steps;   ///< along x
  std::vector<Tick> values;  ///< along y
  std::vector<Value> path;   ///< as the iterates
};

/// Places the orbit `iterates`, of which the first `tail` are not on the cycle. The axis of the values goes
/// to a round one, linear from 0 in parts of 10^digits, logarithmic from 1 in powers of ten (0 stands with
/// 1). A linear axis ends at 10^digits, above which an orbit only begins.
PathChart pathChart(std::span<const Decimal> iterates, std::size_t tail, int digits, Scale scale,
                    const Frame& frame);

/// A bar for each of some whole numbers that follow one another.
struct BarChart {
  struct Bar {
    double left = 0;
    double right = 0;
    double top = 0;
  };

  std::vector<Tick> numbers;  ///< along x, below the middles of bars
  std::vector<Tick> values;   ///< along y
  std::vector<Bar> bars;
};

/// Places a bar for each of `values`, none negative, the first over the number `first`; `textOf` makes the
/// texts of the values, which start at 0. `gap` is the part of a bar's width that is left free beside it.
BarChart barChart(std::span<const double> values, std::size_t first, const Frame& frame,
                  std::string (*textOf)(double), double gap = 0);

/// How many numbers have a tail of each length, as parts of 10^digits, below a frame: `counts` as in
/// atlas::Basins::tails().
BarChart tailsChart(std::span<const Decimal> counts, int digits, const Frame& frame);

/// A cycle as a ring as long as its order, on a disc as large as its share.
struct RingLayout {
  Place centre;
  double disc = 0;            ///< its radius
  double ring = 0;            ///< its radius, 0 for a fixed point
  std::vector<Place> points;  ///< clockwise from the top; none where they would touch
  Arrow arrow;                ///< of the ring's direction
};

/// Places a cycle of `order` points and `share` of the numbers in a square of `size` to each side, beside the
/// longest order and the largest share of its page.
RingLayout ringLayout(double size, std::size_t order, std::size_t longest, double share, double largest);

}  // namespace zelvion::pages
