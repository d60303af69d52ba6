#include <array>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/transform/short_images.h"
#include "engine/transform/transformation.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {kPowerOption,  kCsvOption,  kJsonOption,
                                 kOutputOption, kHelpOption, kHelpAlias};

constexpr std::array kColumns = {count("k", "la puissance"), number("nombre", "le nombre"),
                                 number("image", "son image")};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  Transformation transformation(arguments.power());
  const std::string k = std::to_string(transformation.k());
  std::optional<Records> records;
  if (output.format() != Format::kText) records.emplace(output, kColumns);
  const Frame frame = output.frame([&] {
    if (records) {
      records->field(k).field(kPlace).field(kPlace);
    } else {
      output << kPlace << " → " << kPlace;
      output.endLine();
    }
  });
  const ShortImages shortImages(transformation.k());
  Decimal image;
  std::string text;
  return forEachNumber(arguments, output, environment, [&](std::string_view number) {
    if (number.size() <= shortImages.maxDigits()) {
      output.fill(frame, number, shortImages.of(number));
      return;
    }
    transformation.apply(silhouetteOf(number), image);
    text.clear();
    image.appendTo(text);
    output.fill(frame, number, text);
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
    kColumns,
    true,
    run};

}  // namespace zelvion::command
