#include <array>
#include <limits>
#include <optional>
#include <unordered_map>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/cycles/known_cycles.h"
#include "engine/text/refusal.h"

namespace zelvion::command {
namespace {

constexpr std::int32_t kDefaultSteps = 1'000'000;

constexpr std::array kOptions = {
    kPowerOption,
    Option{'n', "pas", "N", "abandonne un nombre après N pas (par défaut, un million)"},
    Option{0, "points", "", "donne aussi tous les points du cycle, à partir du plus petit"},
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

constexpr std::array<std::string_view, 7> kNames = {"k",          "nombre",     "pas",   "ordre",
                                                    "plus_petit", "plus_grand", "points"};

// What is told of a cycle, worked out once for all the numbers that fall into it.
struct CycleTexts {
  explicit CycleTexts(const KnownCycle& cycle)
      : order(std::to_string(cycle.order())), least(cycle.least.text()), greatest(cycle.greatest.text()) {
    sentence = cycle.order() == 1 ? "point fixe " + least
                                  : "cycle d’ordre " + order + ", de " + least + " à " + greatest;
  }

  std::string order;
  std::string least;
  std::string greatest;
  std::string sentence;
  std::vector<std::string> points;
};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  Transformation transformation(arguments.power());
  const std::string k = std::to_string(transformation.k());
  const std::int32_t limit =
      arguments.integer("pas", kDefaultSteps, 1, std::numeric_limits<std::int32_t>::max() - 1);
  const bool withPoints = arguments.has("points");
  KnownCycles cycles(transformation);
  std::unordered_map<const KnownCycle*, CycleTexts> known;
  std::optional<Records> records;
  if (output.format() != Format::kText)
    records.emplace(output, std::span(kNames).first(withPoints ? kNames.size() : kNames.size() - 1));

  return forEachNumber(arguments, output, environment, [&](std::string_view number) {
    const auto fall = cycles.find(number, limit, environment.progress.stop);
    if (!fall) {
      if (environment.progress.stop) return;
      throw Refusal("Aucun retour en " + std::to_string(limit) +
                    " pas. Pour aller plus loin, donnez un nombre de pas plus grand à l'option -n.");
    }
    const auto [place, isNew] = known.try_emplace(fall->cycle, *fall->cycle);
    CycleTexts& texts = place->second;
    if (isNew && withPoints) {
      for (const Decimal& point : cycles.points(*fall->cycle)) texts.points.push_back(point.text());
    }
    if (records) {
      records->field(k).field(number).field(static_cast<std::size_t>(fall->tail)).field(texts.order);
      records->field(texts.least).field(texts.greatest);
      if (withPoints) records->list(texts.points);
      return;
    }
    output << number << "\u00A0: " << std::to_string(fall->tail) << " pas, " << texts.sentence;
    output.endLine();
    for (const std::string& point : texts.points) {
      output << "  " << point;
      output.endLine();
    }
  });
}

}  // namespace

constinit const Subcommand kCycle = {
    "cycle",
    kNumberOperands,
    "le cycle où tombe un nombre : pas, ordre, plus petit et plus grand point",
    "Écrit pour chaque nombre combien de pas le séparent de son cycle (0 pour un nombre\n"
    "qui en fait partie), l'ordre de ce cycle, et ses points le plus petit et le plus\n"
    "grand. Un cycle d'ordre 1 est un point fixe.",
    "$ velmoire cycle -k 2 789\n789 : 3 pas, cycle d'ordre 8, de 4 à 145\n",
    kOptions,
    run};

}  // namespace zelvion::command
