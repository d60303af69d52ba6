#include "form/cycles/cycle_report.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "engine/arith/order.h"
#include "engine/text/utf8.h"
#include "engine/transform/transformation.h"

namespace zelvion {
namespace {

/// The length and the first five digits of a number, packed so that leads compare as the numbers do where
/// they differ. Zero for short texts.
std::uint64_t leadOf(std::string_view digits) {
  std::uint64_t word = 0;
  if (digits.size() < sizeof word) return 0;
  std::memcpy(&word, digits.data(), sizeof word);
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  return std::uint64_t{digits.size()} << 40 | word >> 24;
}

}  // namespace

void endCycleReport(std::string& report, std::size_t begin, std::size_t size) {
  const std::string_view list = report;
  std::string_view largest = list.substr(begin, size);
  std::string_view smallest = largest;
  std::uint64_t leadOfLargest = leadOf(largest);
  std::uint64_t leadOfSmallest = leadOfLargest;
  for (std::size_t end = begin + size; end < list.size();) {
    begin = end + kListSeparator.size();
    end = std::min(list.find(kListSeparator.front(), begin), list.size());
    const std::string_view point = list.substr(begin, end - begin);
    const std::uint64_t lead = leadOf(point);
    // The leads alone show for nearly every point that it lies between the extremes so far.
    if (leadOfSmallest < lead && lead < leadOfLargest) continue;
    if (isGreater(point, largest)) largest = point;
    if (isGreater(smallest, point)) smallest = point;
    leadOfLargest = leadOf(largest);
    leadOfSmallest = leadOf(smallest);
  }
  const std::string extremes = std::string(smallest).append(kListSeparator).append(largest) +
                               " nombre de chiffres maximum: " + std::to_string(text::length(largest));
  report.append(")").append(text::kLineEnd).append("Points extrêmes du cycle: ").append(extremes);
}

}  // namespace zelvion
