#include "engine/text/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "engine/text/refusal.h"
#include "engine/text/utf8.h"

namespace zelvion::text {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The text without the blanks around it, those that do not break included.
std::string_view trimmed(std::string_view text) {
  constexpr std::array<std::string_view, 6> kBlanks = {" ", "\t", "\r", "\n", "\u00A0", "\u202F"};
  for (bool changed = true; changed;) {
    changed = false;
    for (const std::string_view blank : kBlanks) {
      if (text.starts_with(blank)) {
        text.remove_prefix(blank.size());
        changed = true;
      }
      if (text.ends_with(blank)) {
        text.remove_suffix(blank.size());
        changed = true;
      }
    }
  }
  return text;
}

// The number in the form that std::from_chars reads, empty if `text` is no number.
std::string canonical(std::string_view text) {
  text = trimmed(text);
  std::string number;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    if (text.front() == '-') number = "-";
    text.remove_prefix(1);
  }
  const std::size_t separator = text.find_first_of(".,");
  const std::string_view whole = text.substr(0, separator);
  const std::string_view decimals = separator == std::string_view::npos ? "" : text.substr(separator + 1);
  const bool onlyDigits = std::ranges::all_of(whole, isDigit) && std::ranges::all_of(decimals, isDigit);
  if (!onlyDigits || (whole.empty() && decimals.empty())) return {};
  return number.append("0").append(whole).append(".").append(decimals).append("0");
}

}  // namespace

void requireDigits(std::string_view text) {
  const auto other = std::ranges::find_if_not(text, isDigit);
  if (other == text.end()) return;
  const auto place = static_cast<std::size_t>(other - text.begin());
  const std::string_view character = text.substr(place, firstCharacterSize(text.substr(place)));
  throw Refusal("Le nombre " + quoted(text) + " ne peut pas être lu : " + characterName(character) +
                    " en position " + std::to_string(place + 1) +
                    ". Un nombre s’écrit avec les seuls chiffres de 0 à 9, sans signe, sans espace et sans "
                    "séparateur : effacez ce qui n’est pas un chiffre et recommencez.",
                std::string(text), place);
}

std::string_view digitsOf(std::string_view text) {
  if (text.empty()) throw Refusal("Le nombre est vide : il faut au moins un chiffre.");
  requireDigits(text);
  return text.substr(std::min(text.find_first_not_of('0'), text.size() - 1));
}

void requireLength(std::string_view text, std::size_t limit) {
  const std::size_t size = length(text);
  if (size <= limit) return;
  throw Refusal("Le nombre " + quoted(text) + " est trop long : il a " + grouped(size) + " caractères, et " +
                grouped(limit) + " au plus sont acceptés.");
}

std::int32_t valueOf(std::string_view text) {
  std::int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end == text.data() + text.size()) {
    if (error == std::errc()) return value;
    if (error == std::errc::result_out_of_range) {
      using Limits = std::numeric_limits<std::int32_t>;
      refuseRange(text, "Le nombre", Limits::min(), Limits::max());
    }
  }
  throw Refusal("Le texte " + quoted(text) +
                " n’est pas un nombre entier : seuls les chiffres de 0 à 9, avec un « - » devant au plus, "
                "sont acceptés.");
}

double toDouble(std::string_view text, std::string_view name) {
  const std::string number = canonical(text);
  if (number.empty()) {
    const bool blank = trimmed(text).empty();
    throw Refusal(std::string(name) + (blank ? " est vide" : " " + quoted(text) + " n’est pas un nombre") +
                  " : tapez un nombre entier, par exemple 3.");
  }
  double value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc::result_out_of_range) {
    const bool tiny = number.find_first_not_of("-0") >= number.find('.');
    value = tiny ? 0 : std::numeric_limits<double>::infinity();
    if (number.front() == '-') value = -value;
  }
  return value;
}

std::int32_t toInt32(std::string_view text, std::string_view name) {
  return toInt32(toDouble(text, name), text, name);
}

std::int32_t toInt32(double value, std::string_view text, std::string_view name) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double nearest = std::nearbyint(value);
  if (nearest < Limits::min() || nearest > Limits::max()) {
    refuseRange(text, name, Limits::min(), Limits::max());
  }
  return static_cast<std::int32_t>(nearest);
}

std::optional<std::int16_t> toInt16(double value) {
  using Limits = std::numeric_limits<std::int16_t>;
  const double nearest = std::nearbyint(value);
  if (nearest < Limits::min() || nearest > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(nearest);
}

void refuseRange(std::string_view text, std::string_view name, std::int64_t least, std::int64_t most) {
  throw Refusal(std::string(name) + " " + quoted(text) + " est hors des limites : il faut un nombre de " +
                std::to_string(least) + " à " + std::to_string(most) + ".");
}

std::string grouped(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t place = text.size(); place > 3;) text.insert(place -= 3, " ");
  return text;
}

}  // namespace zelvion::text
