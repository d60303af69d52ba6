#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/arith/fixed_sum.h"
#include "engine/transform/silhouette.h"

namespace zelvion {

/// A silhouette in one word: nine counts of at most kMaxPackedCount in seven bits each, that of the digit 1
/// lowest. Two silhouettes that fit a word are equal where their words are, and the sum of two words is the
/// silhouette of all their digits as long as the counts fit.
using PackedSilhouette = std::uint64_t;
/// The bits of a count in a word for nine of them: seven here, fourteen in the words of 128 bits that
/// searches take for longer numbers.
template <typename Word>
inline constexpr unsigned kCountBits = sizeof(Word) * 8 / 9;
inline constexpr unsigned kPackedCountBits = kCountBits<PackedSilhouette>;
inline constexpr std::size_t kMaxPackedCount = (1U << kPackedCountBits) - 1;

/// The word, or nothing if a count is above kMaxPackedCount.
std::optional<PackedSilhouette> packed(const Silhouette& silhouette);
Silhouette unpacked(PackedSilhouette word);

/// So many of one digit; zeros do not count.
template <typename Word = PackedSilhouette>
constexpr Word packed(std::size_t digit, std::size_t count) {
  return digit == 0 ? 0 : static_cast<Word>(count) << (kCountBits<Word> * (digit - 1));
}

/// How many there are of a digit from 1 to 9.
template <typename Word>
constexpr std::size_t countOf(std::size_t digit, Word word) {
  constexpr std::size_t kMask = (std::size_t{1} << kCountBits<Word>)-1;
  return static_cast<std::size_t>(word >> (kCountBits<Word> * (digit - 1))) & kMask;
}

/// How many digits other than zero there are in all, at most kMaxPackedCount.
constexpr std::size_t totalOf(PackedSilhouette word) {
  // The product holds the sums of the lowest one, two, three counts and so on, the last that of all nine.
  constexpr PackedSilhouette kOneOfEach = 0x0102040810204081;
  return static_cast<std::size_t>(word * kOneOfEach >> (8 * kPackedCountBits)) & kMaxPackedCount;
}

/// The silhouettes of all numbers of four digits.
extern const std::array<PackedSilhouette, 10'000> kPackedOfFour;

/// The silhouette of a number of up to 8, 12 or 16 digits.
inline PackedSilhouette packedOfEight(std::uint64_t number) {
  return kPackedOfFour[number / 10'000] + kPackedOfFour[number % 10'000];
}
inline PackedSilhouette packedOfTwelve(std::uint64_t number) {
  return packedOfEight(number / 10'000) + kPackedOfFour[number % 10'000];
}
inline PackedSilhouette packedOfSixteen(std::uint64_t number) {
  return packedOfEight(number / 100'000'000) + packedOfEight(number % 100'000'000);
}
template <std::size_t kLimbs>
PackedSilhouette packed(const FixedSum<kLimbs>& number) {
  PackedSilhouette word = 0;
  for (const std::uint64_t limb : number.limbs) word += packedOfSixteen(limb);
  return word;
}

}  // namespace zelvion
