#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>

#include "command/progress_line.h"
#include "command/subcommands.h"
#include "command/typography.h"
#include "engine/fixedpoints/complete_search.h"

namespace zelvion::command {
namespace {

constexpr std::array<std::string_view, 3> kPointNames = {"k", "chiffres", "point_fixe"};
constexpr std::array<std::string_view, 3> kNarcissisticNames = {"ordre", "chiffres", "nombre"};

constexpr std::array kPointOptions = {kPowersOption, kThreadsOption, kCsvOption, kJsonOption,
                                      kOutputOption, kHelpOption,    kHelpAlias};
constexpr std::array kNarcissisticOptions = {kThreadsOption, kCsvOption,  kJsonOption,
                                             kOutputOption,  kHelpOption, kHelpAlias};

// How much longer one power takes than the one before.
constexpr double kGrowth = 1.12;

// The search for some powers one after another: its numbers as they come, and its progress.
class PowersSearch {
 public:
  PowersSearch(const Arguments& arguments, Output& output, Environment& environment, IntegerRange powers,
               std::span<const std::string_view> names)
      : output_(output),
        progress_(environment.progress),
        threads_(threadsOf(arguments, environment)),
        powers_(powers),
        power_(powers.first),
        line_(environment, [this] { return standing(); }) {
    if (output.format() != Format::kText) records_.emplace(output, names);
  }

  // The fixed points of the power `k` with `first` to `last` digits. Returns how many digits the list is
  // complete up to.
  int search(int k, int first, int last) {
    power_ = k;
    numbers_ = 0;
    return findFixedPoints(k, first, last, threads_, progress_, [&](const Decimal& number) {
      ++numbers_;
      if (number > Decimal(1)) ++others_;
      if (records_) {
        records_->field(static_cast<std::size_t>(k)).field(number.digits()).field(number.text());
      } else {
        output_ << "  " << number.text();
        output_.endLine();
      }
      flush();
    });
  }

  // What was written is seen at once.
  void flush() {
    line_.hide();
    output_.flush();
  }

  bool inText() const { return !records_; }
  bool stopped() const { return progress_.stop; }
  std::size_t numbers() const { return numbers_; }  ///< of the latest search
  std::size_t others() const { return others_; }    ///< than 0 and 1, of all searches

 private:
  ProgressLine::Standing standing() const {
    const int power = power_;
    const double pieces = std::max(1.0, static_cast<double>(progress_.pieces));
    const double share = static_cast<double>(progress_.done) / pieces;
    const auto workBelow = [](int k) { return std::pow(kGrowth, k); };
    const double begin = workBelow(powers_.first);
    const double now = workBelow(power);
    const double all = workBelow(powers_.last + 1) - begin;
    return {(now - begin + share * (workBelow(power + 1) - now)) / all,
            "k = " + std::to_string(power) + " · " + counted(progress_.found, "nombre") + " trouvé" +
                (progress_.found > 1 ? "s" : "")};
  }

