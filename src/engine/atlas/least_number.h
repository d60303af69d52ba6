#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/arith/decimal.h"
#include "engine/transform/packed_silhouette.h"

namespace zelvion::atlas {

/// The least number with given digits, up to 127 and none of them zero, in a word that orders as the numbers
/// do: of two numbers the one with fewer digits is less, then that with more ones, with more twos, and so on.
/// The word has how many digits there are in its highest byte and below it how many of the digits 1 to 8 are
/// missing to 127, seven bits each.
class LeastNumber {
 public:
  /// Adds so many digits.
  void add(std::size_t digit, std::size_t count) { word_ += count * one(digit); }

  PackedSilhouette silhouette() const {
    PackedSilhouette digits = 0;
    for (std::size_t digit = 1; digit <= 8; ++digit) {
      digits += packed(digit, kMaxPackedCount - (word_ >> shift(digit) & kMaxPackedCount));
    }
    return digits + packed(9, static_cast<std::size_t>(word_ >> shift(0)) - totalOf(digits));
  }

  Decimal decimal() const {
    std::string digits;
    for (std::size_t digit = 1; digit <= 9; ++digit) {
      digits.append(countOf(digit, silhouette()), static_cast<char>('0' + digit));
    }
    return Decimal::parse(digits);
  }

  friend auto operator<=>(const LeastNumber&, const LeastNumber&) = default;

 private:
  static constexpr unsigned shift(std::size_t digit) {
    return static_cast<unsigned>(kPackedCountBits * (8 - digit));
  }
  static constexpr std::uint64_t one(std::size_t digit) {
    return (std::uint64_t{1} << shift(0)) - (digit < 9 ? std::uint64_t{1} << shift(digit) : 0);
  }

  std::uint64_t word_ = (std::uint64_t{1} << shift(0)) - 1;
};

}  // namespace zelvion::atlas
