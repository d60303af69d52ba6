#include "command/atlas_pages.h"

#include <algorithm>

#include "command/atlas_pictures.h"
#include "command/typography.h"
#include "engine/atlas/silhouette_map.h"
#include "engine/transform/transformation.h"

namespace zelvion::command {
namespace {

constexpr std::size_t kFewPoints = 8;
constexpr std::size_t kFewSteps = 16;

constexpr const char* kStyle =
    R"(body{margin:0 auto;padding:1rem 1rem 3rem;max-width:70rem;background:var(--fond);color:var(--encre);font:1rem/1.55 "Liberation Sans",Arial,sans-serif}
a{color:var(--anneau)}
h1{font-size:1.9rem;line-height:1.2;margin:.6rem 0}
h2{font-size:1.3rem;margin:2.4rem 0 .6rem}
p{max-width:44rem}
.preuve{font-size:1.15rem;border-left:4px solid var(--anneau);padding-left:.8rem}
.gris,figcaption,summary{color:var(--gris)}
figure{margin:1rem 0}
svg{max-width:100%;height:auto;font-size:12px}
.large{width:100%}
.carte{width:100%;height:auto}
.anneaux{list-style:none;display:flex;flex-wrap:wrap;gap:1rem 1.2rem;padding:0}
.anneaux li{width:140px}
.anneaux p{margin:.2rem 0;font-size:.85rem;line-height:1.35;overflow-wrap:anywhere}
.barres{display:grid;grid-template-columns:repeat(auto-fit,minmax(min(100%,20rem),1fr));gap:1rem}
.barres svg{width:100%}
.defile{overflow-x:auto}
table{border-collapse:collapse;font-variant-numeric:tabular-nums}
th,td{border-bottom:1px solid var(--trait);padding:.25rem .7rem;text-align:right;white-space:nowrap}
th{color:var(--gris);font-weight:normal;vertical-align:bottom}
pre{overflow-x:auto;line-height:1.35}
td.nombre,.nombres,pre{font-family:"Liberation Mono",monospace;font-size:.9em}
.nombres{overflow-wrap:anywhere}
nav{display:flex;flex-wrap:wrap;gap:.3rem 1rem}
@media(max-width:40rem){.large{font-size:22px}h1{font-size:1.5rem}}
@media print{nav,.cache{display:none}section{break-inside:avoid-page}}
)";

std::string page(const std::string& title, const std::string& body) {
  return "<!DOCTYPE html>\n<html lang=\"fr\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width\">\n<title>" +
         typeset(title) + "</title>\n<style>" + kAtlasColours + kStyle + "</style>\n</head>\n<body>\n" +
         body + "</body>\n</html>\n";
}

std::string paragraph(const std::string& text, const std::string& attributes = "") {
  return "<p" + attributes + ">" + typeset(text) + "</p>\n";
}

std::string heading(const std::string& text) { return "<h2>" + typeset(text) + "</h2>\n"; }

std::string figure(const std::string& picture, const std::string& caption) {
  return "<figure>" + picture + "<figcaption>" + typeset(caption) + "</figcaption></figure>\n";
}

std::string cell(const std::string& text, const std::string& attributes = "") {
  return "<td" + attributes + ">" + text + "</td>";
}

std::string numberCell(const std::string& digits) { return cell(digits, " class=\"nombre\""); }

std::string table(std::initializer_list<const char*> names, const std::string& rows) {
  std::string head;
  for (const char* name : names) head += "<th scope=\"col\">" + typeset(name) + "</th>";
  return "<div class=\"defile\"><table><thead><tr>" + head + "</tr></thead><tbody>\n" + rows +
         "</tbody></table></div>\n";
}

std::string nameOf(std::int32_t k) { return "k" + std::to_string(k); }

std::string linkTo(std::int32_t k, const std::string& text) {
  return "<a href=\"" + nameOf(k) + ".html\">" + text + "</a>";
}

std::string pointsText(const atlas::Cycle& cycle) {
  std::string list;
  for (const Decimal& point : cycle.points()) list += (list.empty() ? "" : " → ") + point.text();
  return list;
}

// From the number with the longest tail to the first point of its cycle.
std::vector<Decimal> descentOf(const AtlasFacts& facts) {
  Transformation transformation(facts.k);
  std::vector<Decimal> iterates = {facts.basins.deepest().farthest};
  for (std::size_t step = 0; step < facts.basins.deepest().longestTail(); ++step) {
    iterates.push_back(transformation.image(silhouetteOf(iterates.back())));
  }
  return iterates;
}

std::string ringsSection(const AtlasFacts& facts) {
  std::string section =
      heading("Les cycles") +
      paragraph(
          "L'anneau est aussi long que le cycle a de points ; la surface du disque est la part des "
          "nombres qui y finissent. Un point fixe est un cycle d'un seul point.") +
      "<ul class=\"anneaux\">\n";
  for (const atlas::Cycle& cycle : facts.cycles) {
    const std::string order = cycle.isFixedPoint() ? "point fixe" : "ordre " + std::to_string(cycle.order());
    section += "<li>" + ringPicture(facts, cycle) + "<p><b>" + order + "</b>, " +
               percentText(facts.share(facts.basinOf(cycle))) + "<br><span class=\"nombres\">" +
               cycle.least().text() + "</span></p></li>\n";
  }
  return section + "</ul>\n";
}

std::string cyclesSection(const AtlasFacts& facts) {
  std::string rows;
  std::string lists;
  std::size_t rank = 0;
  for (const atlas::Cycle& cycle : facts.cycles) {
    const std::string name = std::to_string(++rank);
    const atlas::Basin* basin = facts.basinOf(cycle);
    rows += "<tr>" + cell(name) + cell(groupedDigits(std::to_string(cycle.order()))) +
            numberCell(cycle.least().text()) + numberCell(cycle.greatest().text());
    rows += basin == nullptr
                ? cell("0") + cell("–") + cell("–") + cell("–")
                : cell(percentText(facts.share(basin))) + cell(groupedDigits(basin->below.back().text())) +
                      cell(groupedDigits(std::to_string(basin->longestTail()))) +
                      numberCell(basin->farthest.text());
    rows += "</tr>\n";
    if (cycle.isFixedPoint()) continue;
    const std::string points = "<p class=\"nombres\">" + pointsText(cycle) + "</p>";
    const std::string title = "Cycle " + name + ", " + counted(cycle.order(), "point");
    lists += cycle.order() <= kFewPoints
                 ? "<p>" + title + typeset(" :") + "</p>" + points + "\n"
                 : "<details><summary>" + title + "</summary>" + points + "</details>\n";
  }
  return heading("La liste des cycles") + paragraph(countedText(facts)) +
         table({"cycle", "ordre", "plus petit point", "plus grand point", "part", "nombres qui y finissent",
                "pas, au plus", "le plus petit qui en fait autant"},
               rows) +
         lists +
         paragraph("Tous les points, en <a href=\"" + nameOf(facts.k) + "-cycles.csv\">tableau CSV</a>.",
                   " class=\"cache\"");
}

std::string fixedPointsSection(const AtlasFacts& facts) {
  std::string items;
  std::string narcissistic;
  for (const atlas::Cycle& cycle : facts.cycles) {
    if (!cycle.isFixedPoint()) continue;
    items += (items.empty() ? "" : ", ") + cycle.least().text();
    if (cycle.least().digits() != static_cast<std::size_t>(facts.k)) continue;
    narcissistic += (narcissistic.empty() ? "" : ", ") + cycle.least().text();
  }
  return heading("Les points fixes") + "<p class=\"nombres\">" + items + "</p>\n" +
         paragraph(narcissistic.empty()
                       ? "Aucun n'a exactement " + counted(static_cast<std::size_t>(facts.k), "chiffre") +
                             " : il n'y a pas de nombre narcissique parfait de cet ordre."
                       : "Ont exactement " + counted(static_cast<std::size_t>(facts.k), "chiffre") +
                             ", et sont donc des nombres narcissiques parfaits : " + narcissistic + ".");
}

std::string tailsSection(const AtlasFacts& facts, const std::vector<Decimal>& counts) {
  const auto most = std::ranges::max_element(counts);
  std::string list;
  if (counts.size() <= kFewSteps) {
    for (std::size_t i = 0; i < counts.size(); ++i) {
      list += "<tr>" + cell(std::to_string(i)) + cell(groupedDigits(counts[i].text())) +
              cell(percentText(shareOf(counts[i], facts.basins.digits))) + "</tr>\n";
    }
    list = table({"pas", "nombres", "part"}, list);
  }
  std::size_t half = 0;
  for (Decimal sum = counts[0]; shareOf(sum, facts.basins.digits) < 0.5; sum += counts[half]) ++half;
  return heading("Combien de pas avant le cycle") +
         figure(tailsPicture(facts, counts),
                "Le plus souvent " + std::to_string(most - counts.begin()) + " pas" + " : " +
                    percentText(shareOf(*most, facts.basins.digits)) + " des nombres. Au plus " +
                    std::to_string(counts.size() - 1) + " ; la moitié des nombres en font au plus " +
                    std::to_string(half) + ". Sont déjà sur leur cycle : " + groupedDigits(counts[0].text()) +
                    ".") +
         list +
         paragraph("Ces comptes, en <a href=\"" + nameOf(facts.k) + "-pas.csv\">tableau CSV</a>.",
                   " class=\"cache\"");
}

std::string descentSection(const AtlasFacts& facts) {
  const std::vector<Decimal> iterates = descentOf(facts);
  const std::size_t steps = iterates.size() - 1;
  std::size_t width = 0;
  for (const Decimal& iterate : iterates) width = std::max(width, iterate.digits());
  std::string list = "<pre>" + std::string(width + 6, ' ') + "   9 8 7 6 5 4 3 2 1 0\n";
  for (std::size_t i = 0; i <= steps; ++i) {
    const std::string digits = iterates[i].text();
    const std::string step = std::to_string(i);
    list +=
        std::string(6 - step.size(), ' ') + step + std::string(width + 2 - digits.size(), ' ') + digits + " ";
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
  const std::string number = iterates.front().text();
  return heading("Le plus long chemin") +
         paragraph("De tous les nombres comptés, " + number +
                   " est le plus petit qui en fasse autant : " + std::to_string(steps) + " pas" + " avant " +
                   iterates.back().text() + ", le premier point de son cycle.") +
         figure(descentPicture(facts, iterates), "Chaque itéré de " + number + ", en parts de " +
                                                     powerOfTenText(facts.rangeDigits) +
                                                     ". Le point marque l'arrivée sur le cycle.") +
         list;
}

std::string navigation(std::span<const AtlasFacts> powers, std::size_t place) {
  std::string links = "<nav aria-label=\"Atlas\"><a href=\"index.html\">Toutes les puissances</a>";
  if (place > 0) links += linkTo(powers[place - 1].k, "← k = " + std::to_string(powers[place - 1].k));
  if (place + 1 < powers.size())
    links += linkTo(powers[place + 1].k, "k = " + std::to_string(powers[place + 1].k) + " →");
  return links + "</nav>\n";
}

std::string powerPage(std::span<const AtlasFacts> powers, std::size_t place,
                      const std::vector<Decimal>& counts) {
  const AtlasFacts& facts = powers[place];
  const std::string k = std::to_string(facts.k);
  std::string body = navigation(powers, place) + "<h1>Puissance " + k + "</h1>\n" +
                     paragraph(proofText(facts), " class=\"preuve\"") +
                     paragraph("Un nombre va à la somme des puissances " + k +
                               " de ses chiffres, et ainsi de suite. " + countedText(facts));
  body += ringsSection(facts);
  if (facts.k >= 2 && facts.k <= atlas::kMaxMapPower) {
    body += heading("La carte") +
            figure(mapPicture(facts, false), "Chaque point est un multiensemble de " +
                                                 std::to_string(facts.rangeDigits) +
                                                 " chiffres, zéros de tête compris. Un pas rapproche d'un "
                                                 "cercle du cycle qui est au centre ; la part des "
                                                 "nombres qui y finissent est au-dessous.");
  }
  body +=
      tailsSection(facts, counts) + descentSection(facts) + cyclesSection(facts) + fixedPointsSection(facts);
  return page("Puissance " + k + " : cycles, parts et chemins", body);
}

std::string overview(std::span<const AtlasFacts> powers) {
  std::vector<double> cycles, fixed, longest, tails, shares;
  std::string rows;
  for (const AtlasFacts& facts : powers) {
    const std::size_t order = facts.cycles.back().order();
    const std::size_t tail = facts.basins.deepest().longestTail();
    cycles.push_back(static_cast<double>(facts.cycles.size()));
    fixed.push_back(static_cast<double>(facts.fixedPoints()));
    longest.push_back(static_cast<double>(order));
    tails.push_back(static_cast<double>(tail));
    shares.push_back(100 * facts.largestShare());
    rows += "<tr>" + cell(linkTo(facts.k, std::to_string(facts.k))) +
            cell(powerOfTenText(facts.rangeDigits)) + cell(std::to_string(facts.cycles.size())) +
            cell(std::to_string(facts.fixedPoints())) + cell(groupedDigits(std::to_string(order))) +
            cell(groupedDigits(std::to_string(tail))) + numberCell(facts.basins.deepest().farthest.text()) +
            cell(percentText(facts.largestShare())) + "</tr>\n";
  }
  const std::int32_t first = powers.front().k;
  const std::string range = "puissances " + std::to_string(first) + " à " + std::to_string(powers.back().k);
  const auto bars = [&](const std::string& title, const std::string& what, const std::vector<double>& values,
                        const std::string& unit = "") {
    return figure(barsPicture(title, what + ", pour les " + range + ".", first, values, unit),
                  title + ". " + what + ".");
  };
  std::string body =
      "<h1>Atlas des cycles</h1>\n" +
      paragraph(
          "Choisissez une puissance k. Un nombre va à la somme des puissances k-ièmes de ses chiffres : pour "
          "k = 3, 27 va à 8 + 343 = 351, puis à 153, qui reste 153. Tous les nombres finissent ainsi dans un "
          "cycle. Voici tous les cycles des " +
          range +
          ", avec la preuve qu'il n'y en a pas d'autre, et pour "
          "chacun combien de nombres y finissent.") +
      paragraph(
          "La preuve tient en une phrase : un nombre assez long a une image plus courte que lui, et "
          "au-dessous "
          "d'une certaine longueur seuls comptent les chiffres, non leur ordre ; il ne reste qu'un nombre "
          "fini "
          "de multiensembles de chiffres, que le programme passe en revue en entier.") +
      "<div class=\"barres\">\n" + bars("Les cycles", "Nombre de cycles, points fixes compris", cycles) +
      bars("Les points fixes", "Nombre de points fixes", fixed) +
      bars("Le plus long cycle", "Nombre de points du plus long cycle", longest) +
      bars("Le plus long chemin", "Plus grand nombre de pas avant le cycle", tails) +
      bars("Le plus grand bassin", "Part des nombres qui finissent dans le même cycle, au plus", shares,
           "\u00A0%") +
      "</div>\n" + heading("Les mêmes faits en chiffres") +
      table({"k", "tout finit sous", "cycles", "points fixes", "plus long cycle", "pas, au plus",
             "le plus petit nombre qui en fait autant", "plus grand bassin"},
            rows);
  const bool allCounted = std::ranges::all_of(powers, &AtlasFacts::countsAll);
  body += paragraph(
      allCounted ? "Les parts et les pas sont ceux de tous les nombres sous la borne de leur puissance."
                 : "Les parts et les pas sont ceux des nombres comptés, que chaque page indique.");
  body += paragraph("Ces pages ont été écrites par le programme velmoire, avec « velmoire atlas " +
                        std::to_string(first) + ".." + std::to_string(powers.back().k) + " ».",
                    " class=\"gris\"");
  return page("Atlas des cycles", body);
}

std::string cyclesCsv(const AtlasFacts& facts) {
  std::string csv = "cycle,rang,point\n";
  for (std::size_t i = 0; i < facts.cycles.size(); ++i) {
    const auto& points = facts.cycles[i].points();
    for (std::size_t rank = 0; rank < points.size(); ++rank) {
      csv += std::to_string(i + 1) + "," + std::to_string(rank + 1) + "," + points[rank].text() + "\n";
    }
  }
  return csv;
}

std::string tailsCsv(const std::vector<Decimal>& counts) {
  std::string csv = "pas,nombres\n";
  for (std::size_t i = 0; i < counts.size(); ++i) csv += std::to_string(i) + "," + counts[i].text() + "\n";
  return csv;
}

}  // namespace

std::map<std::string, std::string> atlasPages(std::span<const AtlasFacts> powers) {
  std::map<std::string, std::string> files = {{"index.html", overview(powers)}};
  for (std::size_t place = 0; place < powers.size(); ++place) {
    const std::string name = nameOf(powers[place].k);
    const std::vector<Decimal> counts = powers[place].basins.tails();
    files[name + ".html"] = powerPage(powers, place, counts);
    files[name + "-cycles.csv"] = cyclesCsv(powers[place]);
    files[name + "-pas.csv"] = tailsCsv(counts);
  }
  return files;
}

}  // namespace zelvion::command
