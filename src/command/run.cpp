#include "command/run.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <new>
#include <system_error>

#include "command/subcommands.h"
#include "command/typography.h"
#include "engine/text/reason.h"
#include "engine/text/utf8.h"

namespace zelvion::command {
namespace {

constexpr std::array kSubcommands = {&kImage,        &kIterates,    &kCycle,  &kSilhouette,
                                     &kNarcissistic, &kFixedPoints, &kCycles, &kAtlas};

constexpr std::array kGeneralOptions = {kHelpOption, kHelpAlias,
                                        Option{'V', "version", "", "affiche la version"}};

std::string optionLines(std::span<const Option> options) {
  constexpr std::size_t kColumn = 28;
  std::string lines;
  for (const Option& option : options) {
    if (option.help.empty()) continue;
    std::string line = option.letter != 0 ? std::string("  -") + option.letter + ", " : "      ";
    line += "--" + std::string(option.name);
    if (!option.value.empty()) line += "=" + std::string(option.value);
    line.resize(std::max(line.size() + 2, kColumn), ' ');
    lines += line + std::string(option.help) + "\n";
  }
  return lines;
}

std::string helpOf(const Subcommand& subcommand) {
  std::string help = "Utilisation : velmoire " + std::string(subcommand.name) + " [OPTION]... " +
                     std::string(subcommand.operands) + "\n\n" + std::string(subcommand.description) +
                     "\n\n" + "Options :\n" + optionLines(subcommand.options) + "\n" + "Exemple :\n";
  std::string_view example = subcommand.example;
  while (!example.empty()) {
    const std::size_t end = example.find('\n');
    help += "  " + std::string(example.substr(0, end + 1));
    example.remove_prefix(end + 1);
  }
  return help;
}

std::string generalHelp() {
  std::string help =
      "Utilisation : velmoire SOUS-COMMANDE [OPTION]... [ARGUMENT]...\n\n"
      "Pour une puissance k, un nombre va à la somme des puissances k-ièmes de ses\n"
      "chiffres décimaux, et ainsi de suite : 789 → 1584 → 702 → 351 → 153 pour k = 3.\n\n"
      "Sous-commandes :\n";
  for (const Subcommand* subcommand : kSubcommands) {
    std::string line = "  " + std::string(subcommand->name);
    line.resize(16, ' ');
    help += line + std::string(subcommand->summary) + "\n";
  }
  help += "\nOptions :\n" + optionLines(kGeneralOptions) +
          "\nUn nombre s'écrit avec les seuls chiffres de 0 à 9 et peut être aussi long que l'on\n"
          "veut ; 1..1000 désigne tous ceux de 1 à 1000, et - ceux de l'entrée standard.\n"
          "Code de retour : 0, 1 pour un échec, 2 pour un appel erroné, 130 après Ctrl+C.\n"
          "« velmoire SOUS-COMMANDE --aide » dit le reste.\n\n"
          "Exemple :\n";
  return help + "  " + "$ velmoire image -k 3 789\n  789 → 1584\n";
}

class Call {
 public:
  Call(std::span<const std::string> words, Environment& environment)
      : words_(words), environment_(environment) {}

  int run() {
    try {
      return dispatch();
    } catch (const WrongCall& wrong) {
      const std::string name = subcommand_ == nullptr ? "" : " " + std::string(subcommand_->name);
      tell(wrong.what());
      tell("« velmoire" + name + " --aide » dit ce qui est accepté.");
      return kWrongCall;
    } catch (const ClosedPipe&) {
      return kFailure;
    } catch (const std::system_error& error) {
      tell("Impossible d'écrire " + target_ + " : " + text::reasonOf(error.code()) + ".");
    } catch (const std::bad_alloc&) {
      tell("La mémoire ne suffit pas pour ce calcul.");
    } catch (const std::exception& error) {
      tell(error.what());
    }
    return kFailure;
  }

 private:
  int dispatch() {
    if (words_.empty()) throw WrongCall("Il manque une sous-commande : " + names() + ".");
    if (words_.front().starts_with("-")) return general();
    const auto found = std::ranges::find(kSubcommands, words_.front(), &Subcommand::name);
    if (found == kSubcommands.end())
      throw WrongCall("La sous-commande « " + text::shortened(words_.front()) +
                      " » n'existe pas. Il y a : " + names() + ".");
    subcommand_ = *found;
    const Arguments arguments(subcommand_->options, words_.subspan(1));
    if (arguments.has("aide") || arguments.has("help")) return print(helpOf(*subcommand_));
    if (arguments.has("csv") && arguments.has("json"))
      throw WrongCall("Les options --csv et --json s'excluent : choisissez l'une ou l'autre.");
    const Format format = arguments.has("csv")    ? Format::kCsv
                          : arguments.has("json") ? Format::kJson
                                                  : Format::kText;
    const auto file = arguments.value("sortie");
    if (!file) return carryOut(arguments, environment_.out, format);
    return toFile(std::string(*file), arguments, format);
  }

  // The file is opened before the work, so that what cannot be written is told at once, and emptied when
  // there is something to write: a call that fails before leaves it as it was.
  int toFile(const std::string& file, const Arguments& arguments, Format format) {
    target_ = "le fichier « " + file + " »";
    errno = 0;
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    if (!stream) throw std::system_error(errno, std::generic_category());
    std::error_code unknown;
    const bool isRegular = std::filesystem::is_regular_file(file, unknown);
    if (isRegular && std::ranges::find(arguments.operands(), "-") != arguments.operands().end() &&
        std::filesystem::equivalent(file, "/dev/stdin", unknown))
      throw WrongCall("Le fichier « " + file +
                      " » est aussi l'entrée standard : donnez-en un autre à l'option -o.");
    return carryOut(arguments, stream, format, [&] {
      if (isRegular) std::filesystem::resize_file(file, 0);
    });
  }

  // The options of a call without a subcommand.
  int general() {
    const Arguments arguments(kGeneralOptions, words_);
    if (arguments.has("aide") || arguments.has("help")) return print(generalHelp());
    if (arguments.has("version")) return print("velmoire (zelvion) " ZELVION_VERSION "\n");
    throw WrongCall("Il manque une sous-commande : " + names() + ".");
  }

  // What was written before something went wrong is kept.
  int carryOut(const Arguments& arguments, std::ostream& stream, Format format,
               std::function<void()> prepare = {}) {
    Output output(stream, format, std::move(prepare));
    int status = kFailure;
    try {
      status = subcommand_->run(arguments, output, environment_);
    } catch (const std::system_error&) {
      throw;
    } catch (const ClosedPipe&) {
      throw;
    } catch (const WrongCall&) {
      throw;
    } catch (...) {
      output.flush();
      throw;
    }
    output.finish();
    return environment_.progress.stop ? kInterrupted : status;
  }

  int print(const std::string& text) {
    Output output(environment_.out, Format::kText);
    output << typeset(text);
    output.flush();
    return kSuccess;
  }

  static std::string names() {
    std::string list;
    for (const Subcommand* subcommand : kSubcommands) {
      list += (list.empty() ? "" : ", ") + std::string(subcommand->name);
    }
    return list;
  }

  void tell(std::string_view sentence) {
    environment_.err << typeset("velmoire : " + std::string(sentence)) << std::endl;
  }

  std::span<const std::string> words_;
  Environment& environment_;
  const Subcommand* subcommand_ = nullptr;
  std::string target_ = "les résultats";
};

}  // namespace

int run(std::span<const std::string> words, Environment& environment) {
  return Call(words, environment).run();
}

}  // namespace zelvion::command
