#include "command/help.h"

#include <algorithm>

#include "engine/text/utf8.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::size_t kWidth = 80;

// Wraps `text` to kWidth and appends it to `lines`, the last of which has `column` characters already; the
// following ones are indented to `column`.
void appendWrapped(std::string& lines, std::string_view bytes, std::size_t column) {
  const std::string text = pages::typeset(bytes);
  std::size_t at = column;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(rest.size(), word.size() + 1));
    const std::size_t size = text::length(word);
    if (at > column && at + 1 + size > kWidth) {
      lines += "\n" + std::string(column, ' ');
      at = column;
    } else if (at > column) {
      lines += ' ';
      ++at;
    }
    lines += word;
    at += size;
  }
  lines += '\n';
}

// Lines that begin with a blank stay as they are.
void appendParagraphs(std::string& lines, std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = text::takeLine(text);
    if (line.starts_with(' ')) {
      lines.append(line) += '\n';
    } else {
      appendWrapped(lines, line, 0);
    }
  }
}

// A line of a list: a term and its explanation.
void appendItem(std::string& lines, std::string item, std::size_t column, std::string_view text) {
  item.resize(std::max(item.size() + 2, column), ' ');
  lines += item;
  appendWrapped(lines, text, std::max(item.size(), column));
}

void appendOptions(std::string& lines, std::span<const Option> options) {
  lines += "\nOptions :\n";
  for (const Option& option : options) {
    if (option.help.empty()) continue;
    std::string item = option.letter != 0 ? std::string("  -") + option.letter + ", " : "      ";
    item += "--" + std::string(option.name);
    if (!option.value.empty()) item += "=" + std::string(option.value);
    appendItem(lines, item, 28, option.help);
  }
}

void appendColumns(std::string& lines, std::span<const Column> columns) {
  if (columns.empty()) return;
  lines += '\n';
  appendWrapped(
      lines,
      "Colonnes de --csv et champs de --json (n : un nombre ; t : un texte, car un nombre peut y avoir "
      "toute longueur ; * : une liste) :",
      0);
  for (const Column& column : columns) {
    std::string item = "  " + std::string(column.name);
    item.resize(std::max<std::size_t>(item.size() + 1, 16), ' ');
    item += column.kind == Column::Kind::kCount ? "n" : "t";
    if (column.isList) item += "*";
    appendItem(lines, item, 20, column.help);
  }
}

void appendExample(std::string& lines, std::string_view example) {
  lines += "\nExemple :\n";
  while (!example.empty()) lines += "  " + std::string(text::takeLine(example)) + "\n";
}

}  // namespace

std::string helpOf(const Subcommand& subcommand) {
  std::string help = "Utilisation : velmoire " + std::string(subcommand.name) + " [OPTION]...";
  if (!subcommand.operands.empty()) help += " " + std::string(subcommand.operands);
  help += "\n\n";
  appendParagraphs(help, subcommand.description);
  appendOptions(help, subcommand.options);
  appendColumns(help, subcommand.columns);
  appendExample(help, subcommand.example);
  return help;
}

std::string generalHelp(std::span<const Subcommand* const> subcommands) {
  std::string help = "Utilisation : velmoire SOUS-COMMANDE [OPTION]... [ARGUMENT]...\n\n";
  appendParagraphs(help,
                   "Pour une puissance k, un nombre va à la somme des puissances k-ièmes de ses chiffres "
                   "décimaux, et ainsi de suite : 789 → 1584 → 702 → 351 → 153 pour k = 3.");
  help += "\nSous-commandes :\n";
  for (const Subcommand* subcommand : subcommands) {
    appendItem(help, "  " + std::string(subcommand->name), 16, subcommand->summary);
  }
  appendOptions(help, kGeneralOptions);
  help += '\n';
  appendParagraphs(
      help,
      "Un nombre s'écrit avec les seuls chiffres de 0 à 9 et peut être aussi long que l'on veut ; "
      "1..1000 désigne tous ceux de 1 à 1000, et - ceux de l'entrée standard, qui est lue aussi "
      "quand aucun nombre n'est donné.\n"
      "Code de retour : 0, 1 pour un échec, 2 pour un appel erroné, 130 après Ctrl+C.\n"
      "« velmoire SOUS-COMMANDE --aide » ou « velmoire aide SOUS-COMMANDE » dit le reste.");
  appendExample(help, "$ velmoire image -k 3 789\n789 → 1584\n");
  return help;
}

}  // namespace zelvion::command
