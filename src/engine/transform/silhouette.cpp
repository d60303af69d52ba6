#include "engine/transform/silhouette.h"

#include <algorithm>
#include <span>

namespace zelvion {
namespace {

// Counts of the digits 1 to 9 in nine fields of seven bits: four digits are counted by one look-up and one
// addition, and a word holds the counts of up to 127 digits.
constexpr unsigned kFieldBits = 7;
constexpr std::size_t kLimbsPerWord = 15;

constexpr std::array<std::uint64_t, 10'000> kPackedCounts = [] {
  std::array<std::uint64_t, 10'000> table{};
  for (unsigned group = 0; group < table.size(); ++group) {
    for (unsigned rest = group; rest > 0; rest /= 10) {
      if (rest % 10 > 0) table[group] += std::uint64_t{1} << (kFieldBits * (rest % 10 - 1));
    }
  }
  return table;
}();

void unpackCounts(std::uint64_t word, Silhouette& silhouette) {
  for (unsigned i = 0; i < 9; ++i) {
    silhouette.counts[i] += static_cast<std::uint32_t>(word >> (kFieldBits * i)) & ((1U << kFieldBits) - 1);
  }
}

}  // namespace

std::optional<PackedSilhouette> packed(const Silhouette& silhouette) {
  PackedSilhouette word = 0;
  std::uint32_t any = 0;
  for (unsigned i = 0; i < 9; ++i) {
    word |= PackedSilhouette{silhouette.counts[i]} << (kFieldBits * i);
    any |= silhouette.counts[i];
  }
  if (any >> kFieldBits != 0) return std::nullopt;
  return word;
}

Silhouette unpacked(PackedSilhouette word) {
  Silhouette silhouette;
  unpackCounts(word, silhouette);
  return silhouette;
}

Silhouette silhouetteOf(const Decimal& number) {
  Silhouette silhouette;
  std::span<const Decimal::Limb> limbs = number.limbs();
  while (!limbs.empty()) {
    const std::size_t size = std::min(limbs.size(), kLimbsPerWord);
    std::uint64_t word = 0;
    for (const Decimal::Limb limb : limbs.first(size)) {
      word += kPackedCounts[limb / 10'000] + kPackedCounts[limb % 10'000];
    }
    unpackCounts(word, silhouette);
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

}  // namespace zelvion
