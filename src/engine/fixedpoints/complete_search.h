#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/parallel/pieces.h"

namespace zelvion {

/// The greatest order that has narcissistic numbers at all: 61 times 9^61 has fewer than 61 digits.
inline constexpr int kLastPossibleOrder = 60;

/// The greatest power whose fixed points can be searched for.
inline constexpr int kLastSearchedPower = 200;

/// The most digits that a fixed point of the power `k` (at least 1) can have: the greatest m for which
/// m * 9^k has m digits or more.
int longestFixedPoint(int k);

/// Finds all numbers of `first` to `last` digits that are the sum of the k-th powers of their digits, 0 among
/// those of one digit; `k` and `last` are from 1 to kLastSearchedPower. The search is complete: for each
/// length it chooses how many nines a number has, then how many eights, and so on, and prunes a branch only
/// where the leading digits of its least and greatest sum, or its remainder by 9, leave no number. Whatever
/// it finds is tried once more by the definition, and a number that fails it throws std::logic_error.
///
/// Hands every number to `found`, ascending, one call at a time, as soon as all shorter ones and those of its
/// length are known; if it is stopped, those that were found until then. Returns how many digits the list is
/// complete up to: `last`, unless it is stopped. `progress` counts pieces, some or some
/// thousands of them, and the numbers found. Of a `part` it finds what lies there: all parts together are the
/// whole.
int findFixedPoints(int k, int first, int last, unsigned threads, Progress& progress,
                    const std::function<void(const Decimal&)>& found, Part part = {});

/// All numbers of exactly `order` digits that are the sum of the `order`-th powers of their digits,
/// ascending; 0 is one of order 1. `order` is from 1 to kLastPossibleOrder.
std::vector<Decimal> narcissisticNumbers(int order);

}  // namespace zelvion
