#include "cycles/cycle_report.h"

#include <algorithm>
#include <optional>

#include "arith/order.h"
#include "text/utf8.h"

namespace zelvion {

void appendCycleReport(std::string& report, DigitPower& power, std::string& point, std::int32_t order) {
  constexpr std::size_t kSeparator = 2;
  report.reserve(report.size() +
                 static_cast<std::size_t>(std::max(order, 1)) * (point.size() + kSeparator + 1));
  report.append("(").append(point);

  // The points that are numbers are compared as such; their extremes meet the start, which may be any text,
  // at the end.
  std::string largest = point;
  std::string smallest = point;
  const auto include = [&](const std::string& text) {
    if (isGreater(text, largest)) largest = text;
    if (isGreater(smallest, text)) smallest = text;
  };
  std::optional<Decimal> largestNumber;
  std::optional<Decimal> smallestNumber;
  Orbit orbit(power, point);
  for (std::int32_t i = 1; i < order; ++i) {
    orbit.advance();
    report.append(", ");
    orbit.appendTo(report);
    if (!orbit.isNumber()) {
      include(orbit.text());
      continue;
    }
    if (!largestNumber || orbit.number() > *largestNumber) largestNumber = orbit.number();
    if (!smallestNumber || orbit.number() < *smallestNumber) smallestNumber = orbit.number();
  }
  if (largestNumber) include(largestNumber->text());
  if (smallestNumber) include(smallestNumber->text());
  point = orbit.text();
  report.append(")").append(text::kLineEnd).append("Points extrêmes du cycle: ");
  report.append(smallest).append(", ").append(largest);
  report.append(" nombre de chiffres maximum: ").append(std::to_string(text::length(largest)));
}

}  // namespace zelvion
