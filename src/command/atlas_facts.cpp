#include "command/atlas_facts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "command/typography.h"

namespace zelvion::command {
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

std::size_t AtlasFacts::fixedPoints() const {
  return static_cast<std::size_t>(std::ranges::count_if(cycles, &atlas::Cycle::isFixedPoint));
}

const atlas::Basin* AtlasFacts::basinOf(const atlas::Cycle& cycle) const {
  const auto found = std::ranges::find(basins.basins, cycle, &atlas::Basin::cycle);
  return found == basins.basins.end() ? nullptr : &*found;
}

double AtlasFacts::share(const atlas::Basin* basin) const {
  return basin == nullptr ? 0 : shareOf(basin->below.back(), basins.digits);
}

double AtlasFacts::largestShare() const {
  double largest = 0;
  for (const atlas::Basin& basin : basins.basins) largest = std::max(largest, share(&basin));
  return largest;
}

double shareOf(const Decimal& part, int digits) {
  const std::string text = part.padded(static_cast<std::size_t>(digits));
  if (text.size() > static_cast<std::size_t>(digits)) return 1;
  return std::strtod(("0." + text).c_str(), nullptr);
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

std::string proofText(const AtlasFacts& facts) {
  return "Tout nombre finit sous " + powerOfTenText(facts.rangeDigits) +
         ". Liste complète : " + counted(facts.cycles.size(), "cycle") + ", dont " +
         counted(facts.fixedPoints(), "point") + (facts.fixedPoints() > 1 ? " fixes." : " fixe.");
}

std::string countedText(const AtlasFacts& facts) {
  const std::string bound = powerOfTenText(facts.basins.digits);
  if (facts.countsAll())
    return "Les parts sont celles des nombres de 0 à " + bound + " − 1, tous comptés un à un.";
  return "Les parts et les pas sont ceux des nombres de 0 à " + bound +
         " − 1, tous comptés ; des nombres plus grands, il n'est rien dit ici.";
}

}  // namespace zelvion::command
