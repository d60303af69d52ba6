#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "engine/fixedpoints/multiset_walk.h"
#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "engine/transform/orbit.h"
#include "form/shell/velmoire.h"

namespace zelvion {
namespace {

constexpr std::string_view kFile = "pfixe.txt";

// clang-format off
constexpr std::string_view kQuestion =
    "Ne dépassez pas k=11. Jusqu'à k=6 le temps de calcul est raisonnable; à partir de 7 il faut au moins 1 heure et jusqu'à une douzaine pour k=12. "
    "Jusqu'à k=12 toutes les possibilités sont considéres, au-delà on ne considère que les nombres des boucles de 1 à 12 chiffres, complétés par (k-12) 9";
// clang-format on

// Orders known to have no fixed point of k digits, which are not searched.
constexpr std::array<double, 10> kWithoutSearch = {2, 12, 13, 15, 18, 22, 26, 28, 30, 36};

// The last enumerator of the cascade, for orders that do not need all of them.
struct LastEnumerator {
  double k;
  int digits;
};
constexpr std::array<LastEnumerator, 8> kShortCascades = {
    {{3, 3}, {4, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 10}, {10, 11}}};
constexpr int kFullCascade = 12;

// Up to this power candidates have no leading nines.
constexpr int kLastWithoutNines = 12;

// How many nines precede the `digits` digits of a candidate for k, typed as `text`. Throws Refusal if
// candidates would be too long.
std::size_t ninesFor(double k, const std::string& text, std::size_t digits) {
  if (k == 57) return 41;
  if (k <= kLastWithoutNines) return 0;
  const std::size_t most = text::kMaxCharacters - digits;
  const double nines = std::nearbyint(k - kLastWithoutNines);
  if (nines <= static_cast<double>(most)) return static_cast<std::size_t>(nines);
  throw Refusal("La puissance k " + text::quoted(text) +
                " est trop grande pour cette recherche : les nombres à transformer auraient plus de " +
                std::to_string(text::kMaxCharacters) + " chiffres. Choisissez k jusqu’à " +
                std::to_string(most + kLastWithoutNines) + ".");
}

// The image of `candidate` if that is a fixed point.
std::optional<std::string> fixedImage(DigitPower& power, const std::string& candidate) {
  Orbit orbit(power, candidate);
  orbit.advance();
  std::string first = orbit.text();
  orbit.advance();
  if (orbit.text() != first) return std::nullopt;
  return first;
}

}  // namespace

/// The parameters of a search, read once from k, and where its fixed points go.
struct Velmoire::FixedPointSearch {
  /// `digits` is how many digits a candidate has after its nines. Throws Refusal if k is not a number or too
  /// large.
  FixedPointSearch(Velmoire& form, int digits)
      : text(form.ordrek.Text),
        k(text::toDouble(text, kPowerName)),
        nines(ninesFor(k, text, static_cast<std::size_t>(digits))),
        power(text::toInt32(k, text, kPowerName)),
        records(form, kFile) {}

