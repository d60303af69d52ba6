#include "engine/arith/order.h"

#include <algorithm>

#include "engine/text/number.h"
#include "engine/text/utf8.h"

namespace zelvion {

std::strong_ordering compareDigits(std::string_view a, std::string_view b) {
  const auto byLength = text::length(a) <=> text::length(b);
  if (byLength != 0 || a == b) return byLength;
  const auto scanned = std::ranges::mismatch(a, b).in1 - a.begin() + 1;
  for (const std::string_view text : {a, b}) {
    const auto isOther = [](char c) { return c < '0' || c > '9'; };
    if (std::any_of(text.begin(), text.begin() + scanned, isOther)) text::requireDigits(text);
  }
  return a <=> b;
}

bool isGreater(std::string_view a, std::string_view b) {
  const bool negativeA = a.starts_with('-');
  const bool negativeB = b.starts_with('-');
  if (negativeA && negativeB) return isGreater(b.substr(1), a.substr(1));
  if (negativeA || negativeB) return negativeB;
  return compareDigits(a, b) > 0;
}

}  // namespace zelvion
