#pragma once

#include <cstddef>
#include <cstdint>

/// The sieve of the multiset walk, for sixteen candidates at a time with vectors of AVX2.
namespace zelvion::vector_sieve {

/// How many candidates are tested together.
constexpr std::size_t kLanes = 16;

/// The weights of the digits modulo 2^16, their lower and their higher bytes apart; 0 after the ten digits.
struct DigitWeights {
  alignas(16) std::uint8_t low[16];
  alignas(16) std::uint8_t high[16];
};

/// Candidates that have a front in common, as the tails that follow it. Sums of powers are in limbs of four
/// digits, the lowest first; weights are taken modulo 2^16.
struct Tails {
  std::size_t count;
  std::size_t limbs;             ///< of a sum
  const std::uint16_t* sums;     ///< block by block of kLanes tails, and in a block limb by limb
  const std::uint16_t* weights;  ///< of the tails, up to whole blocks
};

/// Whether this processor has AVX2.
bool isSupported() noexcept;

/// Puts the places of the tails into `places`, ascending, for which the weight of the digits of the whole
/// sum, `front` and tail, less the weight of the tail and plus `offset`, is at most `width`. Returns how many
/// there are.
std::size_t sift(const Tails& tails, const std::uint16_t* front, const DigitWeights& weights,
                 std::uint16_t offset, std::uint16_t width, std::uint16_t* places) noexcept;

}  // namespace zelvion::vector_sieve
