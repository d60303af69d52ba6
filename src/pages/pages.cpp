#include "pages/pages.h"

#include "pages/embedded/embedded.h"
#include "pages/html.h"
#include "pages/page_files.h"
#include "pages/pictures.h"
#include "pages/typography.h"

namespace zelvion::pages {

std::map<std::string, std::string> atlasPages(std::span<const AtlasFacts> powers) {
  std::map<std::string, std::string> files = {
      {"index.html", frontPage(powers)},
      {"preuve.html", page("La preuve", navigation(), typeset(embedded::kProof))},
      {"puissances.csv", embedded::kPowers},
      {"puissances.html", powersPage(powers)},
      {"verifier.py", embedded::kChecker},
  };
  for (std::size_t place = 0; place < powers.size(); ++place) {
    const AtlasFacts& facts = powers[place];
    const std::string name = nameOf(facts.k);
    const std::vector<Decimal> counts = facts.basins.tails();
    files[name + ".html"] = powerPage(powers, place, counts);
    files[name + "-bassins.csv"] = basinsCsv(facts);
    files[name + "-cycles.csv"] = pointsCsv(facts);
    files[name + "-pas.csv"] = tailsCsv(facts, counts);
    if (hasMap(facts.k)) files[name + "-carte.svg"] = mapPicture(facts);
  }
  return files;
}

}  // namespace zelvion::pages
