#pragma once

#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "command/arguments.h"
#include "command/output.h"
#include "command/run.h"

namespace zelvion::command {

/// A subcommand: what the help says of it, and what it does.
struct Subcommand {
  std::string_view name;
  std::string_view operands;     ///< how the help writes them
  std::string_view summary;      ///< one line
  std::string_view description;  ///< wrapped, except lines that begin with a blank
  std::string_view example;      ///< a call and what it prints
  std::span<const Option> options;
  std::span<const Column> columns;  ///< all that --csv may have; none if there is no --csv
  bool readsInput;                  ///< the standard input, where there is no operand
  /// Returns the status. Results go to the output, all else to the error stream. Throws WrongCall, or a
  /// standard exception with a French sentence; whatever was written by then is kept.
  int (*run)(const Arguments& arguments, Output& output, Environment& environment);
};

// A file each.
extern const Subcommand kImage;
extern const Subcommand kIterates;
extern const Subcommand kCycle;
extern const Subcommand kSilhouette;
extern const Subcommand kAntecedents;
extern const Subcommand kRecords;
extern const Subcommand kNarcissistic;
extern const Subcommand kFixedPoints;
extern const Subcommand kCycles;
extern const Subcommand kAtlas;
extern const Subcommand kVerify;

// Options that several of them have.
inline constexpr Option kPowerOption = {'k', "puissance", "K", "la puissance, un entier à partir de 1"};
inline constexpr Option kPowersOption = {'k', "puissance", "K", "la puissance, ou plusieurs comme 2..10"};
inline constexpr Option kThreadsOption = {0, "fils", "N", "le nombre de fils d'exécution (par défaut, tous)"};
inline constexpr Option kCsvOption = {0, "csv", "", "un tableau CSV, avec une ligne de titres"};
inline constexpr Option kJsonOption = {0, "json", "", "du JSON, un objet par ligne"};
inline constexpr Option kOutputOption = {'o', "sortie", "FICHIER", "écrit les résultats dans ce fichier"};
inline constexpr Option kHelpOption = {'h', "aide", "", "affiche cette aide (ou --help)"};
inline constexpr Option kHelpAlias = {0, "help", "", ""};

/// The threads to use: those of kThreadsOption, or else all. Throws WrongCall.
unsigned threadsOf(const Arguments& arguments, const Environment& environment);

/// The power of a call, or the range of them: its only operand or the value of kPowersOption. `what` begins
/// the sentence at one that cannot be read, `missing` is the one where there is none. Throws WrongCall.
IntegerRange powersOf(const Arguments& arguments, const std::string& what, const std::string& missing,
                      std::int32_t greatest);

/// Says on the error stream which power the work was interrupted in, and whether what is done is `kept` for a
/// later call. Returns kInterrupted.
int tellInterrupted(std::int32_t k, bool kept, Environment& environment);

/// Opens a file to read. Throws std::runtime_error, with a sentence that names it.
std::ifstream openForReading(const std::string& file);

/// Throws WrongCall if the call has operands.
void refuseOperands(const Arguments& arguments);

}  // namespace zelvion::command
