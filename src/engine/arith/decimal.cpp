#include "engine/arith/decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstring>

#include "engine/arith/multiply.h"
#include "engine/text/number.h"

namespace zelvion {
namespace {

// The four digits of every number below 10,000: a limb is written by two look-ups.
constexpr std::array<std::array<char, 4>, 10'000> kFourDigits = [] {
  std::array<std::array<char, 4>, 10'000> table{};
  for (unsigned i = 0; i < table.size(); ++i) {
    table[i] = {static_cast<char>('0' + i / 1000), static_cast<char>('0' + i / 100 % 10),
                static_cast<char>('0' + i / 10 % 10), static_cast<char>('0' + i % 10)};
  }
  return table;
}();

void writeLimb(char* place, Decimal::Limb limb) {
  std::memcpy(place, kFourDigits[limb / 10'000].data(), 4);
  std::memcpy(place + 4, kFourDigits[limb % 10'000].data(), 4);
}

std::size_t digitsOf(Decimal::Limb limb) {
  std::size_t count = 1;
  for (; limb >= 10; limb /= 10) ++count;
  return count;
}

}  // namespace

Decimal::Decimal(std::uint64_t value) {
  for (; value > 0; value /= kBase) limbs_.push_back(static_cast<Limb>(value % kBase));
}

Decimal Decimal::parse(std::string_view digits) {
  text::requireDigits(digits);
  Decimal number;
  number.limbs_.reserve(digits.size() / kLimbDigits + 1);
  while (!digits.empty()) {
    const std::size_t size = std::min(digits.size(), kLimbDigits);
    Limb limb = 0;
    for (const char c : digits.substr(digits.size() - size)) limb = limb * 10 + static_cast<Limb>(c - '0');
    number.limbs_.push_back(limb);
    digits.remove_suffix(size);
  }
  number.trim();
  return number;
}

Decimal Decimal::power(const Decimal& base, std::uint64_t exponent) {
  Decimal result(1);
  for (auto bit = std::bit_width(exponent); bit-- > 0;) {
    result = result * result;
    if ((exponent >> bit) & 1) result = result * base;
  }
  return result;
}

void Decimal::assign(std::span<const Limb> limbs) {
  while (!limbs.empty() && limbs.back() == 0) limbs = limbs.first(limbs.size() - 1);
  limbs_.assign(limbs.begin(), limbs.end());
}

void Decimal::trim() noexcept {
  while (!limbs_.empty() && limbs_.back() == 0) limbs_.pop_back();
}

std::size_t Decimal::digits() const noexcept {
  return isZero() ? 1 : (limbs_.size() - 1) * kLimbDigits + digitsOf(limbs_.back());
}

void Decimal::appendTo(std::string& out) const {
  if (isZero()) {
    out += '0';
    return;
  }
  std::array<char, kLimbDigits> top{};
  writeLimb(top.data(), limbs_.back());
  const std::size_t topDigits = digitsOf(limbs_.back());
  out.append(top.data() + kLimbDigits - topDigits, topDigits);
  std::size_t place = out.size();
  out.resize(place + (limbs_.size() - 1) * kLimbDigits);
  for (std::size_t i = limbs_.size() - 1; i-- > 0; place += kLimbDigits) writeLimb(&out[place], limbs_[i]);
}

std::string Decimal::text() const {
  std::string result;
  appendTo(result);
  return result;
}

std::string Decimal::padded(std::size_t width) const {
  std::string digitsText;
  if (!isZero()) appendTo(digitsText);
  if (digitsText.size() < width) digitsText.insert(0, width - digitsText.size(), '0');
  return digitsText;
}

Decimal& Decimal::operator+=(const Decimal& other) {
  if (limbs_.size() < other.limbs_.size()) limbs_.resize(other.limbs_.size(), 0);
  Limb carry = 0;
  for (std::size_t i = 0; i < limbs_.size() && (carry > 0 || i < other.limbs_.size()); ++i) {
    const Limb sum = limbs_[i] + carry + (i < other.limbs_.size() ? other.limbs_[i] : 0);
    carry = sum >= kBase ? 1 : 0;
    limbs_[i] = sum - carry * kBase;
  }
  if (carry > 0) limbs_.push_back(carry);
  return *this;
}

Decimal& Decimal::operator-=(const Decimal& other) {
  assert(other <= *this);
  Limb borrow = 0;
  for (std::size_t i = 0; i < limbs_.size() && (borrow > 0 || i < other.limbs_.size()); ++i) {
    const Limb taken = borrow + (i < other.limbs_.size() ? other.limbs_[i] : 0);
    borrow = limbs_[i] < taken ? 1 : 0;
    limbs_[i] = limbs_[i] + borrow * kBase - taken;
  }
  trim();
  return *this;
}

std::uint32_t Decimal::divideBy(std::uint32_t divisor) {
  assert(divisor > 0);
  std::uint64_t remainder = 0;
  for (std::size_t i = limbs_.size(); i-- > 0;) {
    const std::uint64_t dividend = remainder * kBase + limbs_[i];
    limbs_[i] = static_cast<Limb>(dividend / divisor);
    remainder = dividend % divisor;
  }
  trim();
  return static_cast<std::uint32_t>(remainder);
}

Decimal operator*(const Decimal& a, const Decimal& b) {
  Decimal product;
  product.limbs_ = multiplyLimbs(a.limbs_, b.limbs_);
  product.trim();
  return product;
}

std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) noexcept {
  if (a.limbs_.size() != b.limbs_.size()) return a.limbs_.size() <=> b.limbs_.size();
  return std::lexicographical_compare_three_way(a.limbs_.rbegin(), a.limbs_.rend(), b.limbs_.rbegin(),
                                                b.limbs_.rend());
}

}  // namespace zelvion
