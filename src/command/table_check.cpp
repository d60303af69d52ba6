#include "command/table_check.h"

#include <algorithm>
#include <limits>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "engine/arith/order.h"
#include "engine/cycles/known_cycles.h"
#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "engine/transform/transformation.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

std::string digitsIn(std::string_view title, std::string_view text) {
  try {
    return std::string(text::digitsOf(text));
  } catch (const Refusal&) {
    throw Refusal(text::quoted(text) + " n'est pas un nombre, colonne " + std::string(title));
  }
}

[[noreturn]] void refuse(const std::string& what, std::string_view right, std::string_view wrong) {
  throw Refusal(what + " est " + text::shortened(right) + ", et non " + text::shortened(wrong));
}

}  // namespace

/// What serves all lines of one power.
class TableCheck::Power {
 public:
  explicit Power(std::int32_t k) : transformation_(k), cycles_(transformation_) {}

  std::int32_t k() const { return transformation_.k(); }
  std::string image(std::string_view digits) { return transformation_.image(silhouetteOf(digits)).text(); }
  std::optional<KnownCycles::Fall> fall(std::string_view digits, const std::atomic<bool>& stop) {
    return cycles_.find(digits, std::numeric_limits<std::int32_t>::max() - 1, stop);
  }

 private:
  Transformation transformation_;
  KnownCycles cycles_;
};

TableCheck::TableCheck(const CsvTable& table, std::optional<std::int32_t> given)
    : table_(table), given_(given) {
  if (table.column("point_fixe")) {
    listed_ = Listed::kFixedPointRows;
  } else if (table.column("points") || table.column("plus_petit")) {
    listed_ = Listed::kCycleRows;
  } else if (table.column("nombre") && table.column("ordre")) {
    listed_ = Listed::kNarcissisticRows;
  } else {
    throw std::runtime_error(
        "Les titres du tableau ne disent pas de quoi il est. Sa première ligne doit avoir points ou "
        "plus_petit "
        "pour des cycles, point_fixe pour des points fixes, ordre et nombre pour des nombres narcissiques.");
  }
  if (!table.column(powerTitle()) && !given)
    throw std::runtime_error("Le tableau n'a pas de colonne " + std::string(powerTitle()) +
                             " : donnez la puissance à l'option -k.");
}

TableCheck::~TableCheck() = default;

bool TableCheck::checks(std::string_view title) const {
  if (title == powerTitle()) return true;
  if (listed_ != Listed::kCycleRows) return title == "chiffres" || title == numberTitle();
  return title == "ordre" || title == "plus_petit" || title == "plus_grand" || title == "points";
}

std::string TableCheck::check(const std::atomic<bool>& stop) {
  k_ = 0;
  const std::size_t fields = table_.fields().size();
  if (fields != table_.titles().size())
    throw Refusal("il y a " + pages::counted(fields, "champ") + " pour " +
                  pages::counted(table_.titles().size(), "titre"));
  k_ = readPower();
  if (!power_ || power_->k() != k_) power_ = std::make_unique<Power>(k_);
  if (listed_ != Listed::kCycleRows) return checkNumber();
  return table_.column("points") ? checkPoints(stop) : checkLeast(stop);
}

std::int32_t TableCheck::readPower() const {
  if (!table_.column(powerTitle())) return *given_;
  const std::int32_t k = text::valueOf(digits(powerTitle()));
  if (k == 0) throw Refusal("la puissance est un entier à partir de 1");
  return k;
}

// The digits in a column.
std::string TableCheck::digits(std::string_view title) const {
  return digitsIn(title, table_.fields()[*table_.column(title)]);
}

// Throws Refusal unless a column, where there is one, is `right`.
void TableCheck::expect(std::string_view title, const std::string& what, const std::string& right) const {
  if (!table_.column(title)) return;
  const std::string wrong = digits(title);
  if (wrong != right) refuse(what, right, wrong);
}

void TableCheck::expectCycle(std::size_t order, const std::string& least, const std::string& greatest) const {
  expect("ordre", "l'ordre", std::to_string(order));
  expect("plus_petit", "le plus petit point", least);
  expect("plus_grand", "le plus grand point", greatest);
}

void TableCheck::expectImage(const std::string& number, const std::string& image) {
  const std::string right = power_->image(number);
  if (image != right) refuse("l'image de " + text::shortened(number), right, image);
}

std::string TableCheck::checkPoints(const std::atomic<bool>& stop) {
  std::vector<std::string> points;
  std::istringstream list(table_.fields()[*table_.column("points")]);
  for (std::string point; list >> point;) points.push_back(digitsIn("points", point));
  if (points.empty()) throw Refusal("il n'y a aucun point");
  std::set<std::string_view> different;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (stop) throw Refusal("");
    if (!different.insert(points[i]).second)
      throw Refusal(text::shortened(points[i]) + " est deux fois parmi les points");
    expectImage(points[i], points[(i + 1) % points.size()]);
  }
  const auto [least, greatest] = std::ranges::minmax_element(
      points, [](std::string_view a, std::string_view b) { return compareDigits(a, b) < 0; });
  expectCycle(points.size(), *least, *greatest);
  return *least;
}

// The cycle of a line that has none of its points but the least.
std::string TableCheck::checkLeast(const std::atomic<bool>& stop) {
  const std::string point = digits("plus_petit");
  const auto fall = power_->fall(point, stop);
  if (!fall) throw Refusal(text::shortened(point) + " ne revient pas");
  if (fall->tail > 0)
    throw Refusal(text::shortened(point) + " n'est sur aucun cycle, il tombe sur un en " +
                  std::to_string(fall->tail) + " pas");
  std::string least = fall->cycle->least.text();
  expectCycle(fall->cycle->order(), least, fall->cycle->greatest.text());
  return least;
}

std::string TableCheck::checkNumber() {
  std::string number = digits(numberTitle());
  expectImage(number, number);
  if (listed_ == Listed::kNarcissisticRows && std::cmp_not_equal(number.size(), k_))
    throw Refusal(text::shortened(number) + " a " + pages::counted(number.size(), "chiffre") + ", et non " +
                  std::to_string(k_));
  expect("chiffres", "le nombre de chiffres", std::to_string(number.size()));
  return number;
}

}  // namespace zelvion::command
