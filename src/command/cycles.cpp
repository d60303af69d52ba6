#include <algorithm>
#include <array>
#include <stdexcept>

#include "command/atlas_parts.h"
#include "command/atlas_work.h"
#include "command/subcommands.h"
#include "command/typography.h"
#include "engine/atlas/range.h"
#include "engine/atlas/silhouette_map.h"
#include "engine/text/utf8.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {
    kPowersOption,
    Option{0, "bassins", "", "ajoute la part des nombres qui y finissent et le plus long chemin"},
    Option{0, "points", "", "donne aussi tous les points de chaque cycle"},
    kDigitsOption,
    kMemoryOption,
    Option{0, "dot", "", "dessine les cycles pour Graphviz, avec toutes les silhouettes jusqu'à k = 5"},
    Option{0, "partie", "I/N", "ne fait que la partie I de N, et l'écrit en JSON pour --reunir"},
    Option{0, "reunir", "", "réunit les parties que donnent les fichiers nommés"},
    kThreadsOption,
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

// Rows of cells, each column as wide as its widest cell, numbers to the right.
void writeTable(Output& output, const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], text::length(row[i]));
  }
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      output << std::string(widths[i] - text::length(row[i]) + (i == 0 ? 0 : 2), ' ') << row[i];
    }
    output.endLine();
  }
}

std::vector<std::string> textsOf(const std::vector<Decimal>& numbers) {
  std::vector<std::string> texts;
  texts.reserve(numbers.size());
  for (const Decimal& number : numbers) texts.push_back(number.text());
  return texts;
}

/// How the cycles of some powers are written.
class Writer {
 public:
  Writer(Output& output, bool withBasins, bool withPoints)
      : output_(output), withBasins_(withBasins), withPoints_(withPoints) {
    if (output.format() == Format::kText) return;
    names_ = {"k", "cycle", "ordre", "plus_petit", "plus_grand"};
    if (withBasins) {
      for (const char* name : {"chiffres", "nombres", "pas_max", "depuis", "sous", "pas"})
        names_.emplace_back(name);
    }
    if (withPoints) names_.emplace_back("points");
    records_.emplace(output, names_);
  }

  void write(const AtlasFacts& facts) {
    if (records_) {
      writeRecords(facts);
    } else {
      writeText(facts);
    }
    output_.flush();
  }

 private:
  void writeRecords(const AtlasFacts& facts) {
    std::size_t rank = 0;
    for (const atlas::Cycle& cycle : facts.cycles) {
      records_->field(static_cast<std::size_t>(facts.k)).field(++rank).field(cycle.order());
      records_->field(cycle.least().text()).field(cycle.greatest().text());
      if (withBasins_) {
        const atlas::Basin* basin = facts.basinOf(cycle);
        records_->field(static_cast<std::size_t>(facts.basins.digits));
        records_->field(basin ? basin->below.back().text() : "0");
        records_->field(basin ? std::to_string(basin->longestTail()) : "");
        records_->field(basin ? basin->farthest.text() : "");
        records_->list(basin ? textsOf(basin->below) : std::vector<std::string>());
        records_->list(basin ? textsOf(basin->tails) : std::vector<std::string>());
      }
      if (withPoints_) records_->list(textsOf(cycle.points()));
    }
  }

  void writeText(const AtlasFacts& facts) {
    output_ << typeset("Puissance " + std::to_string(facts.k) + ". " + proofText(facts)) << "\n";
    if (withBasins_) output_ << typeset(countedText(facts)) << "\n";
    std::vector<std::vector<std::string>> rows = {{"cycle", "ordre", "plus petit point", "plus grand point"}};
    if (withBasins_) rows[0].insert(rows[0].end(), {"part", "pas, au plus", "depuis"});
    for (const atlas::Cycle& cycle : facts.cycles) {
      auto& row = rows.emplace_back();
      row = {std::to_string(rows.size() - 1), std::to_string(cycle.order()), cycle.least().text(),
             cycle.greatest().text()};
      if (!withBasins_) continue;
      const atlas::Basin* basin = facts.basinOf(cycle);
      row.push_back(percentText(facts.share(basin)));
      row.push_back(basin ? std::to_string(basin->longestTail()) : "–");
      row.push_back(basin ? basin->farthest.text() : "–");
    }
    writeTable(output_, rows);
    if (withPoints_) {
      std::size_t rank = 0;
      for (const atlas::Cycle& cycle : facts.cycles) {
        output_ << "Cycle " << std::to_string(++rank) << "\u00A0:";
        for (const Decimal& point : cycle.points()) output_ << " " << point.text();
        output_.endLine();
      }
    }
  }

  Output& output_;
  bool withBasins_;
  bool withPoints_;
  std::vector<std::string_view> names_;
  std::optional<Records> records_;
};

void writeDot(const AtlasFacts& facts, Output& output) {
  output << "digraph \"k = " << std::to_string(facts.k) << "\" {\n";
  if (facts.k <= atlas::kMaxMapPower) {
    const auto nodes = atlas::silhouetteMap(facts.k);
    for (const atlas::MapNode& node : nodes) {
      if (node.onCycle) output << "  \"" << node.digits << "\" [style=filled];\n";
    }
    for (const atlas::MapNode& node : nodes) {
      output << "  \"" << node.digits << "\" -> \"" << nodes[node.next].digits << "\";";
      output.endLine();
    }
  } else {
    for (const atlas::Cycle& cycle : facts.cycles) {
      const auto& points = cycle.points();
      for (std::size_t i = 0; i < points.size(); ++i) {
        output << "  \"" << points[i].text() << "\" -> \"" << points[(i + 1) % points.size()].text() << "\";";
        output.endLine();
      }
    }
  }
  output << "}\n";
}

