// Compiled for AVX2, and called only on a processor that has it. Only types of the standard library are used
// here: a function of its own that is not inlined would be merged with the one in the rest of the program,
// and run on any processor.
#include "engine/transform/vector_image.h"

#if defined(ZELVION_AVX2)

#include <immintrin.h>

#include <cassert>
#include <utility>

#include "engine/arith/vector_digits.h"
#include "engine/transform/vector_counts.h"

namespace zelvion::vector_image {
namespace {

constexpr int kLimbBase = 10'000;

// The greatest sum of a limb: of kMaxCount powers, or of 127 of each digit, where the limb of 1 is 1 or 0.
constexpr int kMaxSum = 8 * 127 * (kLimbBase - 1) + 127;
static_assert(kMaxCount * (kLimbBase - 1) < kMaxSum && kMaxSum < 1'024 * kLimbBase);

// A call would spill the vectors from their registers.
#define ZELVION_INLINE [[gnu::always_inline]] inline

// The lanes of `vector` go one place up; the highest of `below` comes in.
Vector shiftUp(Vector vector, Vector below) {
  const Vector halfBelow = _mm256_permute2x128_si256(below, vector, 0x21);
  return _mm256_alignr_epi8(vector, halfBelow, 12);
}

/// The limbs of an image, eight in a vector.
template <std::size_t kVectors>
struct Limbs {
  Vector of[kVectors];

  /// The sums of the products of counts and powers, with carries propagated twice. Returns false where the
  /// second carry reaches a limb of 9,999, which would need a third.
  ZELVION_INLINE bool sum(const RowPair* rows, const Counts& counts) {
    const Vector pairs[kPairs] = {
        _mm256_shuffle_epi32(counts.low, 0x00), _mm256_shuffle_epi32(counts.low, 0x55),
        _mm256_shuffle_epi32(counts.low, 0xAA), _mm256_shuffle_epi32(counts.low, 0xFF), counts.nine};
    const Vector base = _mm256_set1_epi32(kLimbBase);
    Vector below = _mm256_setzero_si256();
#pragma GCC unroll 13
    for (std::size_t v = 0; v < kVectors; ++v) {
      Vector products[kPairs];
#pragma GCC unroll 5
      for (std::size_t p = 0; p < kPairs; ++p) {
        const auto* row = reinterpret_cast<const Vector*>(rows[kPairs * v + p].limbs);
        products[p] = _mm256_madd_epi16(pairs[p], _mm256_load_si256(row));
      }
      const Vector sum = _mm256_add_epi32(_mm256_add_epi32(_mm256_add_epi32(products[0], products[1]),
                                                           _mm256_add_epi32(products[2], products[3])),
                                          products[4]);
      // A sum s is at most kMaxSum. (s + 1/2) / 10,000 is at least 1/20,000 away from an integer; the float
      // 1e-4 lowers it by at most 1/38,000, and rounding moves what is below 1,024 by at most 1/32,768. So it
      // never crosses an integer, and the quotient is exact.
      const Vector quotient = _mm256_cvttps_epi32(
          _mm256_fmadd_ps(_mm256_cvtepi32_ps(sum), _mm256_set1_ps(1e-4F), _mm256_set1_ps(0.5e-4F)));
      of[v] = _mm256_add_epi32(_mm256_sub_epi32(sum, _mm256_madd_epi16(quotient, base)),
                               shiftUp(quotient, below));
      below = quotient;
    }
    const Vector greatest = _mm256_set1_epi32(kLimbBase - 1);
    below = _mm256_setzero_si256();
    Vector over = _mm256_setzero_si256();
#pragma GCC unroll 13
    for (std::size_t v = 0; v < kVectors; ++v) {
      const Vector carry = _mm256_cmpgt_epi32(of[v], greatest);  // -1 or 0
      of[v] = _mm256_sub_epi32(_mm256_sub_epi32(of[v], _mm256_and_si256(carry, base)), shiftUp(carry, below));
      over = _mm256_or_si256(over, _mm256_cmpgt_epi32(of[v], greatest));
      below = carry;
    }
    return _mm256_testz_si256(over, over) != 0;
  }

  /// The limbs of the vectors v and v + 1, zeros where there is none, in 16 bits each: the lower four of
  /// each, then the higher four.
  Vector packed(std::size_t v) const {
    return _mm256_packus_epi32(of[v], v + 1 < kVectors ? of[v + 1] : _mm256_setzero_si256());
  }

  void store(std::uint32_t* limbs) const {
#pragma GCC unroll 13
    for (std::size_t v = 0; v < kVectors; v += 2) {
      const Vector inOrder = _mm256_permute4x64_epi64(packed(v), 0b11'01'10'00);
      const Vector joined = _mm256_madd_epi16(inOrder, _mm256_set1_epi32(1 | kLimbBase << 16));
      if (v + 1 < kVectors) {
        _mm256_storeu_si256(reinterpret_cast<Vector*>(limbs + kVectorLimbs * v), joined);
      } else {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(limbs + kVectorLimbs * v),
                         _mm256_castsi256_si128(joined));
      }
    }
  }

  ZELVION_INLINE Counts count() const;
  /// Writes all the digits, the highest first, up to `end`, and returns how many there are without zeros in
  /// front.
  ZELVION_INLINE std::size_t write(char* end) const;
};

// The digits of limbs in 32 bits each, those of a limb in its place.
Vector digitsOfWide(Vector limbs) {
  const VectorDigits digits = digitsOf(limbs);
  return _mm256_or_si256(digits.upper, _mm256_slli_epi32(digits.lower, 16));
}

template <std::size_t kVectors>
ZELVION_INLINE Counts Limbs<kVectors>::count() const {
  DigitCounter counter;
#pragma GCC unroll 13
  for (std::size_t v = 0; v < kVectors; v += 2) {
    if (v + 1 < kVectors) {
      const VectorDigits digits = digitsOf(packed(v));
      counter.add(digits.upper);
      counter.add(digits.lower);
    } else {
      counter.add(digitsOfWide(of[v]));
    }
  }
  return counter.sum();
}

template <std::size_t kVectors>
ZELVION_INLINE std::size_t Limbs<kVectors>::write(char* end) const {
  std::size_t count = 0;
  const auto writeVector = [&](std::size_t v, Vector digits) {
    const Vector zero = _mm256_set1_epi8('0');
    const Vector backwards = _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0);
    const Vector shown = _mm256_or_si256(_mm256_permutevar8x32_epi32(digits, backwards), zero);
    _mm256_storeu_si256(reinterpret_cast<Vector*>(end - kVectorDigits * (v + 1)), shown);
    const auto zeros = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(shown, zero)));
    if (~zeros != 0) count = kVectorDigits * (v + 1) - static_cast<std::size_t>(__builtin_ctz(~zeros));
  };
#pragma GCC unroll 13
  for (std::size_t v = 0; v < kVectors; v += 2) {
    const VectorDigits digits = digitsOf(packed(v));
    writeVector(v, _mm256_unpacklo_epi16(digits.upper, digits.lower));
    if (v + 1 < kVectors) writeVector(v + 1, _mm256_unpackhi_epi16(digits.upper, digits.lower));
  }
  return count;
}

