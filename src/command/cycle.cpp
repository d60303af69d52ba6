#include <array>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/cycles/known_cycles.h"
#include "engine/text/number.h"
#include "engine/text/refusal.h"

namespace zelvion::command {
namespace {

constexpr std::int32_t kDefaultSteps = 1'000'000;

constexpr std::array kOptions = {
    kPowerOption,
    Option{'n', "pas", "N", "abandonne un nombre après N pas (par défaut, un million)"},
    Option{0, "points", "", "donne aussi tous les points du cycle, à partir du plus petit"},
    Option{0, "vers", "N", "ne garde que les nombres qui finissent dans le cycle où finit N"},
    Option{0, "pas-min", "N", "ne garde que les nombres à N pas au moins de leur cycle"},
    Option{0, "ordre", "N", "ne garde que les cycles d'ordre N, ou de plusieurs ordres comme 2..10"},
    Option{0, "bfile", "", "écrit « n a(n) » par ligne : le nombre et ses pas, pour les tables de suites"},
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

constexpr std::array kColumns = {
    count("k", "la puissance"),
    number("nombre", "le nombre"),
    count("pas", "combien de pas le séparent de son cycle, 0 s'il en fait partie"),
    count("ordre", "combien de points a le cycle, 1 pour un point fixe"),
    number("plus_petit", "le plus petit point du cycle"),
    number("plus_grand", "son plus grand point"),
    listOf(number("points", "avec --points : tous les points, à partir du plus petit"))};

[[noreturn]] void refuseEndless(std::int32_t limit) {
  throw Refusal("Aucun retour en " + std::to_string(limit) +
                " pas : pour aller plus loin, donnez un nombre de pas plus grand à l'option -n.");
}

// Which numbers a call keeps.
class Filter {
 public:
  static bool isIn(const Arguments& arguments) {
    return arguments.has("vers") || arguments.has("pas-min") || arguments.has("ordre");
  }

  // Throws WrongCall, and Refusal if the number whose cycle is meant falls into none within `limit` steps.
  Filter(const Arguments& arguments, KnownCycles& cycles, std::int32_t limit, Environment& environment)
      : leastTail_(arguments.integer("pas-min", 0, 0, std::numeric_limits<std::int32_t>::max())) {
    if (arguments.has("ordre")) orders_ = arguments.range("ordre", 1, orders_.last);
    if (const auto number = arguments.value("vers")) {
      const auto fall = cycles.find(text::digitsOf(*number), limit, environment.progress.stop);
      if (fall) cycle_ = fall->cycle;
      if (!fall && !environment.progress.stop) refuseEndless(limit);
    }
  }

  bool keeps(const KnownCycles::Fall& fall) const {
    const auto order = fall.cycle->order();
    return fall.tail >= leastTail_ && std::cmp_less_equal(orders_.first, order) &&
           std::cmp_less_equal(order, orders_.last) && (cycle_ == nullptr || cycle_ == fall.cycle);
  }

 private:
  const SilhouetteCycle* cycle_ = nullptr;
  std::int32_t leastTail_;
  IntegerRange orders_{1, std::numeric_limits<std::int32_t>::max()};
};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  Transformation transformation(arguments.power());
  const std::string k = std::to_string(transformation.k());
  const std::int32_t limit =
      arguments.integer("pas", kDefaultSteps, 1, std::numeric_limits<std::int32_t>::max() - 1);
  const bool withPoints = arguments.has("points");
  const bool asTable = arguments.has("bfile");
  if (asTable && (output.format() != Format::kText || withPoints || Filter::isIn(arguments)))
    throw WrongCall(
        "L'option --bfile écrit tous les nombres et leurs pas : elle va sans --csv, --json, --points, "
        "--vers, --pas-min et --ordre.");
  KnownCycles cycles(transformation);
  std::optional<Records> records;
  if (output.format() != Format::kText)
    records.emplace(output, std::span(kColumns).first(kColumns.size() - (withPoints ? 0 : 1)));
  const Filter filter(arguments, cycles, limit, environment);

  // Writes the line of a number that falls into a cycle, with kPlace for the number and for its tail.
  const auto writeLines = [&](const SilhouetteCycle& cycle) {
    if (asTable) {
      output << kPlace << ' ' << kPlace;
      output.endLine();
      return;
    }
    const std::string order = std::to_string(cycle.order());
    const std::string least = cycle.least.text();
    const std::string greatest = cycle.greatest.text();
    std::vector<std::string> points;
    if (withPoints) {
      for (const Decimal& point : cycles.points(cycle)) points.push_back(point.text());
    }
    if (records) {
      records->field(k).field(kPlace).field(kPlace).field(order).field(least).field(greatest);
      if (withPoints) records->list(points);
      return;
    }
    output << kPlace << "\u00A0: " << kPlace << " pas, ";
    if (cycle.order() == 1) {
      output << "point fixe " << least;
    } else {
      output << "cycle d’ordre " << order << ", de " << least << " à " << greatest;
    }
    output.endLine();
    for (const std::string& point : points) {
      output << "  " << point;
      output.endLine();
    }
  };
  std::vector<Frame> frames;  // of the cycles, in the order in which they are met

  return forEachNumber(arguments, output, environment, [&](std::string_view number) {
    const auto fall = cycles.find(number, limit, environment.progress.stop);
    if (!fall) {
      if (environment.progress.stop) return;
      refuseEndless(limit);
    }
    if (!filter.keeps(*fall)) return;
    if (fall->index >= frames.size()) frames.resize(fall->index + 1);
    Frame& frame = frames[fall->index];
    if (frame.behind.empty()) frame = output.frame([&] { writeLines(*fall->cycle); });
    output.fill(frame, number, static_cast<std::uint64_t>(fall->tail));
  });
}

}  // namespace

constinit const Subcommand kCycle = {
    "cycle",
    kNumberOperands,
    "le cycle où tombe un nombre : pas, ordre, plus petit et plus grand point",
    "Écrit pour chaque nombre combien de pas le séparent de son cycle (0 pour un nombre qui en fait partie), "
    "l'ordre de ce cycle, et ses points le plus petit et le plus grand. Un cycle d'ordre 1 est un point "
    "fixe.",
    "$ velmoire cycle -k 2 789\n789 : 3 pas, cycle d'ordre 8, de 4 à 145\n",
    kOptions,
    kColumns,
    true,
    run};

}  // namespace zelvion::command
