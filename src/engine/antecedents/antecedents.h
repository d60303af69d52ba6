#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>

#include "engine/arith/decimal.h"
#include "engine/transform/silhouette.h"

namespace zelvion {

/// Finds the antecedents of `number`, the numbers whose image it is, that have at most `digits` digits: hands
/// the silhouette of each of their multisets to `found`, in no order. `k` and `digits` are from 1 to
/// atlas::kMaxPower and atlas::kMaxRangeDigits. It chooses how many nines there are, then how many eights,
/// and so on, and prunes where the digits to come cannot make up the rest. Returns early when `stop` is set.
void findAntecedents(std::int32_t k, std::size_t digits, const Decimal& number, const std::atomic<bool>& stop,
                     const std::function<void(const Silhouette&)>& found);

/// How many numbers of at most `digits` digits have this silhouette, which has no more.
Decimal arrangements(const Silhouette& silhouette, std::size_t digits);

/// Whether the least number with the silhouette `a` is less than that with `b`.
bool hasLesserNumber(const Silhouette& a, const Silhouette& b);

/// The least antecedent of a number: that of N ones at the worst.
struct LeastAntecedent {
  std::optional<Silhouette> silhouette;  ///< its digits ascend; nothing if it was not found
  std::uint32_t excluded = 0;            ///< there is none with so many digits or fewer
};

/// Looks for the least antecedent of `number` among the numbers of at most `most` digits (at most 10^6); it
/// has no zeros and hence as few digits as can be. Branches are pruned by the least number of digits that
/// make up the rest, which is the rest divided by the greatest power left. Gives up after a fixed amount of
/// work, seconds at most, which random numbers need from about k = 25 on, and when `stop` is set. `k` is from
/// 1 to atlas::kMaxPower.
LeastAntecedent leastAntecedent(std::int32_t k, const Decimal& number, std::uint32_t most,
                                const std::atomic<bool>& stop);

}  // namespace zelvion
