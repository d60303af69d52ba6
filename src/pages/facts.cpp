#include "pages/facts.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "engine/atlas/range.h"
#include "pages/typography.h"

namespace zelvion::pages {

std::size_t AtlasFacts::fixedPoints() const {
  return static_cast<std::size_t>(std::ranges::count_if(cycles, &atlas::Cycle::isFixedPoint));
}

const atlas::Basin* AtlasFacts::basinOf(const atlas::Cycle& cycle) const {
  const auto found = std::ranges::find(basins.basins, cycle, &atlas::Basin::cycle);
  return found == basins.basins.end() ? nullptr : &*found;
}

double AtlasFacts::share(const atlas::Basin* basin) const {
  return basin == nullptr ? 0 : shareOf(basin->below.back(), basins.digits);
}

double AtlasFacts::largestShare() const {
  double largest = 0;
  for (const atlas::Basin& basin : basins.basins) largest = std::max(largest, share(&basin));
  return largest;
}

AtlasFacts factsOf(std::int32_t k, std::vector<atlas::Cycle> cycles, atlas::Basins basins) {
  AtlasFacts facts{k, atlas::rangeDigits(k), std::move(cycles), std::move(basins)};
  const auto isListed = [&](const atlas::Basin& basin) {
    return std::ranges::binary_search(facts.cycles, basin.cycle);
  };
  const bool agree = std::ranges::all_of(facts.basins.basins, isListed) &&
                     (!facts.countsAll() || facts.basins.basins.size() == facts.cycles.size());
  if (!agree)
    throw std::runtime_error("Les deux calculs ne trouvent pas les mêmes cycles pour k = " +
                             std::to_string(k) + " : aucun résultat n'est donné.");
  return facts;
}

double shareOf(const Decimal& part, int digits) {
  const std::string text = part.padded(static_cast<std::size_t>(digits));
  if (text.size() > static_cast<std::size_t>(digits)) return 1;
  return std::strtod(("0." + text).c_str(), nullptr);
}

std::string proofText(const AtlasFacts& facts) {
  return "Tout nombre finit sous " + powerOfTenText(facts.rangeDigits) +
         ". Liste complète : " + counted(facts.cycles.size(), "cycle") + ", dont " +
         counted(facts.fixedPoints(), "point") + (facts.fixedPoints() > 1 ? " fixes." : " fixe.");
}

std::string countedText(const AtlasFacts& facts) {
  const std::string bound = powerOfTenText(facts.basins.digits);
  if (facts.countsAll())
    return "Les parts sont celles des nombres de 0 à " + bound + " − 1, tous comptés un à un.";
  return "Les parts et les pas sont ceux des nombres de 0 à " + bound +
         " − 1, tous comptés ; des nombres plus grands, il n'est rien dit ici.";
}

}  // namespace zelvion::pages
