#include <array>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/transform/transformation.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {kPowerOption,  kCsvOption,  kJsonOption,
                                 kOutputOption, kHelpOption, kHelpAlias};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  Transformation transformation(arguments.power());
  const std::string k = std::to_string(transformation.k());
  constexpr std::array<std::string_view, 3> kNames = {"k", "nombre", "image"};
  std::optional<Records> records;
  if (output.format() != Format::kText) records.emplace(output, kNames);
  Decimal image;
  return forEachNumber(arguments, output, environment, [&](std::string_view number) {
    transformation.apply(silhouetteOf(number), image);
    if (!records) {
      output << number << " → ";
      image.appendTo(output.buffer());
      output.endLine();
      return;
    }
    records->field(k).field(number).beginField();
    image.appendTo(output.buffer());
    records->endField();
  });
}

}  // namespace

constinit const Subcommand kImage = {
    "image",
    kNumberOperands,
    "l'image d'un nombre : la somme des puissances k-ièmes de ses chiffres",
    "Écrit l'image de chaque nombre, la somme des puissances k-ièmes de ses chiffres.",
    "$ velmoire image -k 3 789\n789 → 1584\n",
    kOptions,
    run};

}  // namespace zelvion::command
