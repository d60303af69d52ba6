#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/cycles/silhouette_history.h"
#include "engine/transform/orbit.h"

namespace zelvion {

/// The first return of an iteration: iterate `step` equals iterate `first`, which is at least 1.
struct Return {
  std::int32_t step;
  std::int32_t first;

  std::int32_t order() const noexcept { return step - first; }
};

/// Iterates a start value until an iterate comes back; the start itself takes no part in the comparison. For
/// one start whose history is wanted, and for texts that are no numbers; KnownCycles serves many numbers.
///
/// An iterate is the image of the silhouette before it, so the silhouettes are all that is kept. From the
/// first return on every value has been there before: it is enough to look now and then whether the latest
/// silhouette has been, and where it was last; that tells the order, and halving finds the first return.
/// Where that is one of silhouettes only, of two numbers with their digits in another order, the numbers that
/// come back are their images, one step later.
class CycleFinder {
 public:
  /// `power` has to outlive the finder.
  CycleFinder(DigitPower& power, const std::string& start);

  /// Goes on up to step `last` and returns the first return if it is there by then. Throws as Orbit::advance.
  std::optional<Return> advance(std::int32_t last);

  /// Appends the texts of the points of the cycle that `found` closes after the first one to `list`,
  /// kListSeparator before each.
  void appendFurtherPoints(const Return& found, std::string& list) const;
  /// The text of the iterate that was reached.
  std::string current() const;

 private:
  void advanceText();
  void advanceTo(std::int32_t step);
  void lookForReturn();
  Decimal iterate(std::size_t step) const;

  DigitPower& power_;
  Orbit orbit_;
  SilhouetteHistory history_;  ///< from entry 0, the start, on
  std::int32_t step_ = 0;
  std::optional<Return> return_;
};

}  // namespace zelvion
