#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "engine/fixedpoints/multiset_walk.h"
#include "engine/text/number.h"
#include "engine/text/utf8.h"
#include "engine/transform/orbit.h"
#include "form/velmoire.h"

namespace zelvion {
namespace {

constexpr std::string_view kFile = "pfixe.txt";

// The orders that are known to have no fixed point of k digits, for which no search is made.
constexpr std::array<double, 10> kWithoutSearch = {2, 12, 13, 15, 18, 22, 26, 28, 30, 36};

// The last enumerator of the cascade for the orders that do not need all of it.
struct LastEnumerator {
  double k;
  int digits;
};
constexpr std::array<LastEnumerator, 8> kShortCascades = {
    {{3, 3}, {4, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 10}, {10, 11}}};
constexpr int kFullCascade = 12;

// Up to this power the digits of a candidate are all it has.
constexpr double kLastWithoutNines = 12;

// How many nines stand in front of a candidate.
std::int16_t ninesFor(const std::string& kText) {
  const double k = text::toDouble(kText, kPowerName);
  if (k == 57) return 41;
  return k > kLastWithoutNines ? text::toInt16(k - kLastWithoutNines, kText, kPowerName) : std::int16_t{0};
}

// The image of `candidate` if it is its own image.
std::optional<std::string> fixedImage(const std::string& kText, const std::string& candidate) {
  DigitPower power(kText);
  Orbit orbit(power, candidate);
  orbit.advance();
  std::string first = orbit.text();
  orbit.advance();
  if (orbit.text() != first) return std::nullopt;
  return first;
}

void requireSearchable(const std::string& kText) {
  text::toInt32(kText, kPowerName);
  if (text::toDouble(kText, kPowerName) <= kMaxCharacters) return;
  throw std::length_error(
      "La puissance k « " + text::shortened(kText) +
      " » est trop grande pour cette recherche : les nombres à transformer auraient plus de " +
      std::to_string(kMaxCharacters) + " chiffres. Choisissez k jusqu'à " + std::to_string(kMaxCharacters) +
      ".");
}

MultisetWalk walkFor(const std::string& kText) {
  requireSearchable(kText);
  return MultisetWalk(text::toInt32(kText, kPowerName), ninesFor(kText));
}

}  // namespace

void Velmoire::Command5_Click() {
  const std::string& k = ordrek.Text;
  if (!ask("Ne dépassez pas k=11. Jusqu'à k=6 le temps de calcul est raisonnable; à partir de 7 il faut au "
           "moins 1 "
           "heure et jusqu'à une douzaine pour k=12. Jusqu'à k=12 toutes les possibilités sont considéres, "
           "au-delà on "
           "ne considère que les nombres des boucles de 1 à 12 chiffres, complétés par (k-12) 9",
           "On effectue la recherche pour k = " + k + " ou sinon on change la valeur de k?")) {
    RichTextBox1.Text = "Choisissez un nouveau k!!";
    return;
  }
  requireSearchable(k);
  ListePfixe = "Point(s) fixe(s) pour k = " + k + std::string(text::kLineEnd);

  const double order = text::toDouble(k, kPowerName);
  const std::string title = "Transformation velmoire pour k = " + k;
  if (order == 1) {
    inform("Tous les nombres de 1 à 9 sont points fixes et sont des nombres narcissiques parfaits",
           "Points fixes de la transformations velmoire triviale k=1");
    ListePfixe += "1,2,3,4,5,6,7,8,9";
  } else if (std::find(kWithoutSearch.begin(), kWithoutSearch.end(), order) != kWithoutSearch.end()) {
    inform("Pas de point fixe", title);
  } else {
    const Moment start = desktop_.now();
    runCascade(order);
    informOfTime(start);
    inform(ListePfixe, title);
  }
  RichTextBox1.Text = ListePfixe;
}

void Velmoire::runCascade(double order) {
  const auto* row = std::find_if(kShortCascades.begin(), kShortCascades.end(),
                                 [&](const LastEnumerator& last) { return last.k == order; });
  const int last = row == kShortCascades.end() ? kFullCascade : row->digits;
  MultisetWalk walk = walkFor(ordrek.Text);
  for (int digits = 2; digits <= last; ++digits) enumerate(walk, digits);
}

void Velmoire::PfixeK(const std::string& ent) {
  const std::string header = "Ordre " + ordrek.Text + ", points fixes:" + std::string(text::kLineEnd);
  const std::string candidate = std::string(static_cast<std::size_t>(ninesFor(ordrek.Text)), '9') + ent;
  const std::optional<std::string> fixed = fixedImage(ordrek.Text, candidate);
  if (!fixed) return;
  ListePfixe += *fixed + ", ";
  record(std::string(kFile), header + *fixed + ", " + std::string(text::kLineEnd));
}

void Velmoire::enumerate(MultisetWalk& walk, int digits) {
  walk.run(digits, [&](const std::string& candidate) { PfixeK(candidate); });
}

void Velmoire::enumerate(int digits) {
  MultisetWalk walk = walkFor(ordrek.Text);
  enumerate(walk, digits);
}

void Velmoire::boucle1() {
  for (char digit = '0'; digit <= '9'; ++digit) PfixeK(std::string(1, digit));
}
void Velmoire::boucle2() {
  enumerate(2);
}
void Velmoire::boucle3() {
  enumerate(3);
}
void Velmoire::boucle4() {
  enumerate(4);
}
void Velmoire::boucle5() {
  enumerate(5);
}
void Velmoire::boucle6() {
  enumerate(6);
}
void Velmoire::boucle7() {
  enumerate(7);
}
void Velmoire::boucle8() {
  enumerate(8);
}
void Velmoire::boucle9() {
  enumerate(9);
}
void Velmoire::boucle10() {
  enumerate(10);
}
void Velmoire::boucle11() {
  enumerate(11);
}
void Velmoire::boucle12() {
  enumerate(12);
}

const Velmoire::HighOrder Velmoire::kOrder57{57, 41};
const Velmoire::HighOrder Velmoire::kOrder58{58, 46};
const Velmoire::HighOrder Velmoire::kOrder59{59, 51};
const Velmoire::HighOrder Velmoire::kOrder60{60, 56};

void Velmoire::Pfixe57(const std::string& ent) {
  testHigh(kOrder57, ent);
}
void Velmoire::Pfixe58(const std::string& ent) {
  testHigh(kOrder58, ent);
}
void Velmoire::Pfixe59(const std::string& ent) {
  testHigh(kOrder59, ent);
}
void Velmoire::Pfixe60(const std::string& ent) {
  testHigh(kOrder60, ent);
}

void Velmoire::testHigh(const HighOrder& order, const std::string& ent) {
  ordrek.Text = std::to_string(order.k);
  const std::optional<std::string> fixed = fixedImage(ordrek.Text, std::string(order.nines, '9') + ent);
  if (!fixed) {
    RichTextBox1.Text = "rien";
    return;
  }
  RichTextBox1.Text = *fixed + ", ";
  record(std::string(kFile), *fixed + ", " + std::string(text::kLineEnd));
}

void Velmoire::boucle13() {
  enumerateHigh(13, kOrder57);
}
void Velmoire::boucle14() {
  enumerateHigh(14, kOrder57);
}
void Velmoire::boucle15() {
  enumerateHigh(15, kOrder57);
}
void Velmoire::boucle16() {
  enumerateHigh(16, kOrder57);
}
void Velmoire::boucle9K59() {
  enumerateHigh(9, kOrder59);
}
void Velmoire::boucle5k60() {
  enumerateHigh(5, kOrder60);
}

void Velmoire::boucle13K58() {
  const std::int32_t j = enumerateHigh(13, kOrder58);
  inform("fin boucle13 pour k=58 avec j= " + std::to_string(j));
}

// The candidates that the sieve keeps from the test would leave "rien" behind, and only the last one's
// outcome lasts: so that one is tested in any case.
std::int32_t Velmoire::enumerateHigh(int digits, const HighOrder& order) {
  const std::string lastCandidate(static_cast<std::size_t>(digits), '9');
  bool lastTested = false;
  MultisetWalk walk(order.k, static_cast<std::int32_t>(order.nines));
  const std::int32_t candidates = walk.run(digits, [&](const std::string& candidate) {
    testHigh(order, candidate);
    lastTested = candidate == lastCandidate;
  });
  if (!lastTested) testHigh(order, lastCandidate);
  return candidates;
}

}  // namespace zelvion
