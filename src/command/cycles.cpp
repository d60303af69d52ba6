#include <algorithm>
#include <array>
#include <stdexcept>

#include "command/atlas_work.h"
#include "command/parts.h"
#include "command/subcommands.h"
#include "engine/atlas/range.h"
#include "engine/atlas/silhouette_map.h"
#include "engine/text/utf8.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {
    kPowersOption,
    Option{0, "bassins", "", "ajoute la part des nombres qui y finissent et le plus long chemin"},
    Option{0, "points", "", "donne aussi tous les points de chaque cycle"},
    kDigitsOption,
    kMemoryOption,
    Option{0, "dot", "", "dessine les cycles pour Graphviz, avec toutes les silhouettes jusqu'à k = 5"},
    kPartOption,
    kJoinOption,
    kResumeOption,
    kThreadsOption,
    kCsvOption,
    kJsonOption,
    kOutputOption,
    kHelpOption,
    kHelpAlias};

constexpr std::array kColumns = {
    count("k", "la puissance"),
    count("cycle", "le rang du cycle dans la liste"),
    count("ordre", "combien de points il a, 1 pour un point fixe"),
    number("plus_petit", "son plus petit point"),
    number("plus_grand", "son plus grand point"),
    count("chiffres", "avec --bassins : les nombres d'au plus autant de chiffres sont comptés"),
    number("nombres", "combien d'entre eux finissent dans ce cycle"),
    count("pas_max", "combien de pas il leur faut au plus ; vide, null en JSON, s'il n'y en a pas"),
    number("depuis", "le plus petit de ceux qui en font autant"),
    listOf(number("sous", "combien sont sous 1, sous 10, sous 100, et ainsi de suite")),
    listOf(number("pas", "combien ont besoin de 0, de 1, de 2 pas, et ainsi de suite")),
    listOf(number("points", "avec --points : tous les points, à partir du plus petit"))};
constexpr std::size_t kCycleColumns = 5;
constexpr std::size_t kBasinColumns = 6;

