#include "engine/atlas/range.h"

#include <cassert>
#include <cstdint>

#include "engine/arith/decimal.h"

namespace zelvion::atlas {

int rangeDigits(std::int32_t k) {
  assert(k >= 1 && k <= kMaxPower);
  const Decimal nine = Decimal::power(Decimal(9), static_cast<std::uint64_t>(k));
  int digits = 1;
  // A number is below 10^d where it has at most d digits.
  while ((nine * Decimal(static_cast<std::uint64_t>(digits))).digits() > static_cast<std::size_t>(digits)) {
    ++digits;
  }
  return digits;
}

}  // namespace zelvion::atlas
