#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "engine/transform/transformation.h"

namespace zelvion {

/// How sentences call the text of k.
inline constexpr std::string_view kPowerName = "La puissance k";

/// The digit-power transformation for one press of a button: k is read from its text once, when the first
/// digit is processed, and its powers are computed once. For the four zero texts it is never read.
class DigitPower {
 public:
  /// `kText` is k as typed.
  explicit DigitPower(std::string kText) : kText_(std::move(kText)) {}
  explicit DigitPower(std::int32_t k) : k_(k) {}

  /// k. Throws Refusal if its text is no number or out of range.
  std::int32_t k();

  /// Throws Refusal, with the greatest k for the number `text`, if k is greater than any that can be worked
  /// on.
  void requireWithin(std::string_view text);

  /// The transformation for k, or null for a k below 1, whose images are empty. Throws as k().
  Transformation* transformation();

 private:
  std::string kText_;
  std::optional<std::int32_t> k_;
  std::optional<Transformation> transformation_;
};

/// The iterates of a start value: the start itself, its image, the image of that, and so on. The start may be
/// any text; from the first image on an iterate is a number, unless the start is a zero text or k is below 1.
class Orbit {
 public:
  /// `power` has to outlive the orbit.
  Orbit(DigitPower& power, std::string start) : power_(power), text_(std::move(start)) {}

  /// Goes on to the image of the current value. Throws Refusal if the value or k cannot be worked on; the
  /// current value then stays.
  void advance() { advance({}); }
  /// The same by up to between.size() + 1 steps at once: the silhouettes of the values before the last one go
  /// into `between`. Returns how many steps it was: more than one only where the current value is a number
  /// and the images are short.
  std::size_t advance(std::span<PackedSilhouette> between);

  /// Whether the current value is held as a number.
  bool isNumber() const noexcept { return isNumber_; }
  /// The silhouette of the current value; only if it is held as a number.
  const Silhouette& silhouette() const noexcept { return silhouette_; }
  std::string text() const;
  /// Appends the text of the current value to `out`.
  void appendTo(std::string& out) const;

 private:
  std::size_t step(std::span<PackedSilhouette> between);
  void requireLength() const;

  DigitPower& power_;
  std::string text_;
  bool isNumber_ = false;
  std::uint64_t steps_ = 0;  ///< from the start to the current value
  Decimal number_;
  Silhouette silhouette_;
};

}  // namespace zelvion