  Output& output_;
  Progress& progress_;
  unsigned threads_;
  IntegerRange powers_;
  std::atomic<int> power_;
  std::optional<Records> records_;
  std::size_t numbers_ = 0;
  std::size_t others_ = 0;
  ProgressLine line_;
};

int runFixedPoints(const Arguments& arguments, Output& output, Environment& environment) {
  refuseOperands(arguments);
  const IntegerRange powers = arguments.range("puissance", 1, kLastSearchedPower);
  PowersSearch search(arguments, output, environment, powers, kPointNames);
  for (int k = powers.first; k <= powers.last && !search.stopped(); ++k) {
    const int longest = longestFixedPoint(k);
    if (search.inText()) output << "k = " << std::to_string(k) << "\u00A0:\n";
    const int complete = search.search(k, 1, longest);
    if (!search.inText()) continue;
    output << "  " << counted(search.numbers(), "point") << (search.numbers() > 1 ? " fixes" : " fixe");
    if (complete == longest) {
      output << typeset(", liste complète : aucun n'a plus de ")
             << counted(static_cast<std::size_t>(longest), "chiffre") << ".\n";
    } else {
      output << typeset(" ; interrompu, la liste est complète jusqu'à ")
             << counted(static_cast<std::size_t>(complete), "chiffre") << ".\n";
    }
    search.flush();
  }
  if (search.inText() && powers.first < powers.last && !search.stopped()) {
    output << "Puissances " << std::to_string(powers.first) << " à " << std::to_string(powers.last)
           << "\u00A0: " << std::to_string(search.others())
           << " en tout, sans 0 et 1 qui le sont toujours.\n";
  }
  return kSuccess;
}

int runNarcissistic(const Arguments& arguments, Output& output, Environment& environment) {
  constexpr int kGreatest = 1'000'000;
  if (arguments.operands().size() != 1)
    throw WrongCall("Il faut un ordre, par exemple 39, ou un intervalle comme 1..39.");
  const IntegerRange orders = readRange(arguments.operands().front(), "L'ordre", 1, kGreatest);
  PowersSearch search(arguments, output, environment,
                      {orders.first, std::min(orders.last, kLastPossibleOrder)}, kNarcissisticNames);
  std::size_t total = 0;
  for (int order = orders.first; order <= std::min(orders.last, kLastPossibleOrder) && !search.stopped();
       ++order) {
    if (search.inText()) output << "Ordre " << std::to_string(order) << "\u00A0:\n";
    const bool complete = search.search(order, order, order) == order;
    total += search.numbers();
    if (search.inText() && complete && search.numbers() == 0) output << "  aucun\n";
    if (search.inText() && !complete) output << "  interrompu\u00A0: la liste n’est pas complète\n";
    search.flush();
  }
  if (search.stopped()) return kSuccess;
  if (orders.last > kLastPossibleOrder) {
    const std::string why = typeset(
        "À partir de l'ordre 61 : aucun, car 61 · 9^61 < 10^60 et la somme des puissances a donc toujours "
        "trop "
        "peu de chiffres.\n");
    if (search.inText()) {
      output << why;
    } else {
      environment.err << why;
    }
  }
  if (!search.inText()) return kSuccess;
  if (orders.first < orders.last) {
    output << "Ordres " << std::to_string(orders.first) << " à " << std::to_string(orders.last)
           << "\u00A0: " << counted(total, "nombre") << (total > 1 ? " narcissiques" : " narcissique")
           << " en tout.\n";
  }
  return kSuccess;
}

}  // namespace

constinit const Subcommand kFixedPoints = {
    "points-fixes",
    "",
    "tous les points fixes d'une puissance, de toutes les longueurs",
    "Cherche tous les nombres qui sont leur propre image pour la puissance k. La recherche\n"
    "est complète ; 0 et 1, points fixes de toutes les puissances, en font partie. Ce qui\n"
    "est trouvé est écrit aussitôt. Jusqu'à k = 40 elle dure moins d'une seconde, pour\n"
    "k = 61 quelques-unes, pour k = 100 des minutes.",
    "$ velmoire points-fixes -k 14\n"
    "k = 14 :\n  0\n  1\n  28116440335967\n"
    "  3 points fixes, liste complète : aucun n'a plus de 15 chiffres.\n",
    kPointOptions,
    runFixedPoints};

constinit const Subcommand kNarcissistic = {
    "narcissiques",
    "ORDRE",
    "les nombres narcissiques parfaits d'un ordre, ou de plusieurs",
    "Cherche tous les nombres de k chiffres qui sont la somme des puissances k-ièmes de leurs\n"
    "chiffres, pour l'ordre k ou pour plusieurs comme 1..39. La recherche est complète.",
    "$ velmoire narcissiques 3\nOrdre 3 :\n  153\n  370\n  371\n  407\n",
    kNarcissisticOptions,
    runNarcissistic};

}  // namespace zelvion::command
