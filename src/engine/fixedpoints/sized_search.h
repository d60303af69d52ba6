#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion {

/// The complete search for the fixed points of one length. It parts into pieces, by how many there are of the
/// greatest digits.
class SizedSearch {
 public:
  virtual ~SizedSearch() = default;
  virtual std::size_t pieces() const = 0;
  /// Appends what the piece holds to `found`, in no order. Returns early when `stop` is set.
  virtual void run(std::size_t piece, const std::atomic<bool>& stop, std::vector<Decimal>& found) const = 0;
};

/// The search for numbers of `length` digits, at most kLastSearchedPower, with these powers of the digits 0
/// to 9.
std::unique_ptr<SizedSearch> makeSearch(const std::array<Decimal, 10>& powers, std::size_t length);

}  // namespace zelvion
