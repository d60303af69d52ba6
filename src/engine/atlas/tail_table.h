#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "engine/transform/packed_silhouette.h"

namespace zelvion::atlas {

/// What is known of many multisets of digits, for all threads at once and in bounded memory: a table in which
/// the newest entry of a slot wins, so that an entry may be lost at any time but is never wrong.
///
/// The key of 63 bits times an odd number is a bijection of them. The top bits of the product are the
/// slot, and the others are kept in the slot's word above the answer: an entry that matches has this key. A
/// word is written and read whole, so no lock is needed.
class TailTable {
 public:
  /// Is called with the memory of a table before anything is written to it.
  using Prepare = void (*)(void* block, std::size_t bytes);

  /// A table with at most `slots` slots (at least 2 are made).
  TailTable(std::size_t slots, Prepare prepare)
      : slotBits_(static_cast<unsigned>(std::bit_width(std::max<std::size_t>(slots, 2))) - 1),
        limit_(std::uint64_t{2} << slotBits_),
        words_(static_cast<Word*>(::operator new(bytes(), kAlignment))) {
    if (prepare != nullptr) prepare(words_.get(), bytes());
    std::uninitialized_value_construct_n(words_.get(), bytes() / sizeof(Word));
  }

  /// Asks the memory for the slot of this key, which takes a while.
  void prefetch(PackedSilhouette key) const { __builtin_prefetch(&words_.get()[slot(mixed(key))]); }

  /// The answer that was stored for `key`, or 0.
  std::uint64_t find(PackedSilhouette key) const {
    const std::uint64_t mix = mixed(key);
    const std::uint64_t answer = words_.get()[slot(mix)].load(std::memory_order_relaxed) ^ mix << slotBits_;
    return answer < limit_ ? answer : 0;
  }

  /// Keeps `answer`, which is not 0, for `key`, unless it does not fit next to the key.
  void store(PackedSilhouette key, std::uint64_t answer) {
    if (answer >= limit_) return;
    const std::uint64_t mix = mixed(key);
    words_.get()[slot(mix)].store(mix << slotBits_ | answer, std::memory_order_relaxed);
  }

 private:
  using Word = std::atomic<std::uint64_t>;
  static constexpr std::align_val_t kAlignment{std::size_t{2} << 20};  // a large page
  struct Release {
    void operator()(Word* words) const { ::operator delete(words, kAlignment); }
  };

  std::size_t bytes() const { return sizeof(Word) << slotBits_; }
  // The lowest bit is 0.
  static std::uint64_t mixed(PackedSilhouette key) { return key * (0x9E3779B97F4A7C15U << 1); }
  std::size_t slot(std::uint64_t mix) const { return static_cast<std::size_t>(mix >> (64 - slotBits_)); }

  unsigned slotBits_;
  std::uint64_t limit_;  // of an answer
  std::unique_ptr<Word, Release> words_;
};

}  // namespace zelvion::atlas
