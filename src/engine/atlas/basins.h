#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/atlas/cycle.h"
#include "engine/atlas/cycle_list.h"
#include "engine/parallel/pieces.h"

namespace zelvion::atlas {

/// How the numbers below a power of ten fall into one cycle.
struct Basin {
  Cycle cycle;
  /// below[n]: how many numbers below 10^n fall into the cycle, for n from 0 (the number 0 alone) on.
  std::vector<Decimal> below;
  /// tails[t]: how many of them reach the cycle after t steps and not before; the last is not 0. A number on
  /// the cycle has a tail of 0.
  std::vector<Decimal> tails;
  /// leastByTail[t]: the least of these numbers; where tails[t] is 0, 0.
  std::vector<Decimal> leastByTail;

  std::size_t longestTail() const noexcept { return tails.size() - 1; }
  /// The least number with the longest tail.
  const Decimal& farthest() const noexcept { return leastByTail.back(); }
  friend bool operator==(const Basin&, const Basin&) = default;
};

/// How all numbers below 10^digits, 0 among them, fall into the cycles of the power k: the cycles that they
/// reach, sorted as Cycles are, or what a part of the count has of that.
struct Basins {
  std::int32_t k = 0;
  int digits = 0;
  std::vector<Basin> basins;

  /// The basin with the longest tail of all; that of the least number if several have it. There is one.
  const Basin& deepest() const;
  /// tails[t]: how many numbers have a tail of t, whatever their cycle.
  std::vector<Decimal> tails() const;
  /// leastByTail[t]: the least of these numbers; where tails()[t] is 0, 0.
  std::vector<Decimal> leastByTail() const;

  friend bool operator==(const Basins&, const Basins&) = default;
};

/// Up to which number of digits numbers can be counted. There are 4 * 10^10 multisets of that many.
inline constexpr int kMaxCountedDigits = 57;

/// The memory for what is known of the images. Less of it costs time and changes no result.
struct TableMemory {
  std::size_t bytes = std::size_t{512} << 20;  ///< at most; only what is of use is taken
  /// Is called with the memory before it is used, where there is any: to ask the system for large pages,
  /// which halves the time of a long count.
  void (*prepare)(void* block, std::size_t bytes) = nullptr;
};

/// How many digits the numbers to count for the power `k` have by default: those of
/// the whole range as long as that is a matter of minutes, else fewer.
int usualDigits(std::int32_t k);

/// The table that is of use for such a count, in bytes.
std::size_t usefulTable(std::int32_t k, int digits);

/// Counts how the numbers below 10^digits fall into the cycles of `k` (1 to kMaxPower), exactly, and how long
/// their tails are. `digits` is from 1 to kMaxCountedDigits; rangeDigits(k) takes all cycles in and tells how
/// any number ends. Works on `threads` threads with a table of at most `memory` bytes and tells `progress`
/// how far it is (`found`: the cycles so far); nothing if it was stopped. Of a `part` it returns what lies
/// there, for joined(). The result depends on nothing else. Throws std::logic_error if the numbers counted
/// are not 10^n for each n.
///
/// Why it is exact: T depends on the multiset of a number's digits alone, zeros aside, so each multiset of
/// `digits` digits from 0 to 9 is taken once, and stands for as many numbers as its digits have
/// arrangements. Its image is followed, in exact arithmetic, until a multiset whose fate is known, or until a
/// multiset comes back, which closes a cycle. What is known of a multiset is g: a number of it that is not on
/// the cycle takes g steps to get there. It holds for all its numbers, since they have the same image; those
/// that are on the cycle themselves are looked up among its points (135 has the digits of
/// 153, a fixed point for k = 3, and a tail of 1). A table that forgets costs time and changes nothing, for
/// what it forgot is worked out anew.
std::optional<Basins> basinsOf(std::int32_t k, int digits, unsigned threads, Progress& progress,
                               TableMemory memory = {}, Part part = {});

/// The result of the whole from those of all its parts, in any order. Throws std::logic_error if they are not
/// of one power and number of digits, or if the numbers counted are not 10^n for each n.
Basins joined(const std::vector<Basins>& parts);

}  // namespace zelvion::atlas
