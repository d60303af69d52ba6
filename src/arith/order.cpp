#include "arith/order.h"

#include <algorithm>

#include "arith/decimal.h"

namespace zelvion {

std::strong_ordering compareDigits(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() <=> b.size();
  const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin());
  if (inA == a.end()) return std::strong_ordering::equal;
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (!std::all_of(a.begin(), inA + 1, isDigit) || !isDigit(*inB)) {
    const auto scanned = static_cast<std::size_t>(inA - a.begin()) + 1;
    requireDigits(a.substr(0, scanned));
    requireDigits(b.substr(0, scanned));
  }
  return *inA <=> *inB;
}

}  // namespace zelvion
