#pragma once

#include <cstdint>

namespace zelvion::atlas {

/// The greatest power that the atlas takes; the numbers to look at then have kMaxRangeDigits digits, which
/// fit the seven bits of a packed count.
inline constexpr std::int32_t kMaxPower = 130;
inline constexpr int kMaxRangeDigits = 127;

/// d: the least number of digits with d * 9^k < 10^d, worked out exactly. `k` is from 1 to kMaxPower.
///
/// The numbers below 10^d are all there is to look at. Their images are at most d * 9^k, so that T sends them
/// among themselves, and every orbit reaches them:
/// - A number of m > d + 1 digits has an image of at most m * 9^k < m/d * 10^d < 10^(m - 1): a shorter one.
/// - A number of d + 1 digits has an image of at most (d + 1) * 9^k < 2 * 10^d. One that is not below 10^d
///   has d + 1 digits, the first a 1, and its image is at most 1 + d * 9^k <= 10^d. At worst that is 10^d,
///   whose image is 1.
/// T depends on the digits alone, and zeros in front change nothing: the numbers below 10^d fall into the
/// multisets of exactly d digits. A cycle of T is a cycle of multisets and the other way round, since each
/// point is the image of the multiset before it.
int rangeDigits(std::int32_t k);

}  // namespace zelvion::atlas