  std::string text;   ///< k as typed
  double k;           ///< unrounded, for decisions
  std::size_t nines;  ///< in front of a candidate
  DigitPower power;
  Records records;
};

/// A test of the high orders: its power, and the leading nines of a candidate.
struct HighOrder {
  std::int32_t k;
  std::size_t nines;
};

namespace {

constexpr HighOrder kOrder57{57, 41};
constexpr HighOrder kOrder58{58, 46};
constexpr HighOrder kOrder59{59, 51};
constexpr HighOrder kOrder60{60, 56};

}  // namespace

void Velmoire::Command5_Click() {
  const std::string& k = ordrek.Text;
  if (!ask(kQuestion, "On effectue la recherche pour k = " + k + " ou sinon on change la valeur de k?")) {
    RichTextBox1.Text = "Choisissez un nouveau k!!";
    return;
  }
  FixedPointSearch search(*this, kFullCascade);
  ListePfixe = "Point(s) fixe(s) pour k = " + k + std::string(text::kLineEnd);

  const std::string title = "Transformation velmoire pour k = " + k;
  if (search.k == 1) {
    inform("Tous les nombres de 1 à 9 sont points fixes et sont des nombres narcissiques parfaits",
           "Points fixes de la transformations velmoire triviale k=1");
    ListePfixe += "1,2,3,4,5,6,7,8,9";
  } else if (std::ranges::find(kWithoutSearch, search.k) != kWithoutSearch.end()) {
    inform("Pas de point fixe", title);
  } else {
    const Moment start = desktop_.now();
    runCascade(search);
    informOfTime(start, search.records);
    inform(ListePfixe, title);
  }
  RichTextBox1.Text = ListePfixe;
}

void Velmoire::runCascade(FixedPointSearch& search) {
  const auto* row = std::ranges::find(kShortCascades, search.k, &LastEnumerator::k);
  const int last = row == kShortCascades.end() ? kFullCascade : row->digits;
  enumerate(search, 2, last);
}

void Velmoire::enumerate(FixedPointSearch& search, int first, int last) {
  MultisetWalk walk(search.power, search.nines);
  for (int digits = first; digits <= last; ++digits) {
    walk.run(digits, [&](const std::string& candidate) { test(search, candidate); });
  }
  search.records.sync();
}

void Velmoire::enumerate(int digits) {
  FixedPointSearch search(*this, digits);
  enumerate(search, digits, digits);
}

void Velmoire::PfixeK(const std::string& ent) {
  FixedPointSearch search(*this, 0);
  test(search, ent);
  search.records.sync();
}

void Velmoire::test(FixedPointSearch& search, const std::string& ent) {
  const std::optional<std::string> fixed = fixedImage(search.power, std::string(search.nines, '9') + ent);
  if (!fixed) return;
  const std::string entry = *fixed + ", ";
  ListePfixe += entry;
  const std::string lineEnd(text::kLineEnd);
  search.records.append("Ordre " + search.text + ", points fixes:" + lineEnd + entry + lineEnd);
}

void Velmoire::boucle1() {
  FixedPointSearch search(*this, 0);
  for (char digit = '0'; digit <= '9'; ++digit) test(search, std::string(1, digit));
  search.records.sync();
}
void Velmoire::boucle2() { enumerate(2); }
void Velmoire::boucle3() { enumerate(3); }
void Velmoire::boucle4() { enumerate(4); }
void Velmoire::boucle5() { enumerate(5); }
void Velmoire::boucle6() { enumerate(6); }
void Velmoire::boucle7() { enumerate(7); }
void Velmoire::boucle8() { enumerate(8); }
void Velmoire::boucle9() { enumerate(9); }
void Velmoire::boucle10() { enumerate(10); }
void Velmoire::boucle11() { enumerate(11); }
void Velmoire::boucle12() { enumerate(12); }

void Velmoire::Pfixe57(const std::string& ent) { testHigh(kOrder57, ent); }
void Velmoire::Pfixe58(const std::string& ent) { testHigh(kOrder58, ent); }
void Velmoire::Pfixe59(const std::string& ent) { testHigh(kOrder59, ent); }
void Velmoire::Pfixe60(const std::string& ent) { testHigh(kOrder60, ent); }

void Velmoire::testHigh(const HighOrder& order, const std::string& ent) {
  DigitPower power(order.k);
  Records records(*this, kFile);
  testHigh(order, power, records, ent);
  records.sync();
}

void Velmoire::testHigh(const HighOrder& order, DigitPower& power, Records& records, const std::string& ent) {
  ordrek.Text = std::to_string(order.k);
  const std::optional<std::string> fixed = fixedImage(power, std::string(order.nines, '9') + ent);
  const std::string line = fixed ? *fixed + ", " : "rien";
  if (fixed) records.append(line + std::string(text::kLineEnd));
  RichTextBox1.Text = line;
}

void Velmoire::boucle13() { enumerateHigh(13, kOrder57); }
void Velmoire::boucle14() { enumerateHigh(14, kOrder57); }
void Velmoire::boucle15() { enumerateHigh(15, kOrder57); }
void Velmoire::boucle16() { enumerateHigh(16, kOrder57); }
void Velmoire::boucle9K59() { enumerateHigh(9, kOrder59); }
void Velmoire::boucle5k60() { enumerateHigh(5, kOrder60); }

void Velmoire::boucle13K58() {
  const std::int32_t j = enumerateHigh(13, kOrder58);
  inform("fin boucle13 pour k=58 avec j= " + std::to_string(j));
}

// Every candidate that the sieve rules out would show "rien", and only the last outcome remains visible: so
// the last candidate is always tested.
std::int32_t Velmoire::enumerateHigh(int digits, const HighOrder& order) {
  const std::string lastCandidate(static_cast<std::size_t>(digits), '9');
  bool lastTested = false;
  DigitPower power(order.k);
  Records records(*this, kFile);
  MultisetWalk walk(power, order.nines);
  const std::int32_t candidates = walk.run(digits, [&](const std::string& candidate) {
    testHigh(order, power, records, candidate);
    lastTested = candidate == lastCandidate;
  });
  if (!lastTested) testHigh(order, power, records, lastCandidate);
  records.sync();
  return candidates;
}

}  // namespace zelvion
