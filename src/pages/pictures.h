#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "pages/facts.h"

namespace zelvion::pages {

// Pictures as SVG for a page that has embedded::kColours; each tells its title and a description.

/// What a ring shows, beside the longest order and the largest share of its page.
struct RingFacts {
  std::size_t order;
  std::size_t longest;
  double share;
  double largestShare;
};

/// A cycle as a ring as long as its order, on a disc as large as its share.
std::string ringPicture(const std::string& title, const std::string& description, const RingFacts& facts);

/// How many numbers have a tail of each length. `numbers` has those counts by length.
std::string tailsPicture(const AtlasFacts& facts, std::span<const Decimal> numbers);

/// The values of `iterates` one after another, beside 10^digits.
std::string descentPicture(const AtlasFacts& facts, std::span<const Decimal> iterates);

/// Bars over the powers from `first` on, links to their pages, with an axis from 0, whose texts `textOf`
/// makes.
std::string barsPicture(const std::string& title, const std::string& description, std::int32_t first,
                        std::span<const double> values, std::string (*textOf)(double));

/// The map of a power up to atlas::kMaxMapPower: all multisets of digits flowing into their cycles, a tree
/// around each ring. A file of its own, with its colours.
std::string mapPicture(const AtlasFacts& facts);
/// That file in a page, and a link to it. Its labels are not shown where they would be too small to read.
std::string mapImage(const AtlasFacts& facts);

}  // namespace zelvion::pages
