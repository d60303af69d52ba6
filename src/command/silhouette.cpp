#include <algorithm>
#include <array>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/transform/transformation.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {kCsvOption, kJsonOption, kOutputOption, kHelpOption, kHelpAlias};

constexpr std::array kColumns = {
    number("nombre", "le nombre"), count("chiffres", "combien de chiffres il a"),
    listOf(count("recensement", "combien de 9, de 8, et ainsi de suite jusqu'à 0")),
    listOf(count("silhouette", "la même chose sans les zéros"))};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  std::optional<Records> records;
  if (output.format() != Format::kText) records.emplace(output, kColumns);
  std::array<std::string, 10> counts;  // of the digits from 9 down to 0
  const std::span<const std::string> census(counts);
  const auto writeList = [&](std::span<const std::string> list) {
    output << '(' << list.front();
    for (const std::string& count : list.subspan(1)) output << ", " << count;
    output << ')';
  };
  return forEachNumber(arguments, output, environment, [&](std::string_view number) {
    const Silhouette silhouette = silhouetteOf(number);
    std::size_t zeros = number.size();
    for (std::size_t digit = 1; digit <= 9; ++digit) {
      const std::size_t count = silhouette.counts[digit - 1];
      counts[9 - digit] = std::to_string(count);
      zeros -= count;
    }
    counts[9] = std::to_string(zeros);
    if (records) {
      records->field(number).field(number.size()).list(census).list(census.first(9));
      return;
    }
    output << number << "\u00A0: recensement ";
    writeList(census);
    output << ", silhouette ";
    writeList(census.first(9));
    output.endLine();
  });
}

}  // namespace

constinit const Subcommand kSilhouette = {
    "silhouette",
    kNumberOperands,
    "le recensement des chiffres d'un nombre et sa silhouette",
    "Écrit pour chaque nombre le recensement de ses chiffres, de 9 à 0, et sa silhouette, qui est la même "
    "chose sans les zéros : l'image ne dépend que d'elle.",
    "$ velmoire silhouette --csv 789 1002\n"
    "nombre,chiffres,recensement,silhouette\n"
    "789,3,1 1 1 0 0 0 0 0 0 0,1 1 1 0 0 0 0 0 0\n"
    "1002,4,0 0 0 0 0 0 0 1 1 2,0 0 0 0 0 0 0 1 1\n",
    kOptions,
    kColumns,
    true,
    run};

}  // namespace zelvion::command
