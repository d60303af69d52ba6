#include "engine/atlas/rarity.h"

#include <bit>
#include <random>

#include "engine/transform/power_multiples.h"

namespace zelvion::atlas {
namespace {

constexpr std::uint64_t kDraws = 500;
// The weights are constant from kLevel / 10 times the mean of a count.
constexpr std::uint64_t kLevel = 13;
constexpr unsigned kFractionBits = 8;

using Counts = std::array<std::uint64_t, 10>;

Counts countsOf(const Decimal& number, int width) {
  Counts counts{};
  for (const char c : number.padded(static_cast<std::size_t>(width)))
    ++counts[static_cast<std::size_t>(c - '0')];
  return counts;
}

// The base-2 logarithm of numerator / denominator, which is from 1 to 2^31, in units of 2^-kFractionBits,
// truncated. Squaring doubles a logarithm, so its bits come out one by one.
unsigned logarithm(std::uint64_t numerator, std::uint64_t denominator) {
  constexpr unsigned kOne = 31;
  std::uint64_t x = (numerator << kOne) / denominator;
  unsigned result = static_cast<unsigned>(std::bit_width(x)) - 1 - kOne;
  x >>= result;
  for (unsigned bit = 0; bit < kFractionBits; ++bit) {
    x = x * x >> kOne;
    const unsigned over = x >> (kOne + 1) != 0 ? 1 : 0;
    x >>= over;
    result = 2 * result + over;
  }
  return result;
}

}  // namespace

Rarity Rarity::of(std::int32_t k) {
  const int digits = rangeDigits(k);
  const std::array<Decimal, 10> powers = digitPowers(k);
  Counts totals{};
  std::mt19937 generator;  // the standard fixes its sequence
  for (std::uint64_t draw = 0; draw < kDraws; ++draw) {
    Counts counts{};
    for (int i = 0; i < digits; ++i) ++counts[generator() % 10];
    for (int step = 0; step < 2; ++step) {
      Decimal image;
      for (std::size_t digit = 0; digit < 10; ++digit) image += powers[digit] * Decimal(counts[digit]);
      counts = countsOf(image, digits);
    }
    for (std::size_t digit = 0; digit < 10; ++digit) totals[digit] += counts[digit];
  }
  Rarity rarity;
  for (std::size_t digit = 0; digit < 10; ++digit) {
    // From a count to the next one the likelihood grows by the factor mean / count.
    auto& weights = rarity.weights[digit];
    for (std::size_t count = weights.size() - 1; count > 0; --count) {
      const std::uint64_t numerator = kLevel * totals[digit], denominator = 10 * kDraws * count;
      const unsigned rise = numerator > denominator ? logarithm(numerator, denominator) : 0;
      weights[count - 1] = static_cast<Weight>(weights[count] + rise);
    }
  }
  return rarity;
}

}  // namespace zelvion::atlas
