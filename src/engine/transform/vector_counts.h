#pragma once

// The silhouettes of vector_image.cpp, in vectors of AVX2: included there alone, and kept to types of the
// standard library for the reason given there.

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "engine/transform/vector_image.h"

namespace zelvion::vector_image {
namespace {

using Vector = __m256i;

/// A silhouette in vectors.
struct Counts {
  Vector low;   ///< the counts of the digits 1 to 8 in 16 bits each, twice
  Vector nine;  ///< the count of the digit 9 in 32 bits, eight times
};

Counts load(const std::uint32_t* counts) {
  // Read in halves: the caller has copied the silhouette so, and a load of 32 bytes right after two stores
  // of 16 would wait until these have reached the cache.
  const auto* halves = reinterpret_cast<const __m128i*>(counts);
  const __m128i low = _mm_packus_epi32(_mm_loadu_si128(halves), _mm_loadu_si128(halves + 1));
  return {_mm256_broadcastsi128_si256(low), _mm256_set1_epi32(static_cast<int>(counts[8]))};
}

void store(const Counts& from, std::uint32_t* counts) {
  _mm256_storeu_si256(reinterpret_cast<Vector*>(counts),
                      _mm256_cvtepu16_epi32(_mm256_castsi256_si128(from.low)));
  counts[8] = static_cast<std::uint32_t>(_mm256_extract_epi32(from.nine, 0));
}

bool fitsWord(const Counts& counts) {
  const Vector tooMuch = _mm256_set1_epi16(~127);
  return _mm256_testz_si256(_mm256_or_si256(counts.low, counts.nine), tooMuch) != 0;
}

// Nine fields of seven bits: counts are joined in pairs twice over.
std::uint64_t pack(const Counts& counts) {
  const __m128i low = _mm256_castsi256_si128(counts.low);
  const __m128i bytes = _mm_packus_epi16(low, low);
  const __m128i pairs = _mm_maddubs_epi16(_mm_set1_epi16(static_cast<short>(1 | 128 << 8)), bytes);
  const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(1 | 1 << 30));
  const auto word = static_cast<std::uint64_t>(_mm_cvtsi128_si64(fours));
  const auto nine = static_cast<std::uint64_t>(_mm256_extract_epi32(counts.nine, 0));
  return (word & 0xFFFFFFFF) | word >> 32 << 28 | nine << 56;
}

Counts unpack(std::uint64_t packed) {
  const Vector words = _mm256_set1_epi64x(static_cast<long long>(packed));
  const Vector field = _mm256_set1_epi64x(127);
  const Vector a = _mm256_and_si256(_mm256_srlv_epi64(words, _mm256_setr_epi64x(0, 7, 28, 35)), field);
  const Vector b = _mm256_and_si256(_mm256_srlv_epi64(words, _mm256_setr_epi64x(14, 21, 42, 49)), field);
  const Vector joined = _mm256_packus_epi32(a, b);
  return {_mm256_permute4x64_epi64(_mm256_packus_epi32(joined, joined), 0b10'00'10'00),
          _mm256_set1_epi32(static_cast<int>(packed >> 56))};
}

/// What each digit adds to the counters of the digits 1 and 2, 3 and 4, ... and 9: 1 for the first of a pair,
/// 16 for the second. Each half of a vector has the whole table.
struct Ones {
  alignas(32) std::int8_t bytes[kPairs][32];
};
constexpr Ones kOnes = [] {
  Ones ones{};
  for (int digit = 1; digit <= 9; ++digit) {
    for (const int half : {0, 16}) ones.bytes[(digit - 1) / 2][half + digit] = digit % 2 == 1 ? 1 : 16;
  }
  return ones;
}();

/// Counts digits that stand in bytes. Each byte of a vector here counts two digits, in four bits each, of
/// what stood in its place: as many vectors of digits as that holds may be added.
class DigitCounter {
  static_assert(kMaxVectors <= 15, "four bits count the vectors");

 public:
  void add(Vector digits) {
#pragma GCC unroll 5
    for (std::size_t p = 0; p < kPairs; ++p) {
      const Vector ones =
          _mm256_shuffle_epi8(_mm256_load_si256(reinterpret_cast<const Vector*>(kOnes.bytes[p])), digits);
      byPlace_[p] = _mm256_add_epi8(byPlace_[p], ones);
    }
  }

  Counts sum() const {
    const Vector low = _mm256_unpacklo_epi64(fours(0), fours(2));
    const Vector high = _mm256_unpackhi_epi64(fours(0), fours(2));
    const Vector nines = bothHalves(sumOf(byPlace_[4]));
    return {bothHalves(_mm256_add_epi64(low, high)),
            _mm256_add_epi32(_mm256_shuffle_epi32(nines, 0x00), _mm256_shuffle_epi32(nines, 0xAA))};
  }

 private:
  // The sums of the bytes' lower halves, in four lanes of 64 bits.
  static Vector sumOf(Vector bytes) {
    return _mm256_sad_epu8(_mm256_and_si256(bytes, _mm256_set1_epi8(15)), _mm256_setzero_si256());
  }

  static Vector bothHalves(Vector v) { return _mm256_add_epi64(v, _mm256_permute2x128_si256(v, v, 0x01)); }

  // Four counts of 16 bits, in four lanes that are still to be added up.
  Vector fours(std::size_t p) const {
    const auto upper = [](Vector bytes) { return sumOf(_mm256_srli_epi16(bytes, 4)); };
    return _mm256_or_si256(_mm256_or_si256(sumOf(byPlace_[p]), _mm256_slli_epi64(upper(byPlace_[p]), 16)),
                           _mm256_or_si256(_mm256_slli_epi64(sumOf(byPlace_[p + 1]), 32),
                                           _mm256_slli_epi64(upper(byPlace_[p + 1]), 48)));
  }

  Vector byPlace_[kPairs] = {};
};

}  // namespace
}  // namespace zelvion::vector_image
