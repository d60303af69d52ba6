#include <algorithm>
#include <new>
#include <optional>

#include "engine/cycles/cycle_finder.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "form/cycles/cycle_report.h"
#include "form/shell/velmoire.h"

namespace zelvion {

/// How the two cycle searches differ.
struct Velmoire::CycleSearch {
  std::string title;
  std::int32_t steps;
  std::int32_t questionEvery;
  std::string file;
  bool longReport;  ///< shown in up to two boxes, and in the output area
};

std::string Velmoire::CycleSyracuse() {
  searchCycle({Caption + " Itération k= " + ordrek.Text, 100'000, 1'000, "velmoire.txt", false});
  return "";
}

void Velmoire::Command3_Click() { CycleSyracuse(); }

void Velmoire::Command4_Click() { searchCycle({standardTitle(), 1'000'000, 10'000, "cycle.txt", true}); }

void Velmoire::searchCycle(const CycleSearch& search) {
  const Moment start = desktop_.now();
  if (entier.Text.empty()) {
    inform("Choisissez un nombre à étudier!", search.title);
    entier.Text = "1";
  }

  DigitPower power(ordrek.Text);
  CycleFinder finder(power, entier.Text);
  std::optional<Return> found;
  for (std::int32_t asked = search.questionEvery;; asked += search.questionEvery) {
    found = finder.advance(std::min(asked - 1, search.steps));
    if (found || asked > search.steps) break;
    const std::string question =
        std::string("Pas de convergence à ce stade. On continue?").append(text::kLineEnd) + "Après " +
        std::to_string(asked) + " itérations: " + finder.current();
    if (!ask(question, search.title)) return;
  }
  if (!found) {
    inform(std::to_string(search.steps) + " étapes insuffisantes pour conclure!", search.title);
    return;
  }

  std::string report = " Puissance k= " + ordrek.Text + ". Pour " + entier.Text +
                       ": Convergence vers le CYCLE d'ORDRE " + std::to_string(found->order()) + ":";
  const std::string first = finder.current();
  report.append(text::kLineEnd).append("(");
  const std::size_t begin = report.size();
  report.reserve(begin +
                 static_cast<std::size_t>(found->order()) * (first.size() + kListSeparator.size() + 1));
  finder.appendFurtherPoints(*found, report.append(first));
  endCycleReport(report, begin, first.size());
  Records records(*this, search.file);
  records.append(report.append(text::kLineEnd));
  records.sync();
  report.resize(report.size() - text::kLineEnd.size());

  informOfTime(start, records);

  try {
    showReport(search, report);
  } catch (const std::bad_alloc&) {
    if (records.failed()) throw;
    throw Refusal(
        "La mémoire ne suffit pas pour afficher ce rapport. Il est en entier dans le fichier «\u00a0" +
        desktop_.pathOf(search.file) + "\u00a0».");
  }
}

void Velmoire::showReport(const CycleSearch& search, std::string& report) {
  constexpr std::size_t kFirstBox = 1022;
  const std::string_view head = search.longReport ? text::prefix(report, kFirstBox) : report;
  const std::string_view tail = std::string_view(report).substr(head.size());
  inform(head, search.title);
  if (!tail.empty()) inform(tail, search.title);
  if (search.longReport) RichTextBox1.Text = std::move(report);
}

void Velmoire::informOfTime(const Moment& start, const Records& records) {
  auto seconds = static_cast<std::int32_t>(desktop_.now().seconds - start.seconds - records.secondsInBox());
  inform("Temps de calcul: " + ConvertirSecondes(seconds), "Début du calcul: " + start.text());
}

std::string Velmoire::ListeCycle(std::string& ent, const std::int32_t& ord) {
  DigitPower power(ordrek.Text);
  Orbit orbit(power, ent);
  std::string report = "(" + ent;
  for (std::int32_t i = 1; i < ord; ++i) {
    orbit.advance();
    report.append(kListSeparator).append(orbit.text());
  }
  endCycleReport(report, 1, ent.size());
  ent = orbit.text();
  return report;
}

std::string Velmoire::ConvertirSecondes(std::int32_t& Valeur) {
  const auto piece = [&](std::int32_t unit, const char* name) {
    if (Valeur < unit) return std::string();
    const std::int32_t count = Valeur / unit;
    Valeur -= count * unit;
    return std::to_string(count) + name;
  };
  const std::string days = piece(86'400, " Jour(s)");
  const std::string hours = piece(3'600, " Heure(s)");
  const std::string minutes = piece(60, " Minute(s)");
  const std::string seconds = Valeur >= 0 ? std::to_string(Valeur) + " Seconde(s)" : "";
  return days + " " + hours + " " + minutes + " " + seconds;
}

}  // namespace zelvion