atlas::Part partOf(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash != std::string_view::npos) {
    const IntegerRange number =
        readRange(text.substr(0, slash), "Le numéro d'une partie", 1, atlas::kMaxParts);
    const IntegerRange count = readRange(text.substr(slash + 1), "Le nombre de parties", 1, atlas::kMaxParts);
    if (number.first == number.last && count.first == count.last && number.first <= count.first) {
      return {static_cast<std::uint32_t>(number.first), static_cast<std::uint32_t>(count.first)};
    }
  }
  throw WrongCall("La partie " + text::quoted(text) +
                  " n'est pas de la forme I/N, avec I de 1 à N, par exemple 3/64.");
}

// Of several results the later ones may still fail, so that each is written when it is there.
int run(const Arguments& arguments, Output& output, Environment& environment) {
  const bool withBasins = arguments.has("bassins") || arguments.has("chiffres");
  const bool asDot = arguments.has("dot");
  if (asDot && (output.format() != Format::kText || withBasins))
    throw WrongCall("L'option --dot ne va pas avec --csv, --json ou --bassins.");
  if (arguments.has("reunir")) {
    if (arguments.has("puissance") || arguments.has("partie") || arguments.has("chiffres"))
      throw WrongCall(
          "Avec --reunir, la puissance, les parties et les chiffres sont ceux des fichiers : n'en donnez pas "
          "d'autres.");
    if (arguments.operands().empty()) throw WrongCall("Il manque les fichiers à réunir.");
    AtlasPart whole = joinedParts(arguments.operands());
    const bool counted = whole.basins.has_value();
    if (withBasins && !counted)
      throw std::runtime_error(
          "Ces parties sont sans les bassins : refaites-les avec --bassins, ou réunissez-les sans.");
    AtlasFacts facts = counted
                           ? factsOf(whole.k, std::move(whole.cycles), std::move(*whole.basins))
                           : AtlasFacts{whole.k, atlas::rangeDigits(whole.k), std::move(whole.cycles), {}};
    if (asDot) {
      writeDot(facts, output);
    } else {
      Writer(output, counted, arguments.has("points")).write(facts);
    }
    return kSuccess;
  }

  refuseOperands(arguments);
  const IntegerRange powers = arguments.range("puissance", 1, atlas::kMaxPower);
  AtlasWork work(arguments, environment);
  if (const auto part = arguments.value("partie")) {
    if (powers.first != powers.last) throw WrongCall("Une partie est d'une seule puissance : donnez-en une.");
    if (asDot || arguments.has("points") || output.format() != Format::kText)
      throw WrongCall(
          "Une partie est toujours écrite en JSON : la forme du résultat se choisit avec --reunir.");
    work.part = partOf(*part);
    AtlasPart done{powers.first, work.part, {}, {}};
    auto cycles = findCycles(powers.first, work, environment);
    if (cycles && withBasins) done.basins = countBasins(powers.first, work, environment);
    if (!cycles || (withBasins && !done.basins)) {
      tellInterrupted(powers.first, environment);
      return kInterrupted;
    }
    done.cycles = std::move(*cycles);
    output << jsonOf(done);
    return kSuccess;
  }

  std::optional<Writer> writer;
  if (!asDot) writer.emplace(output, withBasins, arguments.has("points"));
  for (std::int32_t k = powers.first; k <= powers.last; ++k) {
    std::optional<AtlasFacts> facts;
    if (withBasins) {
      facts = findFacts(k, work, environment);
    } else if (auto cycles = findCycles(k, work, environment)) {
      facts = AtlasFacts{k, atlas::rangeDigits(k), std::move(*cycles), {}};
    }
    if (!facts) {
      tellInterrupted(k, environment);
      return kInterrupted;
    }
    if (asDot) {
      writeDot(*facts, output);
    } else {
      if (output.format() == Format::kText && k > powers.first) output << "\n";
      writer->write(*facts);
    }
  }
  return kSuccess;
}

}  // namespace

constinit const Subcommand kCycles = {
    "cycles",
    "[FICHIER...]",
    "tous les cycles d'une puissance, avec la preuve qu'il n'y en a pas d'autre",
    "Cherche tous les cycles de la puissance k, points fixes compris ; la liste est\n"
    "complète. Avec --bassins, compte exactement combien de nombres finissent dans chacun\n"
    "et combien de pas il leur faut. La liste dure une seconde pour k = 30, une minute pour\n"
    "k = 60 ; compter dure dix secondes pour k = 30, une minute pour k = 40. Plusieurs\n"
    "machines se partagent le travail, par exemple avec GNU parallel :\n"
    "  parallel velmoire cycles -k 40 --partie {}/8 -o {}.json ::: 1 2 3 4 5 6 7 8\n"
    "  velmoire cycles --reunir *.json",
    "$ velmoire cycles -k 2 --bassins\n"
    "Puissance 2. Tout nombre finit sous 10³. Liste complète : 3 cycles, dont 2 points fixes.\n"
    "Les parts sont celles des nombres de 0 à 10³ − 1, tous comptés un à un.\n"
    "cycle  ordre  plus petit point  plus grand point    part  pas, au plus  depuis\n"
    "    1      1                 0                 0  0,10 %             0       0\n"
    "    2      1                 1                 1  14,2 %             6     356\n"
    "    3      8                 4               145  85,7 %            11     269\n",
    kOptions,
    run};

}  // namespace zelvion::command
