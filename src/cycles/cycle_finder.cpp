#include "cycles/cycle_finder.h"

#include <algorithm>
#include <array>

namespace zelvion {
namespace {

// So many steps at most lie between working out an iterate and looking for its silhouette in the table: by
// then the place in the table has been fetched.
constexpr std::int32_t kAhead = 64;

// An odd number without a pattern (from the golden ratio).
constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;

}  // namespace

void SilhouetteHistory::push(PackedSilhouette word) {
  if (size_ % kBlock == 0) blocks_.push_back(std::make_unique_for_overwrite<std::uint64_t[]>(kBlock));
  blocks_.back()[static_cast<std::size_t>(size_++ % kBlock)] = word;
}

void SilhouetteHistory::push(const Silhouette& silhouette) {
  const auto word = packed(silhouette);
  push(word ? *word : kWide | wide_.size());
  if (!word) wide_.push_back(silhouette);
}

Silhouette SilhouetteHistory::at(std::int32_t step) const {
  const std::uint64_t found = word(step);
  return (found & kWide) == 0 ? unpacked(found) : wide_[found & ~kWide];
}

std::uint32_t SilhouetteHistory::hash(std::int32_t step) const {
  std::uint64_t mixed = word(step);
  if ((mixed & kWide) != 0) {
    const Silhouette& silhouette = wide_[mixed & ~kWide];
    mixed = 0;
    for (const std::uint32_t count : silhouette.counts) mixed = mixed * kMultiplier + count;
  }
  return static_cast<std::uint32_t>((mixed * kMultiplier) >> 32);
}

bool SilhouetteHistory::areEqual(std::int32_t a, std::int32_t b) const {
  const std::uint64_t first = word(a);
  const std::uint64_t second = word(b);
  return first == second ||
         ((first & second & kWide) != 0 && wide_[first & ~kWide] == wide_[second & ~kWide]);
}

CycleFinder::CycleFinder(DigitPower& power, const std::string& start) : power_(power), orbit_(power, start) {
  history_.push(silhouetteOf(start));
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
  if (2 * static_cast<std::size_t>(used_ + kAhead) > table_.size()) grow();
  std::array<PackedSilhouette, kAhead> silhouettes;
  std::int32_t step = step_;
  while (step < last) {
    const std::size_t count =
        orbit_.walk(std::span(silhouettes).first(static_cast<std::size_t>(last - step)));
    for (const PackedSilhouette word : std::span(silhouettes).first(count)) history_.push(word);
    step += static_cast<std::int32_t>(count);
    if (step == last) break;
    if (!orbit_.isNumber()) previousText_ = orbit_.text();
    orbit_.advance();
    ++step;
    if (!orbit_.isNumber()) return step;
    history_.push(orbit_.silhouette());
  }
  for (std::int32_t ahead = step_ + 1; ahead <= last; ++ahead) {
    __builtin_prefetch(&table_[history_.hash(ahead) >> (32 - tableBits_)]);
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
  const std::size_t mask = table_.size() - 1;
  for (std::size_t slot = history_.hash(step_) >> (32 - tableBits_);; slot = (slot + 1) & mask) {
    const std::int32_t step = table_[slot];
    if (step == 0) {
      table_[slot] = step_;
      ++used_;
      return 0;
    }
    if (history_.areEqual(step, step_)) return step;
  }
}

// The steps in the table are 1 to used_.
void CycleFinder::grow() {
  ++tableBits_;
  table_.assign(std::size_t{1} << tableBits_, 0);
  const std::size_t mask = table_.size() - 1;
  for (std::int32_t step = 1; step <= used_; ++step) {
    std::size_t slot = history_.hash(step) >> (32 - tableBits_);
    while (table_[slot] != 0) slot = (slot + 1) & mask;
    table_[slot] = step;
  }
}

// The iterate of a step, from the silhouette before it.
Decimal CycleFinder::iterate(std::int32_t step) const {
  return power_.transformation()->image(history_.at(step - 1));
}

std::string CycleFinder::current() const {
  return orbit_.isNumber() && step_ > 0 ? iterate(step_).text() : orbit_.text();
}

}  // namespace zelvion
