#include <algorithm>

#include "pages/html.h"
#include "pages/page_files.h"
#include "pages/pictures.h"
#include "pages/typography.h"

namespace zelvion::pages {
namespace {

constexpr const char* kFirstPath =
    "<ol class=\"chaine\">"
    "<li><b>27</b><span>2³ + 7³ = 8 + 343 = 351</span></li>"
    "<li><b>351</b><span>3³ + 5³ + 1³ = 27 + 125 + 1 = 153</span></li>"
    "<li><b>153</b><span>1³ + 5³ + 3³ = 1 + 125 + 27 = 153 : il y reste</span></li></ol>\n";

std::string countText(double count) { return groupedDigits(decimalText(count, 0)); }

// One for each power, the way into its page.
std::string cards(std::span<const AtlasFacts> powers) {
  std::string list = "<ul class=\"puissances\">\n";
  for (const AtlasFacts& facts : powers) {
    const std::size_t longest = facts.cycles.back().order();
    const std::string name = "k = " + std::to_string(facts.k);
    const std::string order = groupedDigits(std::to_string(longest));
    const std::string share = percentText(facts.largestShare());
    list += "<li>" +
            linkTo(facts.k, "<b>" + name + "</b>" +
                                ringPicture("Puissance " + std::to_string(facts.k),
                                            "Un anneau de " + order + (longest > 1 ? " points" : " point") +
                                                ", le plus long cycle, et un disque pour " + share +
                                                " des nombres, le plus grand bassin.",
                                            {longest, longest, facts.largestShare(), 1}) +
                                "<br>" + counted(facts.cycles.size(), "cycle") + "<br>" +
                                (longest > 1 ? "le plus long : " + order : std::string("tous points fixes")) +
                                "<br>bassin : " + share) +
            "</li>\n";
  }
  return typeset(list) + "</ul>\n";
}

std::string factsTable(std::span<const AtlasFacts> powers) {
  std::string rows;
  for (const AtlasFacts& facts : powers) {
    rows += "<tr>" + rowName(linkTo(facts.k, std::to_string(facts.k))) +
            cell(powerOfTenText(facts.rangeDigits)) + cell(std::to_string(facts.cycles.size())) +
            cell(std::to_string(facts.fixedPoints())) +
            cell(groupedDigits(std::to_string(facts.cycles.back().order()))) +
            cell(groupedDigits(std::to_string(facts.basins.deepest().longestTail()))) +
            numberCell(facts.basins.deepest().farthest().text()) + cell(percentText(facts.largestShare())) +
            "</tr>\n";
  }
  return table("Les faits de chaque puissance",
               {"k", "tout finit sous", "cycles", "points fixes", "plus long cycle", "pas, au plus",
                "le plus petit nombre qui en fait autant", "plus grand bassin"},
               rows);
}

std::string charts(std::span<const AtlasFacts> powers) {
  std::string figures = "<div class=\"barres\">\n";
  const auto add = [&](const std::string& title, const std::string& what, auto valueOf,
                       std::string (*textOf)(double) = countText) {
    std::vector<double> values;
    for (const AtlasFacts& facts : powers) values.push_back(static_cast<double>(valueOf(facts)));
    figures += figure(barsPicture(title, what + " pour chaque puissance.", powers.front().k, values, textOf),
                      what + ".");
  };
  add("Les cycles", "Nombre de cycles, points fixes compris",
      [](const AtlasFacts& facts) { return facts.cycles.size(); });
  add("Les points fixes", "Nombre de points fixes",
      [](const AtlasFacts& facts) { return facts.fixedPoints(); });
  add("Le plus long cycle", "Nombre de points du plus long cycle",
      [](const AtlasFacts& facts) { return facts.cycles.back().order(); });
  add("Le plus long chemin", "Plus grand nombre de pas avant le cycle",
      [](const AtlasFacts& facts) { return facts.basins.deepest().longestTail(); });
  add(
      "Le plus grand bassin", "Part des nombres qui finissent dans le même cycle, au plus",
      [](const AtlasFacts& facts) { return facts.largestShare(); }, percentText);
  return figures + "</div>\n";
}

}  // namespace

std::string frontPage(std::span<const AtlasFacts> powers) {
  // Cubes are the example, and their map the picture, where they are there.
  const auto cubes = std::ranges::find(powers, 3, &AtlasFacts::k);
  const AtlasFacts& shown = cubes == powers.end() ? powers.front() : *cubes;
  const std::string k = std::to_string(shown.k);
  const std::string first = std::to_string(powers.front().k);
  const std::string last = std::to_string(powers.back().k);
  std::string body =
      "<h1>Atlas des cycles</h1>\n" +
      paragraph(
          "Prenez un nombre, remplacez-le par la somme des cubes de ses chiffres, recommencez. Où "
          "arrivez-vous ?") +
      typeset(kFirstPath) +
      paragraph(
          "Tout nombre finit ainsi sur un <b>cycle</b> : un point fixe, comme 153, ou quelques nombres "
          "qui tournent en rond, comme 136 → 244 → 136. " +
          std::string(cubes == powers.end() ? "" : "Avec les cubes, il y a ") +
          linkTo(shown.k, cubes == powers.end()
                              ? "Voyez la puissance " + k
                              : counted(shown.cycles.size(), "cycle") + " et pas un de plus") +
          ". Ces pages donnent tous les cycles " +
          (powers.size() > 1 ? "des puissances " + first + " à " + last : "de la puissance " + first) +
          ", la part des nombres qui finissent sur chacun, et <a href=\"preuve.html\">la preuve</a> que "
          "rien ne manque.");
  if (hasMap(shown.k))
    body += figure(mapImage(shown),
                   "Tous les chemins de la puissance " + k +
                       " : chaque point est une combinaison de chiffres, qui mène pas à pas à l'anneau ou au "
                       "point fixe de son cycle. La carte s'ouvre en grand.");
  body += heading("Choisissez une puissance") + cards(powers) +
          paragraph(
              "L'anneau est le plus long cycle de la puissance ; le disque, la part des nombres qui "
              "finissent tous sur le même cycle, pour le plus grand bassin.",
              " class=\"gris\"") +
          heading("D'une puissance à l'autre") +
          paragraph("Jusqu'à k = 60, voyez <a href=\"puissances.html\">le tableau des puissances</a>.") +
          charts(powers) + heading("Les mêmes faits en chiffres") + factsTable(powers);
  const bool allCounted = std::ranges::all_of(powers, &AtlasFacts::countsAll);
  body +=
      paragraph(allCounted
                    ? "Les parts et les pas sont ceux de tous les nombres sous la borne de leur puissance ; "
                      "au-dessus, les chemins s'allongent sans fin, mais passent tous sous elle."
                    : "Les parts et les pas sont ceux des nombres comptés, que chaque page indique.") +
      paragraph("Ces pages ont été écrites par le programme velmoire, avec « velmoire atlas " + first +
                    (powers.size() > 1 ? ".." + last : "") + " ».",
                " class=\"gris\"");
  return page("Atlas des cycles", navigation(), body);
}

}  // namespace zelvion::pages
