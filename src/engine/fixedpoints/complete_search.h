#pragma once

#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion {

/// The greatest order that has narcissistic numbers at all: 61 times 9^61 has fewer than 61 digits.
inline constexpr int kLastPossibleOrder = 60;

/// All numbers of exactly `order` digits that are the sum of the `order`-th powers of their digits,
/// ascending; 0 is one of order 1. `order` is from 1 to kLastPossibleOrder. The search is complete: it
/// chooses how many nines a number has, then how many eights, and so on, and leaves a branch only where no
/// number can lie.
std::vector<Decimal> narcissisticNumbers(int order);

}  // namespace zelvion
