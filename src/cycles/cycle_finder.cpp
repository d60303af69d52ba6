#include "cycles/cycle_finder.h"

namespace zelvion {
// A key keeps the counts of a number that can be transformed, of at most 32,766 digits. A longer one may
// share its key with another number, but it has no successor with which it could be mistaken.
CycleFinder::Key CycleFinder::pack(const Silhouette& silhouette) {
  Key key{};
  for (std::size_t i = 0; i < silhouette.counts.size(); ++i) {
    key[i / 4] |= std::uint64_t{silhouette.counts[i]} << (16 * (i % 4));
  }
  return key;
}

Silhouette CycleFinder::unpack(const Key& key) {
  Silhouette silhouette;
  for (std::size_t i = 0; i < silhouette.counts.size(); ++i) {
    silhouette.counts[i] = static_cast<std::uint16_t>(key[i / 4] >> (16 * (i % 4)));
  }
  return silhouette;
}

// The multipliers are odd numbers without a pattern (from the square roots of the first primes).
std::uint32_t CycleFinder::hashOf(const Key& key) {
  const std::uint64_t hash =
      key[0] * 0x6A09E667F3BCC909 + key[1] * 0xBB67AE8584CAA73B + key[2] * 0x3C6EF372FE94F82B;
  return static_cast<std::uint32_t>(((hash ^ (hash >> 32)) * 0xA54FF53A5F1D36F1) >> 32);
}

CycleFinder::CycleFinder(DigitPower& power, const std::string& start) : power_(power), orbit_(power, start) {
  history_.push_back(pack(silhouetteOf(start)));
  table_.resize(std::size_t{1} << tableBits_);
}

std::optional<Cycle> CycleFinder::advance(std::int32_t last) {
  while (step_ < last) {
    if (!orbit_.isNumber()) previousText_ = orbit_.text();
    orbit_.advance();
    ++step_;
    if (orbit_.isNumber()) {
      if (returnsTo_ > 0) return Cycle{step_, returnsTo_};
      const Key key = pack(orbit_.silhouette());
      const std::int32_t seen = findOrInsert(key);
      if (seen > 0 && equalsCurrent(seen)) return Cycle{step_, seen};
      if (seen > 0) returnsTo_ = seen + 1;
      history_.push_back(key);
    } else if (step_ > 1 && orbit_.text() == previousText_) {
      // Iterates that are no numbers are the empty text at most once, and then zeros.
      return Cycle{step_, step_ - 1};
    }
  }
  return std::nullopt;
}

// The earlier step with the silhouette of the current one, or 0 after noting the current one.
std::int32_t CycleFinder::findOrInsert(const Key& key) {
  if (2 * used_ >= table_.size()) grow();
  const std::uint32_t hash = hashOf(key);
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
    if (history_[static_cast<std::size_t>(step)] == key) return step;
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
  const Key& before = history_[static_cast<std::size_t>(step - 1)];
  if (before == history_.back()) return true;
  Decimal iterate;
  power_.transformation()->apply(unpack(before), iterate);
  return iterate == orbit_.number();
}

}  // namespace zelvion
