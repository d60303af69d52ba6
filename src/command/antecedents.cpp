#include "engine/antecedents/antecedents.h"

#include <array>
#include <vector>

#include "command/least_number.h"
#include "command/numbers.h"
#include "command/subcommands.h"
#include "engine/atlas/range.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {
    kPowerOption,
    Option{0, "chiffres", "D",
           "compte les antécédents d'au plus D chiffres (par défaut, ceux du domaine de k)"},
    Option{0, "silhouettes", "", "donne chaque silhouette et combien de nombres l'ont, au lieu du compte"},
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

constexpr std::array kColumns = {
    count("k", "la puissance"),
    number("nombre", "le nombre N"),
    count("chiffres", "le plus grand nombre de chiffres D d'un antécédent compté"),
    number("antecedents", "combien de nombres d'au plus D chiffres ont N pour image"),
    number("plus_petit",
           "le plus petit antécédent de tous ; vide s'il a plus d'un million de chiffres, ou s'il "
           "est trop long à chercher"),
    count("plus_de", "il a plus d'autant de chiffres"),
    listOf(count("silhouette",
                 "avec --silhouettes, à la place des trois précédents : combien de 9, de 8, et ainsi "
                 "de suite jusqu'à 1")),
    number("nombres", "avec --silhouettes : combien de nombres d'au plus D chiffres ont cette silhouette")};

// Of the whole, and with --silhouettes.
const std::array kWholeColumns = {kColumns[0], kColumns[1], kColumns[2],
                                  kColumns[3], kColumns[4], kColumns[5]};
const std::array kSilhouetteColumns = {kColumns[0], kColumns[1], kColumns[2], kColumns[6], kColumns[7]};

std::vector<std::string> textsOf(const Silhouette& silhouette) {
  std::vector<std::string> texts;
  for (auto digit = silhouette.counts.rbegin(); digit != silhouette.counts.rend(); ++digit)
    texts.push_back(std::to_string(*digit));
  return texts;
}

class Antecedents {
 public:
  Antecedents(const Arguments& arguments, Output& output, Environment& environment)
      : k_(arguments.power(atlas::kMaxPower)),
        digits_(static_cast<std::size_t>(
            arguments.integer("chiffres", atlas::rangeDigits(k_), 1, atlas::kMaxRangeDigits))),
        bySilhouette_(arguments.has("silhouettes")),
        output_(output),
        stop_(environment.progress.stop) {
    if (output.format() == Format::kText) return;
    records_.emplace(output, bySilhouette_ ? std::span<const Column>(kSilhouetteColumns)
                                           : std::span<const Column>(kWholeColumns));
  }

  void write(std::string_view number) {
    const Decimal value = Decimal::parse(number);
    Decimal total;
    std::optional<Silhouette> least;
    if (bySilhouette_ && !records_) writeHead(number);
    findAntecedents(k_, digits_, value, stop_, [&](const Silhouette& silhouette) {
      const Decimal numbers = arrangements(silhouette, digits_);
      total += numbers;
      if (!least || hasLesserNumber(silhouette, *least)) least = silhouette;
      if (bySilhouette_) writeSilhouette(number, silhouette, numbers);
    });
    if (stop_) return;
    if (bySilhouette_) {
      if (!records_ && total.isZero()) output_ << "  aucun\n";
      return;
    }
    const LeastAntecedent found =
        least ? LeastAntecedent{least, 0} : leastAntecedent(k_, value, kLongest, stop_);
    if (!stop_) writeWhole(number, total, found);
  }

 private:
  static constexpr std::uint32_t kLongest = 1'000'000;

  std::string limit() const { return pages::counted(digits_, "chiffre"); }

  void writeHead(std::string_view number) {
    output_ << number << "\u00A0: silhouettes des antécédents d’au plus " << limit()
            << ", combien de nombres l’ont";
    output_.endLine();
  }

  void writeSilhouette(std::string_view number, const Silhouette& silhouette, const Decimal& numbers) {
    const auto counts = textsOf(silhouette);
    if (records_) {
      records_->field(static_cast<std::size_t>(k_)).field(number).field(digits_);
      records_->list(counts).field(numbers.text());
      return;
    }
    output_ << "  (";
    for (const std::string& count : counts) output_ << (&count == counts.data() ? "" : ", ") << count;
    output_ << ")  " << numbers.text();
    output_.endLine();
  }

  void writeWhole(std::string_view number, const Decimal& total, const LeastAntecedent& least) {
    const std::uint32_t atLeast =
        least.silhouette ? std::max(totalOf(*least.silhouette), 1U) - 1 : least.excluded;
    if (records_) {
      records_->field(static_cast<std::size_t>(k_)).field(number).field(digits_).field(total.text());
      records_->field(least.silhouette ? leastNumber(*least.silhouette) : "").field(std::size_t{atLeast});
      return;
    }
    const std::string text = total.text();
    output_ << number << "\u00A0: " << (total.isZero() ? "aucun antécédent" : text + " antécédent")
            << (total > Decimal(1) ? "s" : "") << " d’au plus " << limit()
            << "\u00A0; le plus petit de tous ";
    if (least.silhouette) {
      output_ << "est " << leastNumberText(*least.silhouette);
    } else {
      output_ << "a plus de " << pages::counted(atLeast, "chiffre");
    }
    output_.endLine();
  }

  std::int32_t k_;
  std::size_t digits_;
  bool bySilhouette_;
  Output& output_;
  const std::atomic<bool>& stop_;
  std::optional<Records> records_;
};

int run(const Arguments& arguments, Output& output, Environment& environment) {
  Antecedents antecedents(arguments, output, environment);
  return forEachNumber(arguments, output, environment,
                       [&](std::string_view number) { antecedents.write(number); });
}

}  // namespace

constinit const Subcommand kAntecedents = {
    "antecedents",
    kNumberOperands,
    "les nombres dont un nombre est l'image : combien il y en a, et le plus petit",
    "Écrit pour chaque nombre N combien de nombres d'au plus D chiffres ont N pour image, et le plus petit "
    "de tous, "
    "quelle que soit sa longueur (il y en a toujours un : N fois le chiffre 1). Une longue suite d'un même "
    "chiffre "
    "y est écrite en court, sauf avec --csv et --json. Par défaut, D est le nombre de chiffres sous lequel "
    "finit "
    "tout nombre pour la puissance k, de 1 à 130.",
    "$ velmoire antecedents -k 3 153 177\n"
    "153 : 24 antécédents d'au plus 4 chiffres ; le plus petit de tous est 135\n"
    "177 : aucun antécédent d'au plus 4 chiffres ; le plus petit de tous est 122235\n",
    kOptions,
    kColumns,
    true,
    run};

}  // namespace zelvion::command