// Writes rows of cells, right-aligned, each column as wide as its widest cell.
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
    const auto begin = kColumns.begin();
    columns_.assign(begin, begin + kCycleColumns + (withBasins ? kBasinColumns : 0));
    if (withPoints) columns_.push_back(kColumns.back());
    records_.emplace(output, columns_);
  }

  void write(const pages::AtlasFacts& facts) {
    if (records_) {
      writeRecords(facts);
    } else {
      writeText(facts);
    }
    output_.flush();
  }

 private:
  void writeRecords(const pages::AtlasFacts& facts) {
    std::size_t rank = 0;
    for (const atlas::Cycle& cycle : facts.cycles) {
      records_->field(static_cast<std::size_t>(facts.k)).field(++rank).field(cycle.order());
      records_->field(cycle.least().text()).field(cycle.greatest().text());
      if (withBasins_) {
        const atlas::Basin* basin = facts.basinOf(cycle);
        records_->field(static_cast<std::size_t>(facts.basins.digits));
        records_->field(basin ? basin->below.back().text() : "0");
        records_->field(basin ? std::to_string(basin->longestTail()) : "");
        records_->field(basin ? basin->farthest().text() : "");
        records_->list(basin ? textsOf(basin->below) : std::vector<std::string>());
        records_->list(basin ? textsOf(basin->tails) : std::vector<std::string>());
      }
      if (withPoints_) records_->list(textsOf(cycle.points()));
    }
  }

  void writeText(const pages::AtlasFacts& facts) {
    output_ << pages::typeset("Puissance " + std::to_string(facts.k) + ". " + pages::proofText(facts))
            << "\n";
    if (withBasins_) output_ << pages::typeset(pages::countedText(facts)) << "\n";
    std::vector<std::vector<std::string>> rows = {{"cycle", "ordre", "plus petit point", "plus grand point"}};
    if (withBasins_) rows[0].insert(rows[0].end(), {"part", "pas, au plus", "depuis"});
    for (const atlas::Cycle& cycle : facts.cycles) {
      auto& row = rows.emplace_back();
      row = {std::to_string(rows.size() - 1), std::to_string(cycle.order()), cycle.least().text(),
             cycle.greatest().text()};
      if (!withBasins_) continue;
      const atlas::Basin* basin = facts.basinOf(cycle);
      row.push_back(pages::percentText(facts.share(basin)));
      row.push_back(basin ? std::to_string(basin->longestTail()) : "–");
      row.push_back(basin ? basin->farthest().text() : "–");
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
  std::vector<Column> columns_;
  std::optional<Records> records_;
};

void writeDot(const pages::AtlasFacts& facts, Output& output) {
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

// A later power may still fail, so each is written when it is done.
int run(const Arguments& arguments, Output& output, Environment& environment) {
  const bool withBasins = arguments.has("bassins") || arguments.has("chiffres");
  const bool asDot = arguments.has("dot");
  if (asDot && (output.format() != Format::kText || withBasins))
    throw WrongCall("L'option --dot ne va pas avec --csv, --json ou --bassins.");
  if (arguments.has("reunir")) {
    if (arguments.has("chiffres")) throw WrongCall("Avec --reunir, les chiffres sont ceux des fichiers.");
    SearchPart whole = joinedFiles(arguments, "cycles");
    const bool counted = whole.basins.has_value();
    if (withBasins && !counted)
      throw std::runtime_error(
          "Ces parties sont sans les bassins : refaites-les avec --bassins, ou réunissez-les sans.");
    const pages::AtlasFacts facts = factsOf(std::move(whole));
    if (asDot) {
      writeDot(facts, output);
    } else {
      Writer(output, counted, arguments.has("points")).write(facts);
    }
    return kSuccess;
  }

  refuseOperands(arguments);
  const IntegerRange powers = arguments.range("puissance", 1, atlas::kMaxPower);
  AtlasWork work(arguments, environment, powers, withBasins);
  if (const auto part = arguments.value("partie")) {
    if (powers.first != powers.last) throw WrongCall("Une partie est d'une seule puissance : donnez-en une.");
    if (asDot || arguments.has("points") || output.format() != Format::kText)
      throw WrongCall(
          "Une partie est toujours écrite en JSON : la forme du résultat se choisit avec --reunir.");
    const auto done = findPart(powers.first, readPart(*part), work, environment);
    if (!done) {
      return tellInterrupted(powers.first, false, environment);
    }
    output << jsonOf(*done);
    return kSuccess;
  }

  std::optional<Writer> writer;
  if (!asDot) writer.emplace(output, withBasins, arguments.has("points"));
  for (std::int32_t k = powers.first; k <= powers.last; ++k) {
    const auto facts = findFacts(k, work, environment);
    if (!facts) {
      return tellInterrupted(k, work.resumption.has_value(), environment);
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
    "Cherche tous les cycles de la puissance k, points fixes compris ; la liste est complète. Avec "
    "--bassins, "
    "compte exactement combien de nombres finissent dans chacun et combien de pas il leur faut. La liste "
    "dure une "
    "seconde pour k = 30, une minute pour k = 60 ; compter dure dix secondes pour k = 30, une minute pour k "
    "= 40. "
    "Plusieurs machines se partagent le travail, par exemple avec GNU parallel :\n"
    "  parallel velmoire cycles -k 40 --partie {}/8 -o {}.json ::: 1 2 3 4 5 6 7 8\n"
    "  velmoire cycles --reunir *.json",
    "$ velmoire cycles -k 2 --csv\n"
    "k,cycle,ordre,plus_petit,plus_grand\n"
    "2,1,1,0,0\n"
    "2,2,1,1,1\n"
    "2,3,8,4,145\n",
    kOptions,
    kColumns,
    false,
    run};

}  // namespace zelvion::command
