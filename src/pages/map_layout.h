#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "engine/atlas/silhouette_map.h"
#include "pages/facts.h"

namespace zelvion::pages {

/// A place in a picture: x to the right, y downwards.
struct Place {
  double x = 0;
  double y = 0;
};

/// A text and the box that it fills: `middle` is the box's centre, and the box is turned around it.
struct Label {
  std::string text;
  Place middle;
  double width = 0;
  double height = 0;  ///< the size of its font
  double turn = 0;    ///< in degrees, clockwise
};

/// A multiset on the map. Its branch to the next multiset is a Bézier curve from `at` over `bend` and
/// `nextBend` to that one's place; on a ring there is none.
struct MapSpot {
  Place at;
  std::size_t tree = 0;   ///< the one it belongs to
  std::size_t steps = 0;  ///< to its cycle, 0 on it
  Place bend;
  Place nextBend;
};

/// An arrowhead on a ring, which points along it.
struct Arrow {
  Place at;
  double turn = 0;  ///< in degrees, clockwise from the direction of x
};

/// All that flows into one cycle. A fixed point has a ring of radius 0.
struct MapTree {
  std::size_t cycle = 0;          ///< its place in the list of cycles
  std::vector<std::size_t> ring;  ///< the multisets on the cycle, in its order, clockwise
  Place centre;                   ///< of a circle around the whole tree with its labels
  double radius = 0;
  Place ringCentre;
  double ringRadius = 0;
  std::vector<Arrow> arrows;
  std::vector<Label> points;  ///< the points of the cycle, as `ring`
  Label share;                ///< of all numbers; no text if nothing was counted
};

/// The map of a power: around the ring of each cycle stands the tree of what leads there, a circle for each
/// step. No two labels overlap, and no circle around a tree another one.
struct MapLayout {
  double width = 0;
  double height = 0;
  std::vector<atlas::MapNode> nodes;
  std::vector<MapSpot> spots;  ///< as `nodes`
  std::vector<MapTree> trees;  ///< the largest first
};

/// Works out the map of the power of `facts`, which is at most atlas::kMaxMapPower.
MapLayout mapLayout(const AtlasFacts& facts);

}  // namespace zelvion::pages
