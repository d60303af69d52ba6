#include "data_files.h"

#include <algorithm>
#include <functional>

#include "engine/fixedpoints/complete_search.h"

namespace zelvion {
namespace {

constexpr std::size_t kLineWidth = 80;

// The silhouettes of `digits` non-zero digits in ascending order, each closed by ";".
std::string silhouettes(int digits) {
  int last = 1;
  for (int i = 0; i < digits; ++i) last *= 10;
  std::string list;
  for (int number = last / 10; number < last; ++number) {
    const std::string text = std::to_string(number);
    if (text.back() > '0' && std::ranges::is_sorted(text, std::greater())) list += text + ";";
  }
  return list + "\n";
}

// The narcissistic numbers of some orders, an order a line or more.
std::string narcissisticList(int first, int last) {
  std::string list =
      "Nombres de Amstrong, ou nombres narcissiques parfaits, de k = " + std::to_string(first) +
      " à k = " + std::to_string(last) + "\n\n";
  for (int order = first; order <= last; ++order) {
    std::string line = "k = " + std::to_string(order) + " : ";
    const std::string indent(line.size(), ' ');
    std::string separator;
    for (const Decimal& number : narcissisticNumbers(order)) {
      const std::string text = number.text();
      line += separator;
      if (!separator.empty() && line.size() + text.size() > kLineWidth) {
        list += line.substr(0, line.size() - 1) + "\n";
        line = indent;
      }
      line += text;
      separator = ", ";
    }
    list += line + (separator.empty() ? "aucun" : "") + "\n";
  }
  return list;
}

}  // namespace

std::map<std::string, std::string> dataFiles() {
  return {{"Listenbre2.txt", silhouettes(2)},          {"Listenbre3.txt", silhouettes(3)},
          {"Listenbre4.txt", silhouettes(4)},          {"amstrong.txt", narcissisticList(1, 23)},
          {"amstrong2.txt", narcissisticList(24, 36)}, {"amstrong3.txt", narcissisticList(37, 39)}};
}

}  // namespace zelvion
