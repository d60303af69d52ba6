#include "engine/transform/short_images.h"

#include <array>
#include <limits>

namespace zelvion {
namespace {

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kGroups = 10'000;

// 0 where it is no word.
std::uint64_t power(std::uint64_t base, std::int32_t exponent) {
  std::uint64_t result = 1;
  for (std::int32_t i = 0; i < exponent && result > 0 && base > 1; ++i) {
    result = result <= kMax / base ? result * base : 0;
  }
  return result;
}

}  // namespace

ShortImages::ShortImages(std::int32_t k) : ninth_(power(9, k)), maxDigits_(digitsBelow(kMax)) {
  if (maxDigits_ == 0) return;
  groups_.resize(kGroups);
  for (std::uint64_t digit = 1; digit <= 9; ++digit) groups_[digit] = power(digit, k);
  // One of less than four nines is in no sum; whatever the others are then does not matter.
  for (std::size_t group = 10; group < kGroups; ++group) {
    groups_[group] = groups_[group / 10] + groups_[group % 10];
  }
}

std::uint64_t ShortImages::of(std::string_view digits) const noexcept {
  const auto group = [](const char* begin, std::size_t size) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = 10 * value + static_cast<std::size_t>(begin[i] - '0');
    return value;
  };
  const std::size_t first = digits.size() % 4;
  std::uint64_t image = groups_[group(digits.data(), first)];
  for (std::size_t i = first; i < digits.size(); i += 4) image += groups_[group(digits.data() + i, 4)];
  return image;
}

std::uint64_t ShortImages::of(std::uint64_t number) const noexcept {
  std::uint64_t image = 0;
  for (; number >= kGroups; number /= kGroups) image += groups_[number % kGroups];
  return image + groups_[number];
}

}  // namespace zelvion
