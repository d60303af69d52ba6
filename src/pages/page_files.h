#pragma once

#include <span>
#include <string>
#include <vector>

#include "pages/facts.h"

// The files of an atlas, one function each.
namespace zelvion::pages {

std::string frontPage(std::span<const AtlasFacts> powers);
/// `counts` are those of facts.basins.tails(), for the power at `place`.
std::string powerPage(std::span<const AtlasFacts> powers, std::size_t place,
                      const std::vector<Decimal>& counts);
/// What can be read across all powers that were ever worked out, from the table that the program carries.
std::string powersPage(std::span<const AtlasFacts> powers);

/// Every point of every cycle: "cycle,rang,point".
std::string pointsCsv(const AtlasFacts& facts);
/// A line for each cycle, with the columns of `velmoire cycles --bassins --csv` that are no lists.
std::string basinsCsv(const AtlasFacts& facts);
/// How many numbers have a tail of each length: "pas,nombres,plus_petit".
std::string tailsCsv(const AtlasFacts& facts, const std::vector<Decimal>& counts);

/// Whether the map of this power is drawn.
bool hasMap(std::int32_t k);

}  // namespace zelvion::pages
