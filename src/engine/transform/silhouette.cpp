#include "engine/transform/silhouette.h"

#include <algorithm>
#include <span>

#include "engine/transform/packed_silhouette.h"

namespace zelvion {
namespace {

void addCounts(PackedSilhouette word, Silhouette& silhouette) {
  for (std::size_t digit = 1; digit <= 9; ++digit) {
    silhouette.counts[digit - 1] += static_cast<std::uint32_t>(countOf(digit, word));
  }
}

}  // namespace

constexpr std::array<PackedSilhouette, 10'000> kPackedOfFour = [] {
  std::array<PackedSilhouette, 10'000> table{};
  for (std::size_t i = 1; i < table.size(); ++i) table[i] = table[i / 10] + packed(i % 10, 1);
  return table;
}();

std::optional<PackedSilhouette> packed(const Silhouette& silhouette) {
  PackedSilhouette word = 0;
  std::uint32_t any = 0;
  for (std::size_t digit = 1; digit <= 9; ++digit) {
    word |= packed(digit, silhouette.counts[digit - 1]);
    any |= silhouette.counts[digit - 1];
  }
  if (any > kMaxPackedCount) return std::nullopt;
  return word;
}

Silhouette unpacked(PackedSilhouette word) {
  Silhouette silhouette;
  addCounts(word, silhouette);
  return silhouette;
}

Silhouette silhouetteOf(const Decimal& number) {
  Silhouette silhouette;
  constexpr std::size_t kLimbsPerWord = kMaxPackedCount / Decimal::kLimbDigits;
  std::span<const Decimal::Limb> limbs = number.limbs();
  while (!limbs.empty()) {
    const std::size_t size = std::min(limbs.size(), kLimbsPerWord);
    PackedSilhouette word = 0;
    for (const Decimal::Limb limb : limbs.first(size)) word += packedOfEight(limb);
    addCounts(word, silhouette);
    limbs = limbs.subspan(size);
  }
  return silhouette;
}

Silhouette silhouetteOf(std::string_view digits) {
  Silhouette silhouette;
  for (const char c : digits) {
    if (c >= '1' && c <= '9') ++silhouette.counts[static_cast<std::size_t>(c - '1')];
  }
  return silhouette;
}

std::string leastNumber(const Silhouette& silhouette) {
  std::string number;
  for (std::size_t i = 0; i < silhouette.counts.size(); ++i)
    number.append(silhouette.counts[i], static_cast<char>('1' + i));
  return number.empty() ? "0" : number;
}

}  // namespace zelvion
