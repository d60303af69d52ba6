#include <algorithm>
#include <array>

#include "command/powers_search.h"
#include "command/subcommands.h"
#include "engine/fixedpoints/complete_search.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kColumns = {count("ordre", "l'ordre, qui est la puissance"),
                                 count("chiffres", "combien de chiffres a le nombre"),
                                 number("nombre", "le nombre narcissique")};

constexpr std::array kOptions = {
    Option{'k', "puissance", "K", "l'ordre, ou plusieurs comme 1..39, aussi bien que sans -k"},
    kThreadsOption,
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  constexpr int kGreatest = 1'000'000;
  const IntegerRange orders = powersOf(
      arguments, "L'ordre", "Il faut un ordre, par exemple 39, ou un intervalle comme 1..39.", kGreatest);
  PowersSearch search(arguments, output, environment,
                      {orders.first, std::min(orders.last, kLastPossibleOrder)}, kColumns);
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
    const std::string why = pages::typeset(
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
           << "\u00A0: " << pages::counted(total, "nombre") << (total > 1 ? " narcissiques" : " narcissique")
           << " en tout.\n";
  }
  return kSuccess;
}

}  // namespace

constinit const Subcommand kNarcissistic = {
    "narcissiques",
    "[ORDRE]",
    "les nombres narcissiques parfaits d'un ordre, ou de plusieurs",
    "Cherche tous les nombres de k chiffres qui sont la somme des puissances k-ièmes de leurs chiffres, pour "
    "l'ordre k ou pour plusieurs comme 1..39. La recherche est complète.",
    "$ velmoire narcissiques 3\nOrdre 3 :\n  153\n  370\n  371\n  407\n",
    kOptions,
    kColumns,
    false,
    run};

}  // namespace zelvion::command
