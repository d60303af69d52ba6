#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "engine/arith/decimal.h"
#include "engine/arith/order.h"
#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "engine/transform/transformation.h"
#include "form/shell/velmoire.h"

// The arithmetic of the form: Decimal, plus the exact strings that each operation must return. 32-bit
// operands are widened, so that each of them can be negated and every result is exact.
namespace zelvion {
namespace {

bool isNegative(std::string_view ent) { return ent.starts_with('-'); }

bool isZeroOperand(std::string_view ent) { return ent.empty() || ent == "0" || ent == "-0"; }

std::uint64_t magnitude(std::int64_t value) { return static_cast<std::uint64_t>(std::abs(value)); }

std::string withoutNegativeZero(const std::string& result) { return result == "-0" ? "0" : result; }

// The sum of two texts of digits, as wide as the longer one.
std::string addMagnitudes(const std::string& a, const std::string& b) {
  Decimal sum = Decimal::parse(a);
  sum += Decimal::parse(b);
  return sum.padded(std::max(a.size(), b.size()));
}

// The difference over the columns of `ent`: further digits of `taken` are ignored, and the final borrow is
// dropped.
std::string subtractMagnitudes(const std::string& ent, const std::string& taken) {
  Decimal difference = Decimal::parse(ent);
  const Decimal subtrahend =
      Decimal::parse(taken.size() > ent.size() ? taken.substr(taken.size() - ent.size()) : taken);
  if (difference < subtrahend) difference += Decimal::power(Decimal(10), ent.size());
  difference -= subtrahend;
  return difference.text();
}

// The text of the value of `ent`.
std::string canonical(const std::string& ent) {
  if (ent.empty())
    throw Refusal("Un signe « - » seul n’est pas un nombre : il faut au moins un chiffre derrière lui.");
  return Decimal::parse(ent).text();
}

// `taken` - `ent`, both magnitudes.
std::string subtractFromNegative(const std::string& ent, const std::string& taken) {
  if (compareDigits(ent, taken) >= 0) return "-" + subtractMagnitudes(ent, taken);
  return subtractMagnitudes(taken, canonical(ent));
}

std::string difference(const std::string& ent, std::int64_t lk);

std::string sum(const std::string& ent, std::int64_t lk) {
  if (isZeroOperand(ent)) return std::to_string(lk);
  const std::string text = std::to_string(magnitude(lk));
  std::string result;
  if (isNegative(ent)) {
    const std::string m = ent.substr(1);
    result = lk < 0 ? "-" + addMagnitudes(m, text) : subtractFromNegative(m, text);
  } else {
    result = lk < 0 ? difference(ent, -lk) : addMagnitudes(ent, text);
  }
  return withoutNegativeZero(result);
}

std::string difference(const std::string& ent, std::int64_t lk) {
  const std::string text = std::to_string(magnitude(lk));
  std::string result;
  if (isNegative(ent)) {
    const std::string m = ent.substr(1);
    result = lk > 0 ? "-" + sum(m, lk) : subtractFromNegative(m, text);
  } else if (lk < 0) {
    result = sum(ent, -lk);
  } else if (compareDigits(ent, text) <= 0) {
    result = "-" + subtractMagnitudes(text, canonical(ent));
  } else {
    result = subtractMagnitudes(ent, text);
  }
  return withoutNegativeZero(result);
}

// The quotient of a long division, less one leading zero.
std::string truncatedQuotient(const std::string& digits, std::uint32_t divisor) {
  Decimal quotient = Decimal::parse(digits);
  quotient.divideBy(divisor);
  std::string text = quotient.padded(digits.size());
  if (text.starts_with('0')) text.erase(0, 1);
  return text;
}

}  // namespace

std::string Velmoire::Maxi(const std::string& ent1, const std::string& ent2) {
  return isGreater(ent2, ent1) ? ent2 : ent1;
}

std::string Velmoire::Mini(const std::string& ent1, const std::string& ent2) {
  return isGreater(ent1, ent2) ? ent2 : ent1;
}

bool Velmoire::idem(const std::string& enti, const std::string& entj) {
  text::requireLength(enti);
  text::requireLength(entj);
  return silhouetteOf(enti) == silhouetteOf(entj);
}

std::string Velmoire::ResuPartiel(const std::string& ires, std::string& iret) {
  if (ires.empty()) throw Refusal("Le texte d’une colonne est vide : il faut au moins un chiffre.");
  const std::string_view rest = text::prefix(ires, text::length(ires) - 1);
  std::string last = ires.substr(rest.size());
  iret = rest;
  return last;
}

std::string Velmoire::MulCalcul(const std::string& ent, const std::int32_t& lk) {
  const bool signTaken = isNegative(ent) && lk != 0;
  const std::string digits = signTaken ? ent.substr(1) : ent;
  const std::string product = (Decimal::parse(digits) * Decimal(magnitude(lk))).padded(digits.size());
  const bool negative = signTaken != (lk < 0);
  return negative && !product.empty() && product != "0" ? "-" + product : product;
}

std::string Velmoire::PuisCalcul(const std::string& ent, const std::int32_t& lk) {
  if (lk == 1) return ent;
  if (lk < 1) return "";
  const std::int32_t base = text::valueOf(ent);
  if (base == 0) text::requireDigits(ent);
  const double length =
      magnitude(base) > 1 ? std::floor(lk * std::log10(std::abs(static_cast<double>(base)))) + 1 : 1;
  if (length > Transformation::kMaxImageDigits) {
    throw Refusal("La puissance " + std::to_string(lk) + " de " + text::shortened(ent) + " aurait " +
                  text::grouped(static_cast<std::uint64_t>(length)) + " chiffres\u00a0; le maximum est de " +
                  text::grouped(Transformation::kMaxImageDigits) + " chiffres.");
  }
  const std::size_t width = ent.size() - (isNegative(ent) ? 1 : 0);
  const std::string power =
      Decimal::power(Decimal(magnitude(base)), static_cast<std::uint64_t>(lk)).padded(width);
  return base < 0 && lk % 2 == 1 ? "-" + power : power;
}

std::string Velmoire::Plusplus(const std::string& ent, const std::string& ent2) {
  return isZeroOperand(ent) ? ent2 : addMagnitudes(ent, ent2);
}

std::string Velmoire::PlusCalcul(const std::string& ent, const std::int32_t& lk) { return sum(ent, lk); }

std::string Velmoire::MoinsCalcul(const std::string& ent, const std::int32_t& lk) {
  if (ent.empty()) {
    inform("entreee vide!");
    return "";
  }
  return difference(ent, lk);
}

std::string Velmoire::MoinsCalcul0(const std::string& ent, const std::int32_t& lk) {
  return subtractMagnitudes(ent, std::to_string(lk));
}

std::string Velmoire::DemiCalcul(std::string& ent) {
  if (ent == "0") return "0";
  if (!isNegative(ent)) return truncatedQuotient(ent, 2);
  const std::string digits = ent.substr(1);
  const std::string half = truncatedQuotient(digits, 2);
  ent = digits;
  return "-" + half;
}

std::string Velmoire::TiersCalcul(const std::string& ent) { return truncatedQuotient(ent, 3); }

bool Velmoire::DiviCalcul(const std::string& ent, std::int32_t& idiv, std::string& sort) {
  if (isZeroOperand(ent) || ent == "-") {
    sort = ent;
    return false;
  }
  const std::int64_t divisor = std::abs(std::int64_t{idiv});
  if (divisor == 0) throw Refusal("Division par zéro : il faut un diviseur autre que 0.");
  if (divisor > std::numeric_limits<std::int32_t>::max()) {
    throw Refusal(
        "Le diviseur -2147483648 est hors des limites : il faut un entier, 0 excepté, de -2147483647 à "
        "2147483647.");
  }
  const std::string digits = isNegative(ent) ? ent.substr(1) : ent;
  const bool negative = isNegative(ent) != (idiv < 0);
  Decimal quotient = Decimal::parse(digits);
  const bool exact = quotient.divideBy(static_cast<std::uint32_t>(divisor)) == 0;
  idiv = static_cast<std::int32_t>(divisor);
  sort = (negative ? "-" : "") + (exact ? quotient.padded(0) : digits);
  return exact;
}

bool Velmoire::Pair(const std::string& ent) {
  return !ent.empty() && std::string_view("02468").find(ent.back()) != std::string_view::npos;
}

bool Velmoire::Triple(const std::string& ent) {
  static constexpr std::array<std::string_view, 5> kNoMultiples = {"", "-", "0", "1", "2"};
  if (std::find(kNoMultiples.begin(), kNoMultiples.end(), ent) != kNoMultiples.end()) return false;
  return Decimal::parse(ent).divideBy(3) == 0;
}

std::int32_t Velmoire::Demilong(const std::int32_t& la) { return la % 2 == 0 ? la / 2 : 0; }

void Velmoire::Choixentree(std::string& ent) {
  constexpr int kCopies = 400;
  ent.clear();
  for (int i = 0; i < kCopies; ++i) ent += "1234567890";
  inform("Entier initial avec " + std::to_string(kCopies) + "0 chiffres");
}

}  // namespace zelvion
