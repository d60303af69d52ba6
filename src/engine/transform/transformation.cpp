#include "engine/transform/transformation.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "engine/arith/wide_vectors.h"
#include "engine/text/number.h"
#include "engine/text/refusal.h"

namespace zelvion {
namespace {

constexpr std::size_t kBlock = 8;  // rows are whole blocks of limbs, so that loops over them have no rest

// sums[j] = the sum over the nine digits of count * row[j]. A sum is below kMaxCount * 10^8 < 2^47.
ZELVION_WIDE_VECTORS void addProducts(const std::uint32_t* __restrict rows, std::size_t stride,
                                      const std::uint32_t* __restrict counts,
                                      std::uint64_t* __restrict sums) {
  const std::uint64_t c1 = counts[0], c2 = counts[1], c3 = counts[2], c4 = counts[3], c5 = counts[4],
                      c6 = counts[5], c7 = counts[6], c8 = counts[7], c9 = counts[8];
  for (std::size_t j = 0; j < stride; ++j) {
    sums[j] = c1 * rows[j] + c2 * rows[stride + j] + c3 * rows[2 * stride + j] + c4 * rows[3 * stride + j] +
              c5 * rows[4 * stride + j] + c6 * rows[5 * stride + j] + c7 * rows[6 * stride + j] +
              c8 * rows[7 * stride + j] + c9 * rows[8 * stride + j];
  }
}

// Turns sums into limbs below kBase. Every limb hands its carry, below 2^20, to the next one; what that
// leaves to carry is 0 or 1 and is handed on in a second pass; a limb of eight nines would have to hand it on
// once more, which is rare: the result tells whether there is one, and settleRipples does it. `scratch` has
// two rows of stride + 1 limbs.
ZELVION_WIDE_VECTORS bool carrySums(const std::uint64_t* __restrict sums, std::size_t stride,
                                    std::uint32_t* __restrict scratch, std::uint32_t* __restrict limbs) {
  constexpr std::uint64_t kBase = Decimal::kBase;
  constexpr std::uint64_t kReciprocal =
      (std::uint64_t{1} << 58) / kBase;  // for sums without their low 15 bits
  // One limb of zeros goes before the first of each row.
  std::uint32_t* __restrict high = scratch;
  std::uint32_t* __restrict low = scratch + stride + 1;
  high[0] = 0;
  low[0] = 0;
  for (std::size_t j = 0; j < stride; ++j) {
    const std::uint64_t estimate = ((sums[j] >> 15) * kReciprocal) >> 43;  // the quotient or one less
    const auto rest = static_cast<std::uint32_t>(sums[j] - estimate * kBase);
    const std::uint32_t more = rest >= Decimal::kBase ? 1 : 0;
    low[j + 1] = rest - more * Decimal::kBase;
    high[j + 1] = static_cast<std::uint32_t>(estimate) + more;
  }
  for (std::size_t j = 0; j < stride; ++j) low[j + 1] += high[j];
  std::uint32_t full = 0;
  for (std::size_t j = 0; j < stride; ++j) {
    const std::uint32_t carried = low[j] >= Decimal::kBase ? 1 : 0;
    const std::uint32_t kept = low[j + 1] >= Decimal::kBase ? low[j + 1] - Decimal::kBase : low[j + 1];
    limbs[j] = kept + carried;
    full |= kept + carried == Decimal::kBase ? 1U : 0U;
  }
  return full != 0;
}

void settleRipples(std::vector<std::uint32_t>& limbs) {
  std::uint32_t carry = 0;
  for (std::uint32_t& limb : limbs) {
    limb += carry;
    carry = limb >= Decimal::kBase ? 1 : 0;
    limb -= carry * Decimal::kBase;
  }
}

}  // namespace

Transformation::Transformation(std::int32_t k) : k_(k) {
  assert(k >= 1);
  const auto tooLong = [&](int digit) { return k * std::log10(digit) >= kMaxImageDigits; };
  while (tooLong(greatestDigit_)) --greatestDigit_;

  std::array<Decimal, 10> powers;
  const auto exponent = static_cast<std::uint64_t>(k);
  for (int digit = 1; digit <= greatestDigit_; ++digit) {
    const auto d = static_cast<std::size_t>(digit);
    switch (digit) {
      case 4:
        powers[d] = powers[2] * powers[2];
        break;
      case 6:
        powers[d] = powers[2] * powers[3];
        break;
      case 8:
        powers[d] = powers[2] * powers[4];
        break;
      case 9:
        powers[d] = powers[3] * powers[3];
        break;
      default:
        powers[d] = Decimal::power(Decimal(d), exponent);
        break;
    }
  }

  // kMaxCount powers add up to at most one limb more.
  const std::size_t longest = powers[static_cast<std::size_t>(greatestDigit_)].limbs().size() + 1;
  stride_ = (longest + kBlock - 1) / kBlock * kBlock;
  rows_.resize(9 * stride_);
  for (std::size_t digit = 1; digit <= 9; ++digit) {
    const auto limbs = powers[digit].limbs();
    std::copy(limbs.begin(), limbs.end(), rows_.begin() + static_cast<std::ptrdiff_t>((digit - 1) * stride_));
  }
  sums_.resize(stride_);
  scratch_.resize(2 * (stride_ + 1));
  limbs_.resize(stride_);

  makeVectorRows(powers[static_cast<std::size_t>(greatestDigit_)]);
}

void Transformation::makeVectorRows(const Decimal& greatestPower) {
  using namespace vector_image;
  if (!isSupported() || greatestPower.limbs().size() > kMaxLimbs) return;
  const std::size_t digits = (greatestPower * Decimal(vector_image::kMaxCount)).digits();
  const std::size_t size = (digits + kVectorDigits - 1) / kVectorDigits;
  if (size > kMaxVectors) return;
  assert(size * kVectorLimbs <= limbs_.size());
  vectorRows_.resize(size * kPairs);
  for (std::size_t row = 0; row < 9; ++row) {
    for (std::size_t i = 0; i < digits; i += 4) {
      const std::uint32_t limb = rows_[row * stride_ + i / Decimal::kLimbDigits];
      const std::uint32_t four = i % Decimal::kLimbDigits == 0 ? limb % 10'000 : limb / 10'000;
      RowPair& pair = vectorRows_[i / kVectorDigits * kPairs + row / 2];
      pair.limbs[i % kVectorDigits / 4 * 2 + row % 2] = static_cast<std::int16_t>(four);
    }
  }
}

bool Transformation::inVectors(const Silhouette& silhouette) const {
  return !vectorRows_.empty() && totalOf(silhouette) <= vector_image::kMaxCount;
}

std::size_t Transformation::vectors() const { return vectorRows_.size() / vector_image::kPairs; }

Silhouette Transformation::apply(const Silhouette& silhouette, Decimal& image) {
  const auto& counts = silhouette.counts;
  for (int digit = 9; digit > greatestDigit_; --digit) {
    const long double count = counts[static_cast<std::size_t>(digit - 1)];
    // Of powers so long the greatest alone decides the length.
    if (count > 0) {
      const long double length = k_ * std::log10(static_cast<long double>(digit)) + std::log10(count);
      refuse(static_cast<std::size_t>(length) + 1, silhouette);
    }
  }
  if (inVectors(silhouette)) {
    Silhouette result = silhouette;
    if (vector_image::apply(vectorRows_.data(), vectors(), result.counts.data(), limbs_.data())) {
      image.assign(std::span(limbs_).first(vectors() * vector_image::kVectorLimbs));
      return result;
    }
  }
  Decimal result;
  if (totalOf(silhouette) > kMaxCount) {
    result = imageInParts(silhouette);
  } else {
    addProducts(rows_.data(), stride_, counts.data(), sums_.data());
    if (carrySums(sums_.data(), stride_, scratch_.data(), limbs_.data())) settleRipples(limbs_);
    result.assign(limbs_);
  }
  if (result.digits() > kMaxImageDigits) refuse(result.digits(), silhouette);
  image = std::move(result);
  return silhouetteOf(image);
}

std::size_t Transformation::iterate(Silhouette& silhouette, std::span<PackedSilhouette> silhouettes) {
  if (!inVectors(silhouette)) return 0;
  return vector_image::iterate(vectorRows_.data(), vectors(), silhouette.counts.data(), silhouettes.data(),
                               silhouettes.size());
}

Decimal Transformation::image(const Silhouette& silhouette) {
  Decimal image;
  apply(silhouette, image);
  return image;
}

void Transformation::appendImages(std::span<const PackedSilhouette> silhouettes, std::string& list) {
  static_assert(kListSeparator.size() == vector_image::kSeparatorSize);
  constexpr std::size_t kAtOnce = 16;
  constexpr std::size_t kLongest = vector_image::kSeparatorSize + vector_image::kMaxCount;
  std::array<char, kAtOnce * kLongest> texts{};
  while (!silhouettes.empty()) {
    const auto some = silhouettes.first(std::min(silhouettes.size(), kAtOnce));
    silhouettes = silhouettes.subspan(some.size());
    char* const end = texts.data() + texts.size();
    const char* const begin = vectorRows_.empty()
                                  ? nullptr
                                  : vector_image::write(vectorRows_.data(), vectors(), some.data(),
                                                        some.size(), kListSeparator.data(), end);
    if (begin != nullptr) {
      list.append(begin, static_cast<const char*>(end));
      continue;
    }
    for (const PackedSilhouette silhouette : some) {
      list.append(kListSeparator).append(image(unpacked(silhouette)).text());
    }
  }
}

Decimal Transformation::imageInParts(const Silhouette& silhouette) const {
  Decimal image;
  for (int digit = 1; digit <= greatestDigit_; ++digit) {
    image += power(digit) * Decimal(silhouette.counts[static_cast<std::size_t>(digit - 1)]);
  }
  return image;
}

Decimal Transformation::power(int digit) const {
  assert(digit >= 1 && digit <= greatestDigit_);
  Decimal power;
  power.assign(std::span(rows_).subspan(static_cast<std::size_t>(digit - 1) * stride_, stride_));
  return power;
}

std::int32_t Transformation::greatestPower(const Silhouette& silhouette, std::size_t maxDigits) {
  for (int digit = 9; digit > 1; --digit) {
    const long double count = silhouette.counts[static_cast<std::size_t>(digit - 1)];
    if (count == 0) continue;
    const long double logarithm = std::log10(static_cast<long double>(digit));
    return static_cast<std::int32_t>(std::ceil((maxDigits - std::log10(count)) / logarithm)) - 1;
  }
  return std::numeric_limits<std::int32_t>::max();
}

void Transformation::refuse(std::size_t digits, const Silhouette& silhouette) const {
  throw Refusal("Avec la puissance k = " + std::to_string(k_) + ", l’image aurait " + text::grouped(digits) +
                " chiffres\u00a0; le maximum est de " + text::grouped(kMaxImageDigits) +
                " chiffres. Pour ce nombre, k peut aller jusqu’à " +
                text::grouped(static_cast<std::uint64_t>(greatestPower(silhouette))) + ".");
}

}  // namespace zelvion
