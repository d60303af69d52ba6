#include "engine/transform/orbit.h"

#include "engine/text/number.h"

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

Transformation* DigitPower::transformation() {
  if (k() < 1) return nullptr;
  if (!transformation_) transformation_.emplace(*k_);
  return &*transformation_;
}

std::size_t Orbit::advance(std::span<PackedSilhouette> between) {
  if (isNumber_) {
    const bool mayBeLong = number_.limbs().size() > text::kMaxCharacters / Decimal::kLimbDigits;
    if (mayBeLong) text::requireLength(number_.text());
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
