#include <algorithm>
#include <array>

#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/transform/transformation.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {kCsvOption, kJsonOption, kOutputOption, kHelpOption, kHelpAlias};

constexpr std::array<std::string_view, 4> kNames = {"nombre", "chiffres", "recensement", "silhouette"};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  std::optional<Records> records;
  if (output.format() != Format::kText) records.emplace(output, kNames);
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
    "Écrit pour chaque nombre le recensement de ses chiffres, de 9 à 0, et sa silhouette,\n"
    "qui est la même chose sans les zéros : l'image ne dépend que d'elle.",
    "$ velmoire silhouette 789\n"
    "789 : recensement (1, 1, 1, 0, 0, 0, 0, 0, 0, 0), silhouette (1, 1, 1, 0, 0, 0, 0, 0, 0)\n",
    kOptions,
    run};

}  // namespace zelvion::command