template <std::size_t kVectors>
bool applyTo(const RowPair* rows, std::uint32_t* counts, std::uint32_t* limbs) {
  Limbs<kVectors> image{};
  if (!image.sum(rows, load(counts))) return false;
  image.store(limbs);
  store(image.count(), counts);
  return true;
}

template <std::size_t kVectors>
std::size_t iterateFrom(const RowPair* rows, std::uint32_t* counts, std::uint64_t* packed,
                        std::size_t steps) {
  Counts current = load(counts);
  std::size_t done = 0;
  for (; done < steps; ++done) {
    Limbs<kVectors> image{};
    if (!image.sum(rows, current)) break;
    const Counts next = image.count();
    if (!fitsWord(next)) break;
    packed[done] = pack(next);
    current = next;
  }
  store(current, counts);
  return done;
}

template <std::size_t kVectors>
char* writeBackwards(const RowPair* rows, const std::uint64_t* packed, std::size_t count,
                     const char* separator, char* end) {
  while (count-- > 0) {
    const Counts counts = unpack(packed[count]);
    Limbs<kVectors> image{};
    if (!image.sum(rows, counts)) return nullptr;
    const std::size_t digits = image.write(end);
    if (digits == 0) return nullptr;
    end -= digits + kSeparatorSize;
    __builtin_memcpy(end, separator, kSeparatorSize);
  }
  return end;
}

/// The functions for 1, 2, ... vectors, in tables: each number of vectors has its own, which keeps them all
/// in registers as far as they go.
template <std::size_t... kIndices>
struct Functions {
  static constexpr decltype(&applyTo<1>) kApply[] = {applyTo<kIndices + 1>...};
  static constexpr decltype(&writeBackwards<1>) kWrite[] = {writeBackwards<kIndices + 1>...};
  static constexpr decltype(&iterateFrom<1>) kIterate[] = {iterateFrom<kIndices + 1>...};
};
template <std::size_t... kIndices>
Functions<kIndices...> functionsFor(std::index_sequence<kIndices...>);
using AllFunctions = decltype(functionsFor(std::make_index_sequence<kMaxVectors>()));

}  // namespace

bool isSupported() noexcept {
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
}

bool apply(const RowPair* rows, std::size_t vectors, std::uint32_t* counts, std::uint32_t* limbs) noexcept {
  assert(vectors >= 1 && vectors <= kMaxVectors);
  return AllFunctions::kApply[vectors - 1](rows, counts, limbs);
}

std::size_t iterate(const RowPair* rows, std::size_t vectors, std::uint32_t* counts, std::uint64_t* packed,
                    std::size_t steps) noexcept {
  assert(vectors >= 1 && vectors <= kMaxVectors);
  return AllFunctions::kIterate[vectors - 1](rows, counts, packed, steps);
}

char* write(const RowPair* rows, std::size_t vectors, const std::uint64_t* packed, std::size_t count,
            const char* separator, char* end) noexcept {
  assert(vectors >= 1 && vectors <= kMaxVectors);
  return AllFunctions::kWrite[vectors - 1](rows, packed, count, separator, end);
}

}  // namespace zelvion::vector_image

#else

namespace zelvion::vector_image {

bool isSupported() noexcept { return false; }
bool apply(const RowPair*, std::size_t, std::uint32_t*, std::uint32_t*) noexcept { return false; }
std::size_t iterate(const RowPair*, std::size_t, std::uint32_t*, std::uint64_t*, std::size_t) noexcept {
  return 0;
}
char* write(const RowPair*, std::size_t, const std::uint64_t*, std::size_t, const char*, char*) noexcept {
  return nullptr;
}

}  // namespace zelvion::vector_image

#endif
