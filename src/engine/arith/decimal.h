#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelvion {

/// A natural number of any size, exact. It is held in limbs of eight decimal digits, the lowest first and
/// none of the highest zero, so that it is text at once: no base is ever converted.
class Decimal {
 public:
  using Limb = std::uint32_t;
  static constexpr Limb kBase = 100'000'000;
  static constexpr std::size_t kLimbDigits = 8;

  /// Zero.
  Decimal() = default;
  explicit Decimal(std::uint64_t value);

  /// The number that `digits` writes; leading zeros are allowed and the empty text is zero. Throws Refusal at
  /// anything but digits.
  static Decimal parse(std::string_view digits);

  /// base to the power `exponent`, by squaring; 1 for the exponent 0.
  static Decimal power(const Decimal& base, std::uint64_t exponent);

  /// Becomes the number of these limbs, the lowest first, each below kBase.
  void assign(std::span<const Limb> limbs);

  bool isZero() const noexcept { return limbs_.empty(); }
  std::span<const Limb> limbs() const noexcept { return limbs_; }
  /// How many digits the text of the number has: 1 for zero.
  std::size_t digits() const noexcept;
  std::string text() const;
  /// Appends the text of the number to `out`.
  void appendTo(std::string& out) const;
  /// The text with zeros in front up to `width` digits; zero of width 0 is the empty text.
  std::string padded(std::size_t width) const;

  Decimal& operator+=(const Decimal& other);
  /// Takes `other`, which must not be greater, off this number.
  Decimal& operator-=(const Decimal& other);
  /// Divides by `divisor`, from 1 to 2^32 - 1, and returns the remainder.
  std::uint32_t divideBy(std::uint32_t divisor);

  friend Decimal operator*(const Decimal& a, const Decimal& b);
  friend bool operator==(const Decimal& a, const Decimal& b) = default;
  friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) noexcept;

 private:
  void trim() noexcept;

  std::vector<Limb> limbs_;
};

}  // namespace zelvion
