#include "engine/transform/orbit.h"

#include <limits>

#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"

namespace zelvion {
namespace {

bool isZeroText(std::string_view number) {
  return number.empty() || number == "0" || number == "-" || number == "-0";
}

}  // namespace

std::int32_t DigitPower::k() {
  if (!k_) k_ = text::toInt32(kText_, kPowerName);
  return *k_;
}

void DigitPower::requireWithin(std::string_view text) {
  if (k_ || text::toDouble(kText_, kPowerName) < std::numeric_limits<std::int32_t>::max() + 0.5) return;
  text::requireDigits(text);
  throw Refusal(std::string(kPowerName) + " " + text::quoted(kText_) +
                " est trop grande. Pour ce nombre, k peut aller jusqu’à " +
                text::grouped(static_cast<std::uint64_t>(Transformation::greatestPower(silhouetteOf(text)))) +
                ".");
}

Transformation* DigitPower::transformation() {
  if (k() < 1) return nullptr;
  if (!transformation_) transformation_.emplace(*k_);
  return &*transformation_;
}

std::size_t Orbit::advance(std::span<PackedSilhouette> between) {
  const std::size_t steps = step(between);
  steps_ += steps;
  return steps;
}

// Throws Refusal if the current value, which nobody typed, is too long to be transformed.
void Orbit::requireLength() const {
  const std::size_t digits = number_.digits();
  if (digits <= text::kMaxCharacters) return;
  Silhouette longest;
  longest.counts.back() = text::kMaxCharacters;
  throw Refusal(
      "L’itéré numéro " + text::grouped(steps_) + ", " + text::quoted(number_.text()) + ", a " +
      text::grouped(digits) + " chiffres\u00a0: pour être transformé à son tour, il en faudrait au plus " +
      text::grouped(text::kMaxCharacters) + ". Aucun itéré n’est trop long tant que k ne dépasse pas " +
      text::grouped(
          static_cast<std::uint64_t>(Transformation::greatestPower(longest, text::kMaxCharacters))) +
      ".");
}

std::size_t Orbit::step(std::span<PackedSilhouette> between) {
  if (isNumber_) {
    const bool mayBeLong = number_.limbs().size() > text::kMaxCharacters / Decimal::kLimbDigits;
    if (mayBeLong) requireLength();
    Transformation& transformation = *power_.transformation();
    const std::size_t steps = transformation.iterate(silhouette_, between);
    silhouette_ = transformation.apply(silhouette_, number_);
    return steps + 1;
  }
  if (isZeroText(text_)) {
    text_.assign(1, '0');
    return 1;
  }
  text::requireLength(text_);
  power_.requireWithin(text_);
  Transformation* transformation = power_.transformation();
  text::requireDigits(text_);
  if (transformation == nullptr) {
    text_.clear();
    return 1;
  }
  silhouette_ = transformation->apply(silhouetteOf(text_), number_);
  isNumber_ = true;
  return 1;
}

std::string Orbit::text() const {
  std::string text;
  appendTo(text);
  return text;
}

void Orbit::appendTo(std::string& out) const {
  if (isNumber_) {
    number_.appendTo(out);
  } else {
    out += text_;
  }
}

}  // namespace zelvion
