#include "engine/text/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "engine/text/utf8.h"

namespace zelvion::text {
namespace {

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
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const bool onlyDigits = std::all_of(whole.begin(), whole.end(), isDigit) &&
                          std::all_of(decimals.begin(), decimals.end(), isDigit);
  if (!onlyDigits || (whole.empty() && decimals.empty())) return {};
  return number.append("0").append(whole).append(".").append(decimals).append("0");
}

template <typename Integer>
Integer rounded(double value, std::string_view text, std::string_view name) {
  using Limits = std::numeric_limits<Integer>;
  const double nearest = std::nearbyint(value);
  if (nearest >= Limits::min() && nearest <= Limits::max()) return static_cast<Integer>(nearest);
  throw std::invalid_argument(std::string(name) + " « " + shortened(text) +
                              " » est hors des limites : il faut un nombre de " +
                              std::to_string(Limits::min()) + " à " + std::to_string(Limits::max()) + ".");
}

}  // namespace

double toDouble(std::string_view text, std::string_view name) {
  const std::string number = canonical(text);
  if (number.empty()) {
    const bool blank = trimmed(text).empty();
    throw std::invalid_argument(std::string(name) +
                                (blank ? " est vide" : " « " + shortened(text) + " » n'est pas un nombre") +
                                " : tapez un nombre entier, par exemple 3.");
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
  return rounded<std::int32_t>(toDouble(text, name), text, name);
}

std::int16_t toInt16(double value, std::string_view text, std::string_view name) {
  return rounded<std::int16_t>(value, text, name);
}

}  // namespace zelvion::text
