#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <vector>

#include "engine/transform/packed_silhouette.h"

namespace zelvion {

/// The silhouettes of the values of an iteration, from step 0 on: one word a step as long as no digit comes
/// more than 127 times, and six more where one does.
class SilhouetteHistory {
 public:
  void push(const Silhouette& silhouette);
  /// Room for the words of the next steps, at least one. The first `count` of them are steps from
  /// pushWritten(count) on.
  std::span<PackedSilhouette> room();
  void pushWritten(std::size_t count) { size_ += count; }

  /// The number of steps, that of the start counted.
  std::size_t size() const noexcept { return size_; }
  Silhouette at(std::size_t step) const;
  /// The packed silhouettes from `step` on, as far as they are stored in a row and fit words; at most
  /// `count`.
  std::span<const PackedSilhouette> packedFrom(std::size_t step, std::size_t count) const;
  bool areEqual(std::size_t a, std::size_t b) const;
  /// The latest step before `step` with the same silhouette; 0 if there is none, for the start never counts.
  std::size_t latestEqual(std::size_t step) const;
  /// The first step from `first` on whose silhouette comes back after `order` steps, as that of `end` does;
  /// by bisection, since from there on all do.
  std::size_t firstReturn(std::size_t order, std::size_t first, std::size_t end) const;

 private:
  static constexpr std::size_t kBlock = 4096;

  struct Wide {
    std::size_t step = 0;
    Silhouette silhouette;
  };

  std::uint64_t word(std::size_t step) const { return blocks_[step / kBlock][step % kBlock]; }
  const Silhouette& wideAt(std::size_t step) const;

  std::vector<std::unique_ptr<std::uint64_t[]>> blocks_;  ///< packed silhouettes, or marked hashes
  std::deque<Wide> wide_;                                 ///< those that a hash stands for
  std::size_t size_ = 0;
};

}  // namespace zelvion
