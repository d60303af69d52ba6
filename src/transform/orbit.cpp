#include "transform/orbit.h"

#include "text/number.h"

namespace zelvion {

namespace {

bool isZeroText(std::string_view number) {
  return number.empty() || number == "0" || number == "-" || number == "-0";
}

}  // namespace

Transformation* DigitPower::transformation() {
  if (!read_) {
    const std::int32_t k = text::toInt32(kText_, kPowerName);
    if (k >= 1) transformation_.emplace(k);
    read_ = true;
  }
  return transformation_ ? &*transformation_ : nullptr;
}

void Orbit::advance() {
  if (isNumber_) {
    if (number_.limbs().size() > kMaxCharacters / Decimal::kLimbDigits) requireLength(number_.text());
    silhouette_ = power_.transformation()->apply(silhouette_, number_);
    return;
  }
  if (isZeroText(text_)) {
    text_.assign(1, '0');
    return;
  }
  requireLength(text_);
  Transformation* transformation = power_.transformation();
  requireDigits(text_);
  if (transformation == nullptr) {
    text_.clear();
    return;
  }
  silhouette_ = transformation->apply(silhouetteOf(text_), number_);
  isNumber_ = true;
}

std::size_t Orbit::walk(std::span<PackedSilhouette> silhouettes) {
  return isNumber_ ? power_.transformation()->walk(silhouette_, silhouettes) : 0;
}

void Orbit::appendTo(std::string& out) const {
  if (isNumber_) {
    number_.appendTo(out);
  } else {
    out += text_;
  }
}

}  // namespace zelvion
