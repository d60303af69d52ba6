#include "pages/typography.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "engine/text/utf8.h"

namespace zelvion::pages {
namespace {

std::string withComma(std::string number) {
  std::ranges::replace(number, '.', ',');
  return number;
}

std::string superscript(int number) {
  constexpr std::array<std::string_view, 10> kDigits = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  std::string text = number < 0 ? "⁻" : "";
  for (const char c : std::to_string(std::abs(number))) text += kDigits[static_cast<std::size_t>(c - '0')];
  return text;
}

}  // namespace

std::string typeset(std::string_view bytes) {
  constexpr std::string_view kNoBreak = "\u00A0";
  constexpr std::array<std::string_view, 5> kAfterBlank = {":", ";", "!", "?", "»"};
  constexpr std::string_view kOpening = "«";
  const std::string whole = text::fromBytes(bytes);
  const std::string_view text = whole;
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i + 1);
    const bool isLetter = i > 0 && ((text[i - 1] | 0x20) >= 'a' && (text[i - 1] | 0x20) <= 'z');
    bool keep = true;
    if (text[i] == ' ') {
      for (const std::string_view mark : kAfterBlank) keep = keep && !rest.starts_with(mark);
      keep = keep && !text.substr(0, i).ends_with(kOpening);
    }
    if (!keep) {
      result += kNoBreak;
    } else if (text[i] == '\'' && isLetter) {
      result += "’";
    } else {
      result += text[i];
    }
  }
  return result;
}

std::string counted(std::size_t count, std::string_view word) {
  return groupedDigits(std::to_string(count)) + " " + std::string(word) + (count > 1 ? "s" : "");
}

std::string groupedDigits(std::string_view digits) {
  std::string text(digits);
  for (std::size_t place = text.size(); place > 3;) text.insert(place -= 3, "\u202F");
  return text;
}

std::string percentText(double share) {
  constexpr std::string_view kPercent = "\u00A0%";
  std::array<char, 32> text{};
  const double percent = 100 * share;
  if (percent == 0 || percent == 100) return std::to_string(static_cast<int>(percent)).append(kPercent);
  if (percent >= 0.001) {
    const int decimals = percent > 99.9 ? 3
                         : percent >= 1 ? 1
                                        : static_cast<int>(std::ceil(-std::log10(percent))) + 1;
    std::snprintf(text.data(), text.size(), "%.*f", decimals, percent);
    return withComma(text.data()).append(kPercent);
  }
  const int exponent = static_cast<int>(std::floor(std::log10(percent)));
  std::snprintf(text.data(), text.size(), "%.1f", percent / std::pow(10, exponent));
  return withComma(text.data()) + "\u00A0×\u00A010" + superscript(exponent) + std::string(kPercent);
}

std::string powerOfTenText(int exponent) { return "10" + superscript(exponent); }

std::string durationText(double seconds) {
  const auto whole = static_cast<long long>(std::lround(seconds));
  const auto part = [](long long count, const char* unit) { return std::to_string(count) + "\u00A0" + unit; };
  if (whole < 60) return part(whole, "s");
  if (whole < 3600) return part(whole / 60, "min") + " " + part(whole % 60, "s");
  return part(whole / 3600, "h") + " " + part(whole % 3600 / 60, "min");
}

std::string decimalText(double value, int decimals) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  std::string shortest = text.data();
  if (shortest.find('.') != std::string::npos) {
    shortest.erase(shortest.find_last_not_of('0') + 1);
    if (shortest.ends_with('.')) shortest.pop_back();
  }
  return shortest == "-0" ? "0" : shortest;
}

std::string decimalComma(double value, int decimals) { return withComma(decimalText(value, decimals)); }

}  // namespace zelvion::pages
