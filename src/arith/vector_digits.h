#pragma once

// For files that are compiled for AVX2.

#include <immintrin.h>

namespace zelvion {

/// A factor in 16 bits for products: the compiler does not see that it is constant, and leaves them products
/// instead of making shifts and sums of them, which take longer.
static inline __m256i factor(short value) {
  __m256i factors = _mm256_set1_epi16(value);
  asm("" : "+x"(factors));
  return factors;
}

/// Limbs of four digits, each in 16 bits, as two numbers below 100.
struct VectorHalves {
  __m256i hundreds;
  __m256i rest;
};
static inline VectorHalves halvesOf(__m256i limbs) {
  const __m256i reciprocal = _mm256_set1_epi16(5243);  // 2^19 / 100
  const __m256i hundreds = _mm256_srli_epi16(_mm256_mulhi_epu16(limbs, reciprocal), 3);
  return {hundreds, _mm256_sub_epi16(limbs, _mm256_mullo_epi16(hundreds, factor(100)))};
}

/// The two digits of numbers below 100, each in 16 bits, as two bytes, the tens first.
static inline __m256i digitsOf(__m256i numbers) {
  const __m256i tens = _mm256_mulhi_epu16(numbers, _mm256_set1_epi16(6554));  // 2^16 / 10
  // tens + 256 * (number - 10 * tens)
  return _mm256_sub_epi16(_mm256_slli_epi16(numbers, 8), _mm256_mullo_epi16(tens, factor(2559)));
}

}  // namespace zelvion
