#pragma once

#include <cstdint>
#include <memory>
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

/// The silhouettes of an iteration, step by step: one word for each, wherever they fit one.
class SilhouetteHistory {
 public:
  void push(PackedSilhouette word);
  void push(const Silhouette& silhouette);

  std::int32_t size() const noexcept { return size_; }
  Silhouette at(std::int32_t step) const;
  /// A number for the silhouette of a step, the same for the same silhouette.
  std::uint32_t hash(std::int32_t step) const;
  bool areEqual(std::int32_t a, std::int32_t b) const;

 private:
  static constexpr std::int32_t kBlock = 4096;
  /// Marks a word as the place of a silhouette in wide_.
  static constexpr std::uint64_t kWide = std::uint64_t{1} << 63;

  std::uint64_t word(std::int32_t step) const {
    return blocks_[static_cast<std::size_t>(step / kBlock)][static_cast<std::size_t>(step % kBlock)];
  }

  std::vector<std::unique_ptr<std::uint64_t[]>> blocks_;
  std::vector<Silhouette> wide_;
  std::int32_t size_ = 0;
};

/// Iterates a start value until an iterate comes back; the start itself takes no part in the comparison.
///
/// An iterate is the image of the silhouette before it, so the silhouettes are all that is kept: a word a
/// step as long as no digit comes more than 127 times, beside a hash table of half a word an entry that is at
/// most half full. Where the silhouette of an iterate is met again, the two iterates are compared as numbers;
/// if only their digits are the same, the numbers that come back are their images, one step later.
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
  SilhouetteHistory history_;        ///< from entry 0, the start, on
  std::vector<std::int32_t> table_;  ///< steps by the hashes of their silhouettes; 0 where free
  unsigned tableBits_ = 10;
  std::int32_t used_ = 0;
};

}  // namespace zelvion
