#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "command/progress_line.h"
#include "command/subcommands.h"
#include "command/table_check.h"
#include "engine/atlas/cycle_list.h"
#include "engine/atlas/range.h"
#include "engine/fixedpoints/complete_search.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {
    Option{'k', "puissance", "K", "la puissance, si aucune colonne ne la dit"},
    Option{0, "complet", "", "dit aussi ce qui manque et ce qui est en double, pour chaque puissance"},
    Option{0, "fautes", "", "ne dit rien des lignes justes"},
    kThreadsOption,
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

constexpr std::array kColumns = {
    count("ligne", "le numéro de la ligne ; vide, null en JSON, de ce qui manque"),
    count("k", "la puissance ; vide, null en JSON, si elle ne peut pas être lue"),
    number("verdict", "juste, faux, double ou manque"),
    number("raison", "ce qui est faux, double ou manque ; vide d'une ligne juste")};

/// The verdicts on a whole table.
class Verification {
 public:
  Verification(const Arguments& arguments, CsvTable& table, Output& output, Environment& environment)
      : table_(table),
        check_(table, arguments.has("puissance") ? std::optional(arguments.power()) : std::nullopt),
        output_(output),
        progress_(environment.progress),
        environment_(environment),
        threads_(threadsOf(arguments, environment)),
        complete_(arguments.has("complet")),
        onlyFaults_(arguments.has("fautes")) {
    if (complete_ && arguments.has("puissance")) found_[arguments.power()];
    if (output.format() != Format::kText) records_.emplace(output, kColumns);
  }

  int run() {
    while (!progress_.stop && table_.next()) takeLine();
    output_.flush();
    for (const auto& [k, lines] : found_) {
      if (!progress_.stop) findMissing(k, lines);
    }
    if (progress_.stop) return kInterrupted;
    if (!records_) writeEnd();
    return faults_ + missing_ == 0 ? kSuccess : kFailure;
  }

 private:
  // The number of the line of each cycle or number of a power, by what tells it from others.
  using Lines = std::map<std::string, std::size_t>;

  void takeLine() {
    ++lines_;
    try {
      const std::string listed = check_.check(progress_.stop);
      const auto [first, isNew] =
          complete_ ? found_[check_.k()].emplace(listed, table_.line()) : std::pair(Lines::iterator(), true);
      if (isNew) {
        if (!onlyFaults_) tell(check_.k(), table_.line(), "juste", "");
        return;
      }
      tellFault("double", "comme la ligne " + std::to_string(first->second));
    } catch (const Refusal& fault) {
      if (!progress_.stop) tellFault("faux", fault.what());
    }
  }

  void tellFault(const std::string& verdict, const std::string& reason) {
    ++faults_;
    tell(check_.k(), table_.line(), verdict, reason);
  }

  // Tells what the lines of a power leave out.
  void findMissing(std::int32_t k, const Lines& lines) {
    const std::int32_t most = check_.listed() == Listed::kCycleRows ? atlas::kMaxPower : kLastSearchedPower;
    if (k > most && check_.listed() != Listed::kNarcissisticRows)
      throw std::runtime_error("Ce qui manque pour la puissance " + std::to_string(k) +
                               " ne peut pas être dit : la recherche complète va jusqu'à " +
                               std::to_string(most) + ".");
    const auto take = [&](const std::string& listed, const std::string& what) {
      if (lines.contains(listed)) return;
      ++missing_;
      tell(k, 0, "manque", what);
    };
    progress_.done = 0;
    const ProgressLine line(environment_, [this, k] {
      const double pieces = std::max(1.0, static_cast<double>(progress_.pieces));
      return ProgressLine::Standing{static_cast<double>(progress_.done) / pieces, "k = " + std::to_string(k)};
    });
    if (check_.listed() == Listed::kCycleRows) {
      for (const atlas::Cycle& cycle : atlas::cyclesOf(k, threads_, progress_).value_or(Cycles())) {
        const std::string least = cycle.least().text();
        take(least, cycle.isFixedPoint() ? "le point fixe " + least
                                         : "le cycle d'ordre " + std::to_string(cycle.order()) + ", de " +
                                               least + " à " + cycle.greatest().text());
      }
      return;
    }
    const bool isNarcissistic = check_.listed() == Listed::kNarcissisticRows;
    if (isNarcissistic && k > kLastPossibleOrder) return;
    findFixedPoints(k, isNarcissistic ? k : 1, isNarcissistic ? k : longestFixedPoint(k), threads_, progress_,
                    [&](const Decimal& number) { take(number.text(), number.text()); });
  }

