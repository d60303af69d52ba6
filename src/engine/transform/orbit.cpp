#include "engine/transform/orbit.h"

#include <cassert>

#include "engine/text/number.h"

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
    const bool mayBeLong = !walked_ && number_.limbs().size() > kMaxCharacters / Decimal::kLimbDigits;
    if (mayBeLong) requireLength(number_.text());
    silhouette_ = power_.transformation()->apply(silhouette_, number_);
    walked_ = false;
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
  if (!isNumber_) return 0;
  const std::size_t steps = power_.transformation()->walk(silhouette_, silhouettes);
  walked_ = walked_ || steps > 0;
  return steps;
}

std::string Orbit::text() const {
  std::string text;
  appendTo(text);
  return text;
}

void Orbit::appendTo(std::string& out) const {
  assert(!walked_);
  if (isNumber_) {
    number_.appendTo(out);
  } else {
    out += text_;
  }
}

}  // namespace zelvion
