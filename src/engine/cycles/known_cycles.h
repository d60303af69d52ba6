#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "engine/cycles/silhouette_history.h"
#include "engine/cycles/small_falls.h"
#include "engine/transform/transformation.h"

namespace zelvion {

/// A cycle of a power as the silhouettes of its points, from the least one on: the points themselves can be
/// long and many.
struct SilhouetteCycle {
  std::vector<Silhouette> silhouettes;  ///< of its points, in their order
  Decimal least;
  Decimal greatest;

  std::size_t order() const noexcept { return silhouettes.size(); }
};

/// Tells for one number after another which cycle it falls into. What is known of the silhouettes on the way
/// of an earlier number shortens the way of a later one; it is kept in a table of a bounded size, where the
/// latest of two silhouettes for one place stays: what is lost costs time and nothing else.
///
/// The image depends on the silhouette alone, and so does the number of steps from it to the cycle. Whether a
/// number itself is on its cycle does not: 135 has the digits of 153, and is one step away from it.
///
/// Most ways end at a known silhouette after few steps; one that does not keeps its whole history to enter
/// it, and a return is looked for there.
class KnownCycles {
 public:
  /// `transformation` has to outlive the object.
  explicit KnownCycles(Transformation& transformation);

  struct Fall {
    const SilhouetteCycle* cycle;  ///< valid as long as the object
    std::uint32_t index;           ///< of the cycle, from 0 on in the order in which they were met
    std::int32_t tail;             ///< steps before the cycle: 0 for a number on it
  };

  /// Where the number `digits`, without zeros in front, falls; nothing if it takes more than `limit` steps
  /// for an iterate, or the number itself, to come back, or if `stop` is set meanwhile. Throws
  /// Refusal as Transformation::apply.
  std::optional<Fall> find(std::string_view digits, std::int32_t limit, const std::atomic<bool>& stop);

  /// The points of a cycle from the least one on.
  std::vector<Decimal> points(const SilhouetteCycle& cycle);

 private:
  struct Entry {
    PackedSilhouette silhouette = 0;
    std::uint32_t cycle = 0;
    std::uint32_t steps = 0;  ///< to the cycle, of a number that is not on it; 0 marks an empty place
  };

  std::optional<Entry> follow(const Silhouette& start, std::size_t limit, const std::atomic<bool>& stop);
  void advance(SilhouetteHistory& history, Silhouette& current, std::size_t steps);
  Entry close(const SilhouetteHistory& history, std::size_t before);
  Entry settle(const SilhouetteHistory& history, std::size_t step, Entry entry);
  std::uint32_t indexOf(SilhouetteCycle cycle);
  std::uint32_t indexOf(std::span<const std::uint32_t> points);
  std::optional<Fall> within(std::int32_t limit, std::uint32_t cycle, std::size_t tail) const;
  bool contains(const SilhouetteCycle& cycle, const Silhouette& silhouette, const Decimal& number);

  std::size_t placeOf(PackedSilhouette silhouette) const;
  const Entry* known(PackedSilhouette silhouette) const;
  void keep(const Entry& entry);

  Transformation& transformation_;
  SmallFalls small_;
  std::deque<SilhouetteCycle> cycles_;
  unsigned tableBits_;
  std::vector<Entry> table_;
  std::size_t used_ = 0;  ///< places of the table
  Decimal image_;
};

}  // namespace zelvion