  // Tells the verdict on a line; of what is missing it has the number 0. `k` is 0 where it is not known.
  void tell(std::int32_t k, std::size_t line, const std::string& verdict, const std::string& reason) {
    if (records_) {
      const auto textOf = [](std::size_t number) { return number == 0 ? "" : std::to_string(number); };
      records_->field(textOf(line)).field(textOf(static_cast<std::size_t>(k)));
      records_->field(verdict).field(pages::typeset(reason));
      return;
    }
    const std::string what = line == 0 ? "puissance " + std::to_string(k) : "ligne " + std::to_string(line);
    output_ << pages::typeset(what + " : " + verdict + (reason.empty() ? "" : ", " + reason));
    output_.endLine();
  }

  void writeEnd() {
    std::string checked;
    std::string passed;
    for (const std::string& title : table_.titles()) {
      std::string& list = check_.checks(title) ? checked : passed;
      list += (list.empty() ? "" : ", ") + title;
    }
    output_ << pages::typeset(
        pages::counted(lines_, "ligne") + ", " +
        (faults_ == 0 ? "aucune faute" : pages::counted(faults_, "faute")) +
        (!complete_      ? ""
         : missing_ == 0 ? ", rien ne manque"
                         : ", " + std::to_string(missing_) + (missing_ == 1 ? " manque" : " manquent")) +
        ".\nColonnes vérifiées : " + checked + (passed.empty() ? "" : " ; non : " + passed) + ".\n");
  }

  using Cycles = std::vector<atlas::Cycle>;

  CsvTable& table_;
  TableCheck check_;
  Output& output_;
  Progress& progress_;
  Environment& environment_;
  unsigned threads_;
  bool complete_;
  bool onlyFaults_;
  std::optional<Records> records_;
  std::size_t lines_ = 0;
  std::size_t faults_ = 0;
  std::size_t missing_ = 0;
  std::map<std::int32_t, Lines> found_;  ///< what is complete; for each power with a line that is true
};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  const auto& operands = arguments.operands();
  if (operands.size() > 1)
    throw WrongCall(text::quoted(operands[1]) + " est de trop : il faut un seul fichier.");
  if (operands.empty() && environment.inIsTerminal)
    throw WrongCall("Il manque le fichier à vérifier, ou « - » pour l'entrée standard.");
  const auto verify = [&](std::istream& input) {
    CsvTable table(input);
    return Verification(arguments, table, output, environment).run();
  };
  if (operands.empty() || operands.front() == "-") return verify(environment.in);
  const std::string& file = operands.front();
  std::error_code unknown;
  if (const auto target = arguments.value("sortie");
      target && std::filesystem::equivalent(file, *target, unknown))
    throw WrongCall("Le fichier « " + file + " » est celui qui est lu : donnez-en un autre à l'option -o.");
  std::ifstream stream = openForReading(file);
  return verify(stream);
}

}  // namespace

constinit const Subcommand kVerify = {
    "verifier",
    "[FICHIER.csv]",
    "vérifie un tableau de cycles, de points fixes ou de nombres narcissiques",
    "Dit de chaque ligne d'un tableau CSV si elle est juste : chaque point va au suivant et le dernier au "
    "premier, l'ordre, le plus petit et le plus grand point sont les bons, un point fixe est sa propre "
    "image. "
    "Le tableau est celui qu'écrivent cycles, points-fixes ou narcissiques avec --csv, ou un autre qui en a "
    "des colonnes, séparées par des virgules, des points-virgules ou des tabulations ; le reste n'est pas "
    "regardé. Sans fichier, ou avec « - », il est lu sur l'entrée standard. Si une ligne est fausse, si "
    "--complet en trouve en double ou en manque, le code de retour est 1.",
    "$ velmoire cycles -k 3..9 --csv | velmoire verifier --fautes --complet\n"
    "88 lignes, aucune faute, rien ne manque.\n"
    "Colonnes vérifiées : k, ordre, plus_petit, plus_grand ; non : cycle.\n",
    kOptions,
    kColumns,
    true,
    run};

}  // namespace zelvion::command
