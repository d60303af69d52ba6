#include "engine/cycles/silhouette_history.h"

#include <algorithm>

#include "engine/arith/wide_vectors.h"

namespace zelvion {
namespace {

// Marks a word as the hash of a silhouette that does not fit a word.
constexpr std::uint64_t kWide = std::uint64_t{1} << 63;

std::uint64_t markedHash(const Silhouette& silhouette) {
  std::uint64_t hash = 0;
  for (const std::uint32_t count : silhouette.counts) {
    hash = (hash ^ count) * 0x9E3779B97F4A7C15;  // odd and without a pattern, from the golden ratio
    hash ^= hash >> 32;
  }
  return hash | kWide;
}

ZELVION_WIDE_VECTORS bool contains(const std::uint64_t* words, std::size_t size, std::uint64_t word) {
  std::uint64_t found = 0;
  for (std::size_t i = 0; i < size; ++i) found |= words[i] == word ? ~std::uint64_t{0} : 0;
  return found != 0;
}

}  // namespace

std::span<PackedSilhouette> SilhouetteHistory::room() {
  if (size_ == blocks_.size() * kBlock) {
    blocks_.push_back(std::make_unique_for_overwrite<std::uint64_t[]>(kBlock));
  }
  const std::size_t used = size_ % kBlock;
  return {&blocks_.back()[used], kBlock - used};
}

void SilhouetteHistory::push(const Silhouette& silhouette) {
  const auto fitting = packed(silhouette);
  if (!fitting) wide_.push_back({size_, silhouette});
  room().front() = fitting ? *fitting : markedHash(silhouette);
  ++size_;
}

const Silhouette& SilhouetteHistory::wideAt(std::size_t step) const {
  return std::ranges::lower_bound(wide_, step, {}, &Wide::step)->silhouette;
}

Silhouette SilhouetteHistory::at(std::size_t step) const {
  const std::uint64_t found = word(step);
  return (found & kWide) == 0 ? unpacked(found) : wideAt(step);
}

std::span<const PackedSilhouette> SilhouetteHistory::packedFrom(std::size_t step, std::size_t count) const {
  const std::size_t place = step % kBlock;
  const std::span stored(&blocks_[step / kBlock][place], std::min({kBlock - place, size_ - step, count}));
  const auto isWide = [](std::uint64_t word) { return (word & kWide) != 0; };
  return stored.first(static_cast<std::size_t>(std::ranges::find_if(stored, isWide) - stored.begin()));
}

bool SilhouetteHistory::areEqual(std::size_t a, std::size_t b) const {
  return word(a) == word(b) && ((word(a) & kWide) == 0 || wideAt(a) == wideAt(b));
}

std::size_t SilhouetteHistory::latestEqual(std::size_t step) const {
  constexpr std::size_t kStretch = 256;
  static_assert(kBlock % kStretch == 0);
  for (std::size_t end = step; end > 0;) {
    const std::size_t begin = (end - 1) / kStretch * kStretch;
    if (contains(&blocks_[begin / kBlock][begin % kBlock], end - begin, word(step))) {
      for (std::size_t i = end; i-- > begin;) {
        if (areEqual(i, step)) return i;
      }
    }
    end = begin;
  }
  return 0;
}

std::size_t SilhouetteHistory::firstReturn(std::size_t order, std::size_t first, std::size_t end) const {
  while (first < end) {
    const std::size_t middle = (first + end) / 2;
    if (areEqual(middle, middle + order)) {
      end = middle;
    } else {
      first = middle + 1;
    }
  }
  return first;
}

}  // namespace zelvion
