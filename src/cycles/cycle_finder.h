#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "transform/orbit.h"

namespace zelvion {

/// The first return of an iteration: iterate `step` equals iterate `first`, which is at least 1.
struct Cycle {
  std::int32_t step;
  std::int32_t first;

  std::int32_t order() const noexcept { return step - first; }
};

/// Iterates a start value until an iterate comes back; the start itself takes no part in the comparison.
///
/// An iterate is the image of the silhouette before it, so the silhouettes are all that is kept: 24 bytes a
/// step, whatever the length of the numbers, beside a hash table of eight bytes an entry that is at most half
/// full. Where the silhouette of an iterate is met again, the two iterates are compared as numbers; if only
/// their digits are the same, the numbers that come back are their images, one step later.
class CycleFinder {
 public:
  /// `power` has to outlive the finder.
  CycleFinder(DigitPower& power, const std::string& start);

  /// Goes on up to step `last` and returns the cycle as soon as an iterate comes back. Throws as
  /// Orbit::advance.
  std::optional<Cycle> advance(std::int32_t last);

  /// The text of the iterate that was reached.
  std::string current() const;

 private:
  /// A silhouette in words: nine counts of 16 bits.
  using Key = std::array<std::uint64_t, 3>;

  static Key pack(const Silhouette& silhouette);
  static Silhouette unpack(const Key& key);
  static std::uint32_t hashOf(const Key& key);

  std::int32_t lookAhead(std::int32_t last);
  std::int32_t earlierEqual();
  std::int32_t findOrInsert();
  Decimal iterate(std::int32_t step) const;
  void grow();

  DigitPower& power_;
  Orbit orbit_;  ///< some steps ahead of step_
  std::int32_t step_ = 0;
  std::int32_t returnsTo_ = 0;  ///< the step that the next iterate equals, where that is known
  std::string previousText_;
  std::deque<Key> history_;           ///< the silhouettes of the iterates from entry 0, the start, on
  std::vector<std::uint64_t> table_;  ///< half a hash and the step of its silhouette; 0 where free
  unsigned tableBits_ = 10;
  std::size_t used_ = 0;
};

}  // namespace zelvion
