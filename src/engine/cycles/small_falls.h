#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

#include "engine/transform/short_images.h"

namespace zelvion {

/// Tells where numbers fall whose images are below a few million. Each number below that has a place of its
/// own in an array, which takes no search and no comparison. There are such numbers for the powers up to 6.
class SmallFalls {
 public:
  struct Fall {
    std::uint32_t cycle;
    std::uint32_t tail;  ///< steps before the cycle: 0 for a number on it
  };
  /// Gets the points of a cycle that is met for the first time, in their order, and returns its index.
  using NewCycle = std::function<std::uint32_t(std::span<const std::uint32_t> points)>;

  explicit SmallFalls(std::int32_t k);

  /// Whether numbers of so many digits can be asked for.
  bool hold(std::size_t digits) const noexcept { return digits <= maxDigits_; }
  /// Where the number `digits`, of 1 digit or more, falls.
  Fall find(std::string_view digits, const NewCycle& newCycle);

 private:
  struct Free {
    void operator()(std::uint32_t* places) const noexcept { std::free(places); }
  };

  std::uint32_t follow(std::uint32_t number, const NewCycle& newCycle);

  ShortImages images_;
  std::size_t maxDigits_ = 0;
  /// For each number its tail in the upper half and its cycle's index and one in the lower one; 0 where
  /// nothing is known yet. The system clears what is touched alone.
  std::unique_ptr<std::uint32_t[], Free> places_;
};

}  // namespace zelvion
