#include <algorithm>

#include "engine/atlas/silhouette_map.h"
#include "engine/transform/transformation.h"
#include "pages/html.h"
#include "pages/page_files.h"
#include "pages/pictures.h"
#include "pages/typography.h"

namespace zelvion::pages {
namespace {

constexpr std::size_t kFewPoints = 8;
constexpr std::size_t kFewSteps = 16;

std::string grouped(std::size_t number) { return groupedDigits(std::to_string(number)); }
std::string grouped(const Decimal& number) { return groupedDigits(number.text()); }

// A number in groups that may go on in the next line, between two of them.
std::string breakable(std::string text) {
  constexpr std::string_view kBlank = "\u202F";
  constexpr std::string_view kBreak = "<wbr>";
  for (std::size_t at = 0; (at = text.find(kBlank, at)) != std::string::npos; at += kBreak.size())
    text.insert(at += kBlank.size(), kBreak);
  return text;
}

std::string pointsText(const atlas::Cycle& cycle) {
  std::string list;
  for (const Decimal& point : cycle.points()) list += (list.empty() ? "" : " → ") + grouped(point);
  return list;
}

std::string tableLink(const AtlasFacts& facts, const std::string& what, const std::string& file) {
  return paragraph(what + ", en <a href=\"" + nameOf(facts.k) + "-" + file + ".csv\">tableau CSV</a>.",
                   " class=\"cache\"");
}

// From the number with the longest tail to the first point of its cycle.
std::vector<Decimal> descentOf(const AtlasFacts& facts) {
  Transformation transformation(facts.k);
  std::vector<Decimal> iterates = {facts.basins.deepest().farthest()};
  for (std::size_t step = 0; step < facts.basins.deepest().longestTail(); ++step) {
    iterates.push_back(transformation.image(silhouetteOf(iterates.back())));
  }
  return iterates;
}

std::string ringsSection(const AtlasFacts& facts) {
  std::vector<const atlas::Cycle*> cycles;
  for (const atlas::Cycle& cycle : facts.cycles) {
    if (!cycle.isFixedPoint()) cycles.push_back(&cycle);
  }
  if (cycles.empty()) return heading("Les cycles") + paragraph("Il n'y a que des points fixes.");
  const auto shareOfCycle = [&](const atlas::Cycle* cycle) { return facts.share(facts.basinOf(*cycle)); };
  std::ranges::stable_sort(cycles, std::greater(), shareOfCycle);
  std::string section =
      heading("Les cycles") +
      paragraph(
          "L'anneau est aussi long que le cycle a de points ; la surface du disque est la part des "
          "nombres qui y finissent. Les nombres tournent dans le sens de la flèche.") +
      "<ul class=\"anneaux\">\n";
  for (const atlas::Cycle* cycle : cycles) {
    const std::string order = grouped(cycle->order());
    const std::string share = percentText(shareOfCycle(cycle));
    const std::string least = grouped(cycle->least());
    section += "<li>" +
               ringPicture(
                   "Cycle d'ordre " + order + " depuis " + least,
                   "Un disque pour " + share + " des nombres, un anneau de " + order + " points.",
                   {cycle->order(), facts.cycles.back().order(), shareOfCycle(cycle), facts.largestShare()}) +
               "<p><b>ordre " + order + "</b>, " + share + "<br>" +
               typeset("depuis <span class=\"nombres\">") + breakable(least) + "</span></p></li>\n";
  }
  return section + "</ul>\n";
}

std::string fixedPointsSection(const AtlasFacts& facts) {
  std::string rows;
  std::string narcissistic;
  for (const atlas::Cycle& cycle : facts.cycles) {
    if (!cycle.isFixedPoint()) continue;
    rows += "<tr>" + numberCell(cycle.least().text()) + cell(percentText(facts.share(facts.basinOf(cycle)))) +
            "</tr>\n";
    if (cycle.least().digits() != static_cast<std::size_t>(facts.k)) continue;
    narcissistic += (narcissistic.empty() ? "" : ", ") + grouped(cycle.least());
  }
  const std::string digits = counted(static_cast<std::size_t>(facts.k), "chiffre");
  return heading("Les points fixes") + table("Les points fixes", {"point fixe", "part des nombres"}, rows) +
         paragraph(narcissistic.empty()
                       ? "Aucun n'a exactement " + digits +
                             " : il n'y a pas de nombre narcissique parfait de "
                             "cet ordre."
                       : "Ont exactement " + digits +
                             ", et sont donc des nombres narcissiques parfaits : " + narcissistic + ".");
}

std::string mapSection(const AtlasFacts& facts) {
  const std::string digits = counted(static_cast<std::size_t>(facts.rangeDigits), "chiffre");
  std::string section = heading("La carte");
  if (facts.k == 1)
    return section + paragraph("Pas de carte ici : sous la borne, il n'y a que les points fixes.");
  if (!hasMap(facts.k)) {
    // Ten kinds of digits: d of them can be chosen in C(d + 9, 9) ways.
    Decimal multisets(1);
    for (std::uint64_t i = 1; i <= 9; ++i) {
      multisets = multisets * Decimal(static_cast<std::uint64_t>(facts.rangeDigits) + i);
      multisets.divideBy(static_cast<std::uint32_t>(i));
    }
    return section +
           paragraph("Pas de carte ici : les multiensembles de " + digits + " sont " + grouped(multisets) +
                     ", plus qu'une image n'en montre. Il y en a une pour les puissances 2 à " +
                     std::to_string(atlas::kMaxMapPower) + ".");
  }
  return section + figure(mapImage(facts),
                          "Chaque point est un multiensemble de " + digits +
                              ", zéros de tête compris : tous les nombres qui ont ces chiffres-là, dans "
                              "n'importe quel ordre. Une branche est un pas, vers l'intérieur, jusqu'à "
                              "l'anneau ou au point fixe du cycle ; à côté, la part des nombres qui y "
                              "finissent. L'image s'ouvre en grand, avec ses nombres.");
}

std::string tailsSection(const AtlasFacts& facts, const std::vector<Decimal>& counts) {
  const auto most = std::ranges::max_element(counts);
  std::string list;
  if (counts.size() <= kFewSteps) {
    const std::vector<Decimal> least = facts.basins.leastByTail();
    for (std::size_t i = 0; i < counts.size(); ++i) {
      list += "<tr>" + rowName(std::to_string(i)) + cell(grouped(counts[i])) +
              cell(percentText(shareOf(counts[i], facts.basins.digits))) + numberCell(least[i].text()) +
              "</tr>\n";
    }
    list = table("Combien de nombres font tant de pas", {"pas", "nombres", "part", "le plus petit"}, list);
  }
  std::size_t half = 0;
  for (Decimal sum = counts[0]; shareOf(sum, facts.basins.digits) < 0.5; sum += counts[half]) ++half;
  const std::string bound = powerOfTenText(facts.basins.digits);
  return heading("Combien de pas avant le cycle") +
         figure(tailsPicture(facts, counts),
                "Le plus souvent " + grouped(static_cast<std::size_t>(most - counts.begin())) + " pas : " +
                    percentText(shareOf(*most, facts.basins.digits)) + " des nombres sous " + bound +
                    ". Au plus " + grouped(counts.size() - 1) + " ; la moitié des nombres en font au plus " +
                    grouped(half) + ". Sont déjà sur leur cycle : " + grouped(counts[0]) +
                    ". Au-dessus de la borne, les chemins s'allongent "
                    "<a href=\"preuve.html#plus-loin\">sans fin</a>.") +
         list +
         tableLink(facts, "Ces comptes, avec le plus petit nombre de chaque longueur de chemin", "pas");
}

std::string descentSection(const AtlasFacts& facts) {
  const std::vector<Decimal> iterates = descentOf(facts);
  const std::size_t steps = iterates.size() - 1;
  // In a text of fixed width plain blanks part the groups.
  const auto plain = [](const std::string& digits) {
    std::string text = digits;
    for (std::size_t place = text.size(); place > 3;) text.insert(place -= 3, " ");
    return text;
  };
  std::size_t width = 0;
  for (const Decimal& iterate : iterates) width = std::max(width, plain(iterate.text()).size());
  std::string list = "<pre>" + std::string(width + 6, ' ') + "   9 8 7 6 5 4 3 2 1 0\n";
  for (std::size_t i = 0; i <= steps; ++i) {
    const std::string digits = iterates[i].text();
    const std::string number = plain(digits);
    const std::string step = plain(std::to_string(i));
    list +=
        std::string(6 - step.size(), ' ') + step + std::string(width + 2 - number.size(), ' ') + number + " ";
    for (char digit = '9'; digit >= '0'; --digit) {
      const auto count = std::ranges::count(digits, digit);
      list += (count > 9 ? "" : " ") + (count == 0 ? "·" : std::to_string(count));
    }
    list += "\n";
  }
  list += "</pre>\n";
  if (steps > kFewSteps)
    list = "<details><summary>Pas à pas, avec le compte de ses chiffres 9, 8, … 0</summary>" + list +
           "</details>\n";
  const std::string number = grouped(iterates.front());
  return heading("Le plus long chemin") +
         paragraph("De tous les nombres sous " + powerOfTenText(facts.basins.digits) + ", " + number +
                   " est le plus petit qui en fasse autant : " + grouped(steps) + " pas avant " +
                   grouped(iterates.back()) + ", le premier point de son cycle.") +
         figure(descentPicture(facts, iterates), "Chaque itéré de " + number + ", en parts de " +
                                                     powerOfTenText(facts.rangeDigits) +
                                                     ". Le point marque l'arrivée sur le cycle.") +
         list;
}

std::string listSection(const AtlasFacts& facts) {
  std::string rows;
  std::string lists;
  std::size_t rank = 0;
  for (const atlas::Cycle& cycle : facts.cycles) {
    const std::string name = std::to_string(++rank);
    const atlas::Basin* basin = facts.basinOf(cycle);
    rows += "<tr>" + rowName(name) + cell(grouped(cycle.order())) + numberCell(cycle.least().text()) +
            numberCell(cycle.greatest().text());
    rows += basin == nullptr ? cell("0") + cell("–") + cell("–") + cell("–")
                             : cell(percentText(facts.share(basin))) + cell(grouped(basin->below.back())) +
                                   cell(grouped(basin->longestTail())) + numberCell(basin->farthest().text());
    rows += "</tr>\n";
    if (cycle.isFixedPoint()) continue;
    const std::string points = "<p class=\"nombres\">" + pointsText(cycle) + "</p>";
    const std::string title = "Cycle " + name + ", " + counted(cycle.order(), "point");
    lists += cycle.order() <= kFewPoints
                 ? "<p>" + title + typeset(" :") + "</p>" + points + "\n"
                 : "<details><summary>" + title + "</summary>" + points + "</details>\n";
  }
  return heading("La liste des cycles") + paragraph(countedText(facts)) +
         table("La liste des cycles",
               {"cycle", "ordre", "plus petit point", "plus grand point", "part", "nombres qui y finissent",
                "pas, au plus", "le plus petit qui en fait autant"},
               rows) +
         tableLink(facts, "Cette liste", "bassins") + lists + tableLink(facts, "Tous les points", "cycles");
}

}  // namespace

bool hasMap(std::int32_t k) { return k >= 2 && k <= atlas::kMaxMapPower; }

std::string powerPage(std::span<const AtlasFacts> powers, std::size_t place,
                      const std::vector<Decimal>& counts) {
  const AtlasFacts& facts = powers[place];
  const std::string title = "Puissance " + std::to_string(facts.k);
  return page(
      title, navigation(powers, place),
      "<h1>" + title + "</h1>\n" +
          paragraph(proofText(facts) + " <a href=\"preuve.html\">La preuve</a>.", " class=\"preuve\"") +
          paragraph("Un nombre va à la somme des puissances " + std::to_string(facts.k) +
                    " de ses chiffres, et ainsi de suite. " + countedText(facts)) +
          ringsSection(facts) + fixedPointsSection(facts) + mapSection(facts) + tailsSection(facts, counts) +
          descentSection(facts) + listSection(facts));
}

}  // namespace zelvion::pages
