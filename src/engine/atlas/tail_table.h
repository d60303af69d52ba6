#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace zelvion::atlas {

/// What is known of many multisets of digits, for all threads at once and in bounded memory: a table in which
/// the newest entry of a slot wins, so that an entry may be lost at any time but is never wrong.
///
/// A key of `keyBits` bits times an odd number is a bijection of them. The top bits of the product are the
/// slot, and the others are kept in the slot's word above the answer: an entry that matches has this key. A
/// word is written and read whole, so no lock is needed.
class TailTable {
 public:
  /// Is called with the memory of a table before anything is written to it.
  using Prepare = void (*)(void* block, std::size_t bytes);

  /// A table for keys below 2^keyBits, at most 63, with at most `slots` slots (at least 2 are made).
  TailTable(unsigned keyBits, std::size_t slots, Prepare prepare)
      : factor_(0x9E3779B97F4A7C15U << (64 - keyBits)),
        slotBits_(std::clamp(static_cast<unsigned>(std::bit_width(std::max<std::size_t>(slots, 2))) - 1, 1U,
                             keyBits)),
        limit_(std::uint64_t{1} << std::min(63U, 64 - keyBits + slotBits_)),
        words_(static_cast<Word*>(::operator new(bytes(), kAlignment))) {
    if (prepare != nullptr) prepare(words_.get(), bytes());
    std::uninitialized_value_construct_n(words_.get(), bytes() / sizeof(Word));
  }

  /// Asks the memory for the slot of this key, which takes a while.
  void prefetch(std::uint64_t key) const { __builtin_prefetch(&words_.get()[slot(mixed(key))]); }

  /// The answer that was stored for `key`, or 0.
  std::uint64_t find(std::uint64_t key) const {
    const std::uint64_t mix = mixed(key);
    const std::uint64_t answer = words_.get()[slot(mix)].load(std::memory_order_relaxed) ^ mix << slotBits_;
    return answer < limit_ ? answer : 0;
  }

  /// Keeps `answer`, which is not 0, for `key`, unless it does not fit beside the key.
  void store(std::uint64_t key, std::uint64_t answer) {
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
  std::uint64_t mixed(std::uint64_t key) const { return key * factor_; }
  std::size_t slot(std::uint64_t mix) const { return static_cast<std::size_t>(mix >> (64 - slotBits_)); }

  std::uint64_t factor_;  // which leaves the product's lowest bits 0
  unsigned slotBits_;
  std::uint64_t limit_;  // of an answer
  std::unique_ptr<Word, Release> words_;
};

}  // namespace zelvion::atlas
