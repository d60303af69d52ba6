#include "engine/arith/order.h"

#include <algorithm>

#include "engine/arith/decimal.h"

namespace zelvion {

std::strong_ordering compareDigits(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() <=> b.size();
  const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin());
  if (inA == a.end()) return std::strong_ordering::equal;
  const auto scanned = static_cast<std::size_t>(inA - a.begin()) + 1;
  requireDigits(a.substr(0, scanned));
  requireDigits(b.substr(0, scanned));
  return *inA <=> *inB;
}

bool isGreater(std::string_view a, std::string_view b) {
  const bool negativeA = a.starts_with('-');
  const bool negativeB = b.starts_with('-');
  if (negativeA && negativeB) return isGreater(b.substr(1), a.substr(1));
  if (negativeA || negativeB) return negativeB;
  return compareDigits(a, b) > 0;
}

}  // namespace zelvion
