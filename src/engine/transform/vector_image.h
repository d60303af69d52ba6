#pragma once

#include <cstddef>
#include <cstdint>

/// Images of numbers of up to a few hundred digits, computed in AVX2 vectors from end to end. A vector holds
/// eight limbs of four digits; products by the powers, carries and digit counts all stay in vectors, which
/// takes at most half the time of the same in words.
namespace zelvion::vector_image {

constexpr std::size_t kVectorDigits = 32;
constexpr std::size_t kVectorLimbs = 4;  // limbs of eight digits
constexpr std::size_t kMaxVectors = 13;
constexpr std::size_t kSeparatorSize = 2;
constexpr std::size_t kMaxLimbs = kMaxVectors * kVectorLimbs;
/// The most digits that a silhouette may have in all: the estimates of the carries are exact up to there.
constexpr std::uint32_t kMaxCount = kMaxVectors * kVectorDigits;

/// Eight limbs of four digits, the lowest first, of two powers: one is in the even places, the other in the
/// odd ones.
struct alignas(32) RowPair {
  std::int16_t limbs[16];
};
/// A vector of the image takes five pairs: the powers of 1 and 2, of 3 and 4, ... and of 9 and nothing.
constexpr std::size_t kPairs = 5;

/// Whether this processor has AVX2.
bool isSupported() noexcept;

/// Puts the image of the silhouette `counts` into `limbs`, four limbs of eight digits for each vector, and
/// its own silhouette into `counts`. `rows` has `vectors` times kPairs pairs, from 1 to kMaxVectors vectors.
/// Returns false, and `counts` as they were, where a carry runs through a limb of nines.
bool apply(const RowPair* rows, std::size_t vectors, std::uint32_t* counts, std::uint32_t* limbs) noexcept;

/// Goes from the silhouette `counts` to the silhouettes of up to `steps` images, one after another, which go
/// into `packed` with seven bits for each count, and the last one into `counts`. Returns how many there are:
/// it stops before a carry through a limb of nines and before a count above 127.
std::size_t iterate(const RowPair* rows, std::size_t vectors, std::uint32_t* counts, std::uint64_t* packed,
                    std::size_t steps) noexcept;

/// Writes the images of `count` silhouettes in words as texts in a row that ends at `end`, each after the
/// kSeparatorSize characters of `separator`, and returns where the first one begins. The last one is written
/// first, so that the zeros in front of a text lie where the one before it goes: there has to be room for the
/// separator and all digits of the vectors for each. Returns null where an image is zero or a carry runs
/// through a limb of nines; the buffer is scratch then. An image is never too long: 127 powers of each digit
/// add up to less than kMaxCount of the digit 9, or for k = 1 and 2 to a few digits.
char* write(const RowPair* rows, std::size_t vectors, const std::uint64_t* packed, std::size_t count,
            const char* separator, char* end) noexcept;

}  // namespace zelvion::vector_image
