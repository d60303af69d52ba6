// Compiled for AVX2 where the processor may have it, and called only where it has; see vector_image.cpp.
#include "engine/fixedpoints/vector_sieve.h"

#if defined(ZELVION_AVX2)

#include "engine/arith/vector_digits.h"

namespace zelvion::vector_sieve {
namespace {

using Vector = __m256i;

Vector load(const std::uint16_t* from) { return _mm256_loadu_si256(reinterpret_cast<const Vector*>(from)); }

/// Adds up the weights of digits that stand in bytes, two for each lane.
class WeightSum {
 public:
  explicit WeightSum(const DigitWeights& weights)
      : lowOf_(_mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(weights.low)))),
        highOf_(_mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(weights.high)))) {
  }

  void clear() { low_ = high_ = _mm256_setzero_si256(); }
  void add(Vector digits) {
    const Vector low = _mm256_shuffle_epi8(lowOf_, digits);
    low_ = _mm256_add_epi16(low_, _mm256_maddubs_epi16(low, _mm256_set1_epi8(1)));
    high_ = _mm256_add_epi8(high_, _mm256_shuffle_epi8(highOf_, digits));
  }
  Vector sum() const {
    const Vector high = _mm256_add_epi8(high_, _mm256_slli_epi16(high_, 8));
    return _mm256_add_epi16(low_, _mm256_and_si256(high, _mm256_set1_epi16(static_cast<short>(0xFF00))));
  }

 private:
  Vector lowOf_;   ///< the lower bytes of the weights of the digits
  Vector highOf_;  ///< the higher ones
  Vector low_{};   ///< sums in 16 bits
  Vector high_{};  ///< sums in bytes, modulo 256, of the two digits of a lane apart
};

// A bit for each lane that is not zero.
std::uint32_t bitsOf(Vector lanes) {
  const __m128i bytes = _mm_packs_epi16(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes));
}

}  // namespace

bool isSupported() noexcept { return __builtin_cpu_supports("avx2") != 0; }

std::size_t sift(const Tails& tails, const std::uint16_t* front, const DigitWeights& weights,
                 std::uint16_t offset, std::uint16_t width, std::uint16_t* places) noexcept {
  const Vector greatest = _mm256_set1_epi16(9'999);
  const Vector base = _mm256_set1_epi16(10'000);
  const Vector offsets = _mm256_set1_epi16(static_cast<short>(offset));
  const Vector widths = _mm256_set1_epi16(static_cast<short>(width));
  WeightSum weight(weights);
  const std::uint16_t* sums = tails.sums;
  std::size_t found = 0;
  for (std::size_t tail = 0; tail < tails.count; tail += kLanes) {
    weight.clear();
    Vector carry = _mm256_setzero_si256();  // -1 or 0
    for (std::size_t i = 0; i < tails.limbs; ++i, sums += kLanes) {
      Vector limb = _mm256_add_epi16(load(sums), _mm256_set1_epi16(static_cast<short>(front[i])));
      limb = _mm256_sub_epi16(limb, carry);
      carry = _mm256_cmpgt_epi16(limb, greatest);
      const VectorDigits digits = digitsOf(_mm256_sub_epi16(limb, _mm256_and_si256(carry, base)));
      weight.add(digits.upper);
      weight.add(digits.lower);
    }
    const Vector off = _mm256_add_epi16(_mm256_sub_epi16(weight.sum(), load(tails.weights + tail)), offsets);
    std::uint32_t kept = bitsOf(_mm256_cmpeq_epi16(_mm256_min_epu16(off, widths), off));
    if (tails.count - tail < kLanes) kept &= (1U << (tails.count - tail)) - 1;
    for (; kept != 0; kept &= kept - 1) {
      places[found++] = static_cast<std::uint16_t>(tail + static_cast<std::size_t>(__builtin_ctz(kept)));
    }
  }
  return found;
}

}  // namespace zelvion::vector_sieve

#else

namespace zelvion::vector_sieve {

bool isSupported() noexcept { return false; }
std::size_t sift(const Tails&, const std::uint16_t*, const DigitWeights&, std::uint16_t, std::uint16_t,
                 std::uint16_t*) noexcept {
  return 0;
}

}  // namespace zelvion::vector_sieve

#endif
