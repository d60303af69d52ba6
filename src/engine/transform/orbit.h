#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "engine/transform/transformation.h"

namespace zelvion {

/// How sentences call the text of k.
inline constexpr std::string_view kPowerName = "La puissance k";

/// The digit-power transformation for one press of a button: k is read from its text when a digit is first
/// worked on, and not again. For the four zero texts it is never read.
class DigitPower {
 public:
  /// `kText` is k as typed.
  explicit DigitPower(std::string kText) : kText_(std::move(kText)) {}

  /// The transformation for k, or null for a k below 1, whose images are empty. Throws std::invalid_argument,
  /// with a French sentence, if the text of k is no number or out of range.
  Transformation* transformation();

 private:
  std::string kText_;
  bool read_ = false;
  std::optional<Transformation> transformation_;
};

/// The iterates of a start value: the start itself, its image, the image of that, and so on. The start may be
/// any text; from the first image on an iterate is a number, unless the start is a zero text or k is below 1.
class Orbit {
 public:
  /// `power` has to outlive the orbit.
  Orbit(DigitPower& power, std::string start) : power_(power), text_(std::move(start)) {}

  /// Goes on to the image of the current value. Throws std::invalid_argument or std::length_error, with a
  /// French sentence, if the value or k cannot be worked on; the current value then stays.
  void advance();

  /// Goes on by up to silhouettes.size() steps at once and puts the silhouettes of the values into
  /// `silhouettes`. Returns how many steps it was: none unless the current value is a number whose image is
  /// short. Behind one or more steps the current value is known by its silhouette alone until the next
  /// `advance`: text() and appendTo() have to wait for that.
  std::size_t walk(std::span<PackedSilhouette> silhouettes);

  /// Whether the current value is held as a number.
  bool isNumber() const noexcept { return isNumber_; }
  /// The silhouette of the current value; only if it is held as a number.
  const Silhouette& silhouette() const noexcept { return silhouette_; }
  std::string text() const;
  /// Appends the text of the current value to `out`.
  void appendTo(std::string& out) const;

 private:
  DigitPower& power_;
  std::string text_;
  bool isNumber_ = false;
  bool walked_ = false;  ///< number_ is an earlier value
  Decimal number_;
  Silhouette silhouette_;
};

}  // namespace zelvion
