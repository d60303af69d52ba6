#include "cycles/cycle_report.h"

#include "arith/order.h"
#include "text/utf8.h"

namespace zelvion {

std::string cycleReport(DigitPower& power, std::string& point, std::int32_t order) {
  // Beside the start, the extreme points are kept as places in the list.
  struct Place {
    std::size_t begin = 0;
    std::size_t size = 0;
  };
  std::string list = "(" + point;
  list.reserve(static_cast<std::size_t>(order) * (point.size() + 2));
  Place last{1, point.size()};
  Place largest = last;
  Place smallest = last;
  const auto textAt = [&](const Place& place) {
    return std::string_view(list).substr(place.begin, place.size);
  };

  Orbit orbit(power, point);
  for (std::int32_t i = 1; i < order; ++i) {
    orbit.advance();
    list += ", ";
    last.begin = list.size();
    orbit.appendTo(list);
    last.size = list.size() - last.begin;
    if (isGreater(textAt(last), textAt(largest))) largest = last;
    if (isGreater(textAt(smallest), textAt(last))) smallest = last;
  }
  const std::string greatest(textAt(largest));
  const std::string least(textAt(smallest));
  point = textAt(last);
  return list.append(")")
      .append(text::kLineEnd)
      .append("Points extrêmes du cycle: ")
      .append(least)
      .append(", ")
      .append(greatest)
      .append(" nombre de chiffres maximum: ")
      .append(std::to_string(text::length(greatest)));
}

}  // namespace zelvion
