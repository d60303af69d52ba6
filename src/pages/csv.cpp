#include "pages/page_files.h"

namespace zelvion::pages {

std::string pointsCsv(const AtlasFacts& facts) {
  std::string csv = "cycle,rang,point\n";
  for (std::size_t i = 0; i < facts.cycles.size(); ++i) {
    const auto& points = facts.cycles[i].points();
    for (std::size_t rank = 0; rank < points.size(); ++rank) {
      csv += std::to_string(i + 1) + "," + std::to_string(rank + 1) + "," + points[rank].text() + "\n";
    }
  }
  return csv;
}

std::string basinsCsv(const AtlasFacts& facts) {
  std::string csv = "k,cycle,ordre,plus_petit,plus_grand,chiffres,nombres,pas_max,depuis\n";
  for (std::size_t i = 0; i < facts.cycles.size(); ++i) {
    const atlas::Cycle& cycle = facts.cycles[i];
    csv += std::to_string(facts.k) + "," + std::to_string(i + 1) + "," + std::to_string(cycle.order()) + "," +
           cycle.least().text() + "," + cycle.greatest().text() + "," + std::to_string(facts.basins.digits);
    const atlas::Basin* basin = facts.basinOf(cycle);
    csv += basin == nullptr ? ",0,,\n"
                            : "," + basin->below.back().text() + "," + std::to_string(basin->longestTail()) +
                                  "," + basin->farthest().text() + "\n";
  }
  return csv;
}

std::string tailsCsv(const AtlasFacts& facts, const std::vector<Decimal>& counts) {
  const std::vector<Decimal> least = facts.basins.leastByTail();
  std::string csv = "pas,nombres,plus_petit\n";
  for (std::size_t i = 0; i < counts.size(); ++i) {
    csv += std::to_string(i) + "," + counts[i].text() + "," + least[i].text() + "\n";
  }
  return csv;
}

}  // namespace zelvion::pages
