#include "cycles/cycle_finder.h"

#include <algorithm>

namespace zelvion {
namespace {

// Odd numbers without a pattern (the fractional parts of square roots of primes).
constexpr std::array<std::uint64_t, 9> kMultipliers = {
    0x6A09E667F3BCC909, 0xBB67AE8584CAA73B, 0x3C6EF372FE94F82B, 0xA54FF53A5F1D36F1, 0x510E527FADE682D1,
    0x9B05688C2B3E6C1F, 0x1F83D9ABFB41BD6B, 0x5BE0CD19137E2179, 0xCBBB9D5DC1059ED9};

std::uint32_t hashOf(const Silhouette& silhouette) {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < kMultipliers.size(); ++i) hash += silhouette.counts[i] * kMultipliers[i];
  return static_cast<std::uint32_t>(((hash ^ (hash >> 32)) * kMultipliers[0]) >> 32);
}

std::array<std::uint16_t, 9> compact(const Silhouette& silhouette) {
  std::array<std::uint16_t, 9> counts{};
  for (std::size_t i = 0; i < counts.size(); ++i)
    counts[i] = static_cast<std::uint16_t>(silhouette.counts[i]);
  return counts;
}

}  // namespace

CycleFinder::CycleFinder(DigitPower& power, const std::string& start) : power_(power), orbit_(power, start) {
  history_.push_back(compact(silhouetteOf(start)));
  table_.resize(std::size_t{1} << tableBits_);
}

std::optional<Cycle> CycleFinder::advance(std::int32_t last) {
  while (step_ < last) {
    if (!orbit_.isNumber()) previousText_ = orbit_.text();
    orbit_.advance();
    ++step_;
    if (orbit_.isNumber()) {
      if (returnsTo_ > 0) return Cycle{step_, returnsTo_};
      const std::int32_t seen = findOrInsert();
      if (seen > 0 && equalsCurrent(seen)) return Cycle{step_, seen};
      if (seen > 0) returnsTo_ = seen + 1;
      history_.push_back(compact(orbit_.silhouette()));
    } else if (step_ > 1 && orbit_.text() == previousText_) {
      // Iterates that are no numbers are the empty text at most once, and then zeros.
      return Cycle{step_, step_ - 1};
    }
  }
  return std::nullopt;
}

// The earlier step with the silhouette of the current one, or 0 after noting the current one.
std::int32_t CycleFinder::findOrInsert() {
  if (2 * used_ >= table_.size()) grow();
  const std::uint32_t hash = hashOf(orbit_.silhouette());
  const std::size_t mask = table_.size() - 1;
  for (std::size_t slot = hash >> (32 - tableBits_);; slot = (slot + 1) & mask) {
    const std::uint64_t entry = table_[slot];
    if (entry == 0) {
      table_[slot] = std::uint64_t{hash} << 32 | static_cast<std::uint32_t>(step_);
      ++used_;
      return 0;
    }
    if (entry >> 32 != hash) continue;
    const auto step = static_cast<std::int32_t>(entry & 0xFFFFFFFF);
    if (history_[static_cast<std::size_t>(step)] == compact(orbit_.silhouette())) return step;
  }
}

void CycleFinder::grow() {
  std::vector<std::uint64_t> old(table_.size() * 2);
  old.swap(table_);
  ++tableBits_;
  const std::size_t mask = table_.size() - 1;
  for (const std::uint64_t entry : old) {
    if (entry == 0) continue;
    std::size_t slot = (entry >> 32) >> (32 - tableBits_);
    while (table_[slot] != 0) slot = (slot + 1) & mask;
    table_[slot] = entry;
  }
}

// Equal silhouettes are not equal numbers: the iterate of that step is worked out anew from the silhouette
// before.
bool CycleFinder::equalsCurrent(std::int32_t step) {
  const Counts& before = history_[static_cast<std::size_t>(step - 1)];
  if (before == history_.back()) return true;
  Silhouette silhouette;
  std::copy(before.begin(), before.end(), silhouette.counts.begin());
  Decimal iterate;
  power_.transformation()->apply(silhouette, iterate);
  return iterate == orbit_.number();
}

}  // namespace zelvion
