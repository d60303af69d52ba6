#pragma once

// For files that are compiled for AVX2.

#include <immintrin.h>

namespace zelvion {

/// A 16-bit factor that the compiler cannot see to be constant: it would turn the products into shifts and
/// sums, which are slower.
static inline __m256i factor(int value) {
  __m256i factors = _mm256_set1_epi16(static_cast<short>(value));
  asm("" : "+x"(factors));
  return factors;
}

/// The digits of limbs of four digits, each in 16 bits: the upper two of a limb as two bytes, the higher
/// digit first, and the lower two likewise. All quotients are taken of the limb itself, so that none waits
/// for another.
struct VectorDigits {
  __m256i upper;
  __m256i lower;
};
static inline VectorDigits digitsOf(__m256i limbs) {
  const __m256i tens = _mm256_srli_epi16(_mm256_mulhi_epu16(limbs, factor(52429)), 3);      // 2^19 / 10
  const __m256i hundreds = _mm256_srli_epi16(_mm256_mulhi_epu16(limbs, factor(5243)), 3);   // 2^19 / 100
  const __m256i thousands = _mm256_srli_epi16(_mm256_mulhi_epu16(limbs, factor(8389)), 7);  // 2^23 / 1000
  // thousands + 256 * (hundreds - 10 * thousands)
  const __m256i upper =
      _mm256_sub_epi16(_mm256_slli_epi16(hundreds, 8), _mm256_mullo_epi16(thousands, factor(2559)));
  // tens - 10 * hundreds + 256 * (limb - 10 * tens)
  const __m256i lower = _mm256_sub_epi16(
      _mm256_sub_epi16(_mm256_slli_epi16(limbs, 8), _mm256_mullo_epi16(hundreds, factor(10))),
      _mm256_mullo_epi16(tens, factor(2559)));
  return {upper, lower};
}

}  // namespace zelvion
