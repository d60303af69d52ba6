#include <array>
#include <limits>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/cycles/known_cycles.h"

namespace zelvion::command {
namespace {

constexpr std::int32_t kDefaultSteps = 100;

constexpr std::array kOptions = {
    kPowerOption,  Option{'n', "pas", "N", "s'arrête après N itérés (par défaut, 100)"},
    kCsvOption,    kJsonOption,
    kOutputOption, kHelpOption,
    kHelpAlias};

constexpr std::array kColumns = {count("k", "la puissance"), number("nombre", "le nombre de départ"),
                                 count("pas", "après combien de pas, 0 pour le départ"),
                                 number("itere", "le nombre atteint alors")};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  Transformation transformation(arguments.power());
  const std::string k = std::to_string(transformation.k());
  const std::int32_t limit =
      arguments.integer("pas", kDefaultSteps, 1, std::numeric_limits<std::int32_t>::max() - 1);
  const std::size_t width = std::to_string(limit).size();
  const std::atomic<bool>& stop = environment.progress.stop;
  KnownCycles cycles(transformation);
  std::optional<Records> records;
  if (output.format() != Format::kText) records.emplace(output, kColumns);
  bool first = true;

  return forEachNumber(arguments, output, environment, [&](std::string_view number) {
    if (!records && !first) output.endLine();
    first = false;
    const auto line = [&](std::int32_t step, std::string_view iterate) {
      const std::string place = std::to_string(step);
      if (records) {
        records->field(k).field(number).field(place).field(iterate);
      } else {
        output << std::string(width - std::min(width, place.size()), ' ') << place << "  " << iterate;
        output.endLine();
      }
    };
    const auto fall = cycles.find(number, limit, stop);
    const auto order = fall ? static_cast<std::int32_t>(fall->cycle->order()) : 0;
    // A fixed point is written once; any other cycle up to the return of its first point.
    const std::int32_t last = !fall ? limit : order == 1 ? fall->tail : fall->tail + order;
    line(0, number);
    Decimal iterate;
    Silhouette silhouette = silhouetteOf(number);
    std::string text(number);
    for (std::int32_t step = 1; step <= last && !stop; ++step) {
      silhouette = transformation.apply(silhouette, iterate);
      line(step, text = iterate.text());
    }
    if (records || stop) return;
    if (!fall) {
      output << "Pas encore de retour en " << std::to_string(limit) << " pas.";
    } else if (order == 1) {
      output << text << " est un point fixe, atteint en " << std::to_string(fall->tail) << " pas.";
    } else {
      output << text << " revient\u00A0: cycle d’ordre " << std::to_string(order) << ", atteint en "
             << std::to_string(fall->tail) << " pas.";
    }
    output.endLine();
  });
}

}  // namespace

constinit const Subcommand kIterates = {
    "iteres",
    kNumberOperands,
    "les itérés d'un nombre, jusqu'à ce que l'un d'eux revienne",
    "Écrit pour chaque nombre son image, l'image de celle-ci, et ainsi de suite, jusqu'à un point fixe, "
    "jusqu'au retour d'un nombre déjà écrit, ou jusqu'au N-ième itéré.",
    "$ velmoire iteres -k 3 -n 20 789\n"
    " 0  789\n 1  1584\n 2  702\n 3  351\n 4  153\n153 est un point fixe, atteint en 4 pas.\n",
    kOptions,
    kColumns,
    true,
    run};

}  // namespace zelvion::command
