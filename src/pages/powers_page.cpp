#include <algorithm>

#include "pages/embedded/embedded.h"
#include "pages/html.h"
#include "pages/page_files.h"
#include "pages/typography.h"

namespace zelvion::pages {
namespace {

// The columns of the table that the program carries.
enum Column {
  kPower,
  kDigits,
  kCycles,
  kFixedPoints,
  kLongestCycle,
  kItsLeast,
  kLongestPath,
  kFrom,
  kBasin,
  kNumbers,
  kCommand,
  kDate,
  kSeconds,
  kColumns
};

// The parts of `text` between its separators, which may be empty.
std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::vector<std::vector<std::string>> rowsOf(std::string_view csv) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& line : split(std::string(csv), '\n')) {
    if (auto row = split(line, ','); row.size() == kColumns) rows.push_back(std::move(row));
  }
  rows.erase(rows.begin());
  return rows;
}

// "2026-11-24" as it is written in French.
std::string dateText(const std::string& iso) {
  return iso.substr(8, 2) + "/" + iso.substr(5, 2) + "/" + iso.substr(0, 4);
}

}  // namespace

std::string powersPage(std::span<const AtlasFacts> powers) {
  const auto all = rowsOf(embedded::kPowers);
  std::string rows;
  std::string lastCounted;
  for (const auto& row : all) {
    const std::int32_t k = std::stoi(row[kPower]);
    const bool hasPage = std::ranges::find(powers, k, &AtlasFacts::k) != powers.end();
    const bool counted = !row[kNumbers].empty();
    const int digits = std::stoi(row[kDigits]);
    if (counted) lastCounted = row[kPower];
    rows += "<tr>" + rowName(hasPage ? linkTo(k, row[kPower]) : row[kPower]) + cell(powerOfTenText(digits)) +
            cell(row[kCycles]) + cell(row[kFixedPoints]) + cell(groupedDigits(row[kLongestCycle])) +
            (counted ? cell(groupedDigits(row[kLongestPath])) +
                           cell(percentText(shareOf(Decimal::parse(row[kNumbers]), digits)))
                     : cell("–") + cell("–")) +
            cell("<code>" + row[kCommand] + "</code>", " class=\"mots\"") + cell(dateText(row[kDate])) +
            cell(row[kSeconds] == "0" ? "&lt; 1\u00A0s" : durationText(std::stod(row[kSeconds]))) + "</tr>\n";
  }
  const std::string title = "D'une puissance à l'autre";
  return page(
      title, navigation(),
      "<h1>" + typeset(title) + "</h1>\n" +
          paragraph(
              "Le nombre de cycles, le plus long cycle, le plus long chemin et le plus grand bassin de "
              "chaque puissance jusqu'à " +
              all.back()[kPower] +
              ", autant qu'on les connaisse ici. La liste des cycles est complète, avec "
              "<a href=\"preuve.html\">la preuve</a>. Le chemin et le bassin sont ceux des nombres sous la "
              "borne, tous comptés ; ils ne l'ont été que jusqu'à k = " +
              lastCounted + ".") +
          paragraph(
              "Ce qui dure longtemps n'est calculé qu'une fois : chaque ligne donne sa commande, le jour "
              "et la durée, sur une machine à deux cœurs qui avait aussi d'autre travail. Le "
              "<a href=\"puissances.csv\">tableau CSV</a> donne en plus le plus petit point du plus long "
              "cycle, le plus petit nombre qui fait le plus long chemin, et en nombres exacts le plus "
              "grand bassin.") +
          table(title,
                {"k", "tout finit sous", "cycles", "points fixes", "plus long cycle", "plus long chemin",
                 "plus grand bassin", "obtenu par", "le", "en"},
                rows));
}

}  // namespace zelvion::pages
