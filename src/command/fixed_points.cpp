#include <array>

#include "command/parts.h"
#include "command/powers_search.h"
#include "command/resumption.h"
#include "command/subcommands.h"
#include "engine/fixedpoints/complete_search.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kColumns = {count("k", "la puissance"),
                                 count("chiffres", "combien de chiffres a le point fixe"),
                                 number("point_fixe", "le point fixe")};
constexpr std::array kOptions = {kPowersOption, kPartOption, kJoinOption,   kResumeOption, kThreadsOption,
                                 kCsvOption,    kJsonOption, kOutputOption, kHelpOption,   kHelpAlias};

void writeBegin(int k, Output& output) { output << "k = " << std::to_string(k) << "\u00A0:\n"; }

// The last line of a power whose list is complete up to some number of digits.
void writeEnd(int k, int complete, const PowersSearch& search, Output& output) {
  output << "  " << pages::counted(search.numbers(), "point") << (search.numbers() > 1 ? " fixes" : " fixe")
         << pages::typeset(complete == longestFixedPoint(k) ? ", liste complète : aucun n'a plus de "
                                                            : " ; interrompu, la liste est complète jusqu'à ")
         << pages::counted(static_cast<std::size_t>(complete), "chiffre") << ".\n";
}

void writeWhole(const SearchPart& whole, PowersSearch& search, Output& output) {
  if (search.inText()) writeBegin(whole.k, output);
  search.write(whole);
  if (search.inText()) writeEnd(whole.k, longestFixedPoint(whole.k), search, output);
  search.flush();
}

int join(const Arguments& arguments, Output& output, Environment& environment) {
  const SearchPart whole = joinedFiles(arguments, "points-fixes");
  PowersSearch search(arguments, output, environment, {whole.k, whole.k}, kColumns);
  writeWhole(whole, search, output);
  return kSuccess;
}

int writePart(const Arguments& arguments, Output& output, Environment& environment, IntegerRange powers) {
  if (powers.first != powers.last) throw WrongCall("Une partie est d'une seule puissance : donnez-en une.");
  if (output.format() != Format::kText)
    throw WrongCall(
        "Une partie est toujours écrite en JSON : la forme du résultat se choisit avec --reunir.");
  const Part part = readPart(*arguments.value("partie"));
  const auto done =
      PowersSearch(arguments, output, environment, powers, kColumns).searchPart(powers.first, part);
  if (!done) return tellInterrupted(powers.first, false, environment);
  output << jsonOf(*done);
  return kSuccess;
}

// The number of parts of a resumable search. Each takes a second at least.
std::uint32_t partsFor(int k) { return k < 65 ? 1 : k < 90 ? 16 : 256; }

int run(const Arguments& arguments, Output& output, Environment& environment) {
  if (arguments.has("reunir")) return join(arguments, output, environment);
  refuseOperands(arguments);
  const IntegerRange powers = arguments.range("puissance", 1, kLastSearchedPower);
  auto resumption = resumptionOf(arguments, "points-fixes -k " + textOf(powers));
  if (arguments.has("partie")) return writePart(arguments, output, environment, powers);
  PowersSearch search(arguments, output, environment, powers, kColumns);
  for (int k = powers.first; k <= powers.last && !search.stopped(); ++k) {
    if (resumption) {
      const auto whole = resumption->search(
          k, partsFor(k), [&](Part part, std::uint32_t done) { return search.searchPart(k, part, done); });
      if (!whole) return tellInterrupted(k, true, environment);
      writeWhole(*whole, search, output);
      continue;
    }
    if (search.inText()) writeBegin(k, output);
    const int complete = search.search(k, 1, longestFixedPoint(k));
    if (search.inText()) writeEnd(k, complete, search, output);
    search.flush();
  }
  if (search.inText() && powers.first < powers.last && !search.stopped()) {
    output << "Puissances " << std::to_string(powers.first) << " à " << std::to_string(powers.last)
           << "\u00A0: " << std::to_string(search.others())
           << " en tout, sans 0 et 1 qui le sont toujours.\n";
  }
  return kSuccess;
}

}  // namespace

constinit const Subcommand kFixedPoints = {
    "points-fixes",
    "[FICHIER...]",
    "tous les points fixes d'une puissance, de toutes les longueurs",
    "Cherche tous les nombres qui sont leur propre image pour la puissance k. La recherche est complète ; 0 "
    "et "
    "1, points fixes de toutes les puissances, en font partie. Ce qui est trouvé est écrit aussitôt. Jusqu'à "
    "k = 40 elle dure moins d'une seconde, pour k = 61 quelques-unes, pour k = 100 des minutes. "
    "Plusieurs machines se partagent le travail, par exemple avec GNU parallel :\n"
    "  parallel velmoire points-fixes -k 100 --partie {}/64 -o {}.json ::: {1..64}\n"
    "  velmoire points-fixes --reunir *.json",
    "$ velmoire points-fixes -k 14\n"
    "k = 14 :\n  0\n  1\n  28116440335967\n"
    "  3 points fixes, liste complète : aucun n'a plus de 15 chiffres.\n",
    kOptions,
    kColumns,
    false,
    run};

}  // namespace zelvion::command
