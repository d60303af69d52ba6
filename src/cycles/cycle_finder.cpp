#include "cycles/cycle_finder.h"

#include <algorithm>

namespace zelvion {
namespace {

// So many steps lie between working out an iterate and looking for its silhouette in the table: by then the
// place in the table, which no cache holds, has been fetched.
constexpr std::int32_t kAhead = 8;

}  // namespace

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
    const std::int32_t reached = lookAhead(std::min(last, step_ + kAhead));
    while (step_ < reached) {
      ++step_;
      if (const std::int32_t first = earlierEqual(); first > 0) return Cycle{step_, first};
    }
  }
  return std::nullopt;
}

// Works out the iterates up to step `last`, or one of those that are no numbers, and returns the last step
// done.
std::int32_t CycleFinder::lookAhead(std::int32_t last) {
  if (2 * (used_ + static_cast<std::size_t>(kAhead)) > table_.size()) grow();
  for (std::int32_t step = step_; step < last; ++step) {
    if (!orbit_.isNumber()) previousText_ = orbit_.text();
    orbit_.advance();
    if (!orbit_.isNumber()) return step + 1;
    history_.push_back(pack(orbit_.silhouette()));
    __builtin_prefetch(&table_[hashOf(history_.back()) >> (32 - tableBits_)]);
  }
  return last;
}

// The step whose iterate the current one equals, or 0.
std::int32_t CycleFinder::earlierEqual() {
  // Iterates that are no numbers are the empty text at most once, and then zeros.
  if (!orbit_.isNumber()) return step_ > 1 && orbit_.text() == previousText_ ? step_ - 1 : 0;
  if (returnsTo_ > 0) return returnsTo_;
  const std::int32_t seen = findOrInsert();
  if (seen == 0 || iterate(seen) == iterate(step_)) return seen;
  returnsTo_ = seen + 1;
  return 0;
}

// The earlier step with the silhouette of the current one, or 0 after noting the current one.
std::int32_t CycleFinder::findOrInsert() {
  const Key& key = history_[static_cast<std::size_t>(step_)];
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

// The iterate of a step, from the silhouette before it.
Decimal CycleFinder::iterate(std::int32_t step) const {
  return power_.transformation()->image(unpack(history_[static_cast<std::size_t>(step - 1)]));
}

std::string CycleFinder::current() const {
  return orbit_.isNumber() && step_ > 0 ? iterate(step_).text() : orbit_.text();
}

}  // namespace zelvion
