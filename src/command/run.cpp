#include "command/run.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <new>
#include <system_error>

#include "command/help.h"
#include "command/spelling.h"
#include "command/subcommands.h"
#include "engine/text/reason.h"
#include "engine/text/utf8.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kSubcommands = {&kImage,       &kIterates, &kCycle,        &kSilhouette,
                                     &kAntecedents, &kRecords,  &kNarcissistic, &kFixedPoints,
                                     &kCycles,      &kAtlas,    &kVerify};

// Whether a file or a pipe is the standard input, so that what is written there would be read again.
bool isInput(const std::string& file) {
  struct stat there {};
  struct stat input {};
  return ::stat(file.c_str(), &there) == 0 && ::fstat(STDIN_FILENO, &input) == 0 &&
         there.st_dev == input.st_dev && there.st_ino == input.st_ino && !S_ISCHR(there.st_mode);
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
    if (words_.front() == "aide" || words_.front() == "help") return helpOn(words_.subspan(1));
    subcommand_ = named(words_.front());
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

  // The file is opened before the work, so that an unwritable one is reported at once, but truncated only
  // before the first write: a call that fails before that leaves it as it was.
  int toFile(const std::string& file, const Arguments& arguments, Format format) {
    target_ = "le fichier « " + file + " »";
    std::error_code unknown;
    if (const auto kept = arguments.value("reprise");
        kept &&
        std::filesystem::weakly_canonical(file, unknown) == std::filesystem::weakly_canonical(*kept, unknown))
      throw WrongCall("Le fichier « " + file +
                      " » est aussi celui de la reprise : donnez-en un autre à l'option -o.");
    errno = 0;
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    if (!stream) throw std::system_error(errno, std::generic_category());
    const bool isRegular = std::filesystem::is_regular_file(file, unknown);
    const auto& operands = arguments.operands();
    const bool readsInput =
        operands.empty() ? subcommand_->readsInput : std::ranges::find(operands, "-") != operands.end();
    if (readsInput && isInput(file))
      throw WrongCall("Le fichier « " + file +
                      " » est aussi l'entrée standard : donnez-en un autre à l'option -o.");
    return carryOut(arguments, stream, format, [&] {
      if (isRegular) std::filesystem::resize_file(file, 0);
    });
  }

  // What « velmoire aide [SOUS-COMMANDE] » says.
  int helpOn(std::span<const std::string> words) {
    if (words.empty()) return print(generalHelp(kSubcommands));
    if (words.size() > 1)
      throw WrongCall(text::quoted(words[1]) +
                      " est de trop : écrivez « velmoire aide » et une sous-commande.");
    return print(helpOf(*named(words.front())));
  }

  static const Subcommand* named(std::string_view name) {
    const auto found = std::ranges::find(kSubcommands, name, &Subcommand::name);
    if (found != kSubcommands.end()) return *found;
    std::vector<std::string_view> all;
    all.reserve(kSubcommands.size());
    for (const Subcommand* subcommand : kSubcommands) all.push_back(subcommand->name);
    const std::string_view near = nearest(name, all);
    throw WrongCall(
        "La sous-commande " + text::quoted(name) + " n'existe pas. " +
        (near.empty() ? "Il y a : " + names() + "." : "Vouliez-vous dire " + text::quoted(near) + " ?"));
  }

  // The options of a call without a subcommand.
  int general() {
    const Arguments arguments(kGeneralOptions, words_);
    if (arguments.has("aide") || arguments.has("help")) return print(generalHelp(kSubcommands));
    if (arguments.has("version")) return print("velmoire (zelvion) " ZELVION_VERSION "\n");
    throw WrongCall("Il manque une sous-commande : " + names() + ".");
  }

  // Whatever was written before a failure is kept.
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
    output << pages::typeset(text);
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

  // In one line, whatever the name of a file has in it.
  void tell(std::string sentence) {
    std::ranges::replace_if(
        sentence, [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    environment_.err << pages::typeset("velmoire : " + sentence) << std::endl;
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
