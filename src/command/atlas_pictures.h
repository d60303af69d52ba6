#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "command/atlas_facts.h"

namespace zelvion::command {

/// The colours of the pictures and of the pages around them, light and dark, as a style sheet.
extern const char* const kAtlasColours;

// Pictures as SVG for a page that has kAtlasColours; each tells its title and a description.

/// A cycle as a ring as long as its order, on a disc as large as its share, both beside the greatest of their
/// page.
std::string ringPicture(const AtlasFacts& facts, const atlas::Cycle& cycle);

/// How many numbers have a tail of each length. `numbers` has those counts by length.
std::string tailsPicture(const AtlasFacts& facts, std::span<const Decimal> numbers);

/// The values of `iterates` one after another, beside 10^digits.
std::string descentPicture(const AtlasFacts& facts, std::span<const Decimal> iterates);

/// Bars over the powers from `first` on, with an axis from 0 to the greatest value.
std::string barsPicture(const std::string& title, const std::string& description, std::int32_t first,
                        std::span<const double> values, const std::string& unit);

/// The map of a power up to atlas::kMaxMapPower: all multisets of digits flowing into their cycles, a tree
/// around each ring. As a file of its own where `alone`, with its colours.
std::string mapPicture(const AtlasFacts& facts, bool alone);

}  // namespace zelvion::command
