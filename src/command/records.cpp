#include "engine/atlas/records.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "command/atlas_work.h"
#include "command/least_number.h"
#include "command/subcommands.h"
#include "engine/atlas/range.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {
    kPowersOption,
    Option{0, "bfile", "", "écrit « n a(n) » par ligne : les pas et le nombre, pour les tables de suites"},
    kDigitsOption,
    kMemoryOption,
    kThreadsOption,
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

constexpr std::array kColumns = {count("k", "la puissance"), count("pas", "combien de pas il faut"),
                                 count("chiffres", "combien de chiffres a le nombre"),
                                 number("nombre", "le plus petit nombre à autant de pas de son cycle")};

class Writer {
 public:
  Writer(Output& output, bool asTable) : output_(output), asTable_(asTable) {
    if (output.format() != Format::kText) records_.emplace(output, kColumns);
  }

  void begin(const pages::AtlasFacts& facts, bool isWhole) {
    k_ = facts.k;
    if (!inText()) return;
    output_ << pages::typeset(
        "Puissance " + std::to_string(k_) + ". Le plus petit nombre à 0, à 1, à 2 pas, etc. de son cycle" +
        (isWhole ? ""
                 : ", parmi les nombres d'au plus " +
                       pages::counted(static_cast<std::size_t>(facts.basins.digits), "chiffre")) +
        " :\n");
  }

  void write(std::size_t steps, const Silhouette& silhouette) {
    write(steps, leastNumber(silhouette), leastNumberText(silhouette));
  }
  void write(std::size_t steps, const std::string& number) { write(steps, number, number); }

  /// Writes where the sequence stops being known.
  void end(std::size_t steps, std::uint32_t excluded) {
    if (!inText()) return;
    output_ << std::to_string(steps)
            << pages::typeset(" pas : plus de " + pages::counted(excluded, "chiffre") + "\n");
  }

  /// Shows at once what was written.
  void flush() { output_.flush(); }

 private:
  bool inText() const { return !records_ && !asTable_; }

  void write(std::size_t steps, const std::string& number, const std::string& text) {
    if (records_) {
      records_->field(static_cast<std::size_t>(k_)).field(steps).field(number.size()).field(number);
      return;
    }
    output_ << std::to_string(steps) << (asTable_ ? " " : " pas\u00A0: ") << (asTable_ ? number : text);
    output_.endLine();
  }

  Output& output_;
  bool asTable_;
  std::int32_t k_ = 0;
  std::optional<Records> records_;
};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  refuseOperands(arguments);
  const IntegerRange powers = arguments.range("puissance", 1, atlas::kMaxPower);
  const bool asTable = arguments.has("bfile");
  if (asTable && (output.format() != Format::kText || powers.first != powers.last))
    throw WrongCall(
        "L'option --bfile écrit une seule suite : elle va avec une seule puissance, sans --csv et --json.");
  AtlasWork work(arguments, environment, powers, true);
  work.leastDigits = 2;
  Writer writer(output, asTable);
  for (std::int32_t k = powers.first; k <= powers.last; ++k) {
    const auto facts = findFacts(k, work, environment);
    if (!facts) return tellInterrupted(k, false, environment);
    if (k > powers.first && output.format() == Format::kText) output << "\n";
    const bool isWhole = facts->basins.digits >= facts->rangeDigits;
    writer.begin(*facts, isWhole);
    const std::vector<Decimal> tails = facts->basins.tails();
    const std::vector<Decimal> least = facts->basins.leastByTail();
    for (std::size_t steps = 0; steps < tails.size(); ++steps) {
      if (!tails[steps].isZero()) {
        writer.write(steps, least[steps].text());
      } else if (asTable) {
        break;
      }
    }
    writer.flush();
    if (!isWhole) continue;
    const atlas::FarRecords beyond = findRecordsBeyond(facts->basins, work, environment);
    std::size_t steps = tails.size();
    for (const Silhouette& number : beyond.numbers) writer.write(steps++, number);
    if (environment.progress.stop) return tellInterrupted(k, false, environment);
    writer.end(steps, beyond.excluded);
    writer.flush();
  }
  return kSuccess;
}

}  // namespace

constinit const Subcommand kRecords = {
    "records",
    "",
    "le plus petit nombre pour chaque nombre de pas",
    "Écrit le plus petit de tous les nombres qui sont à 0, à 1, à 2 pas de leur cycle, et ainsi de suite. La "
    "suite n'a pas de fin, car tout nombre est l'image d'un autre, plus long. Au-delà des nombres comptés, "
    "le plus petit nombre à t + 1 pas est "
    "cherché parmi ceux dont l'image est à t pas ; il a au moins a / 9^k chiffres, si a est le plus petit à "
    "t pas. Ceux d'au plus 100\u202F000 chiffres sont donnés, tant que l'essai de deux milliards de "
    "silhouettes "
    "suffit à les trouver. "
    "Une longue suite d'un même chiffre est écrite en court, sauf avec --csv, --json et --bfile. Là où tous "
    "les nombres ne sont pas comptés (à partir de k = 46, ou avec --chiffres), la suite s'arrête à ceux qui "
    "le sont.",
    "$ velmoire records -k 1\n"
    "Puissance 1. Le plus petit nombre à 0, à 1, à 2 pas, etc. de son cycle :\n"
    "0 pas : 0\n1 pas : 10\n2 pas : 19\n3 pas : 199\n4 pas : 19 suivi de 21 fois 9\n"
    "5 pas : plus de 100\u202F000 chiffres\n",
    kOptions,
    kColumns,
    false,
    run};

}  // namespace zelvion::command
