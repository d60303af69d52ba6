#include "cycles/cycle_report.h"

#include <algorithm>
#include <string_view>

#include "arith/order.h"
#include "text/utf8.h"

namespace zelvion {

void appendCycleReport(std::string& report, std::string& point, std::int32_t order,
                       const PointLister& listFurther) {
  constexpr std::string_view kSeparator = ", ";
  report.reserve(report.size() +
                 static_cast<std::size_t>(std::max(order, 1)) * (point.size() + kSeparator.size() + 1));
  report.append("(").append(point);

  std::string largest = point;
  std::string smallest = point;
  std::size_t lastSize = point.size();
  listFurther([&](std::string_view text) {
    report.append(kSeparator).append(text);
    if (isGreater(text, largest)) largest = text;
    if (isGreater(smallest, text)) smallest = text;
    lastSize = text.size();
  });
  point = report.substr(report.size() - lastSize);
  report.append(")").append(text::kLineEnd).append("Points extrêmes du cycle: ");
  report.append(smallest).append(", ").append(largest);
  report.append(" nombre de chiffres maximum: ").append(std::to_string(text::length(largest)));
}

}  // namespace zelvion
