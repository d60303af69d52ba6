#pragma once

#include <cstddef>
#include <cstdint>

namespace zelvion::atlas {

/// Where the numbers of a multiset end: the number of the cycle, and after how many steps for one that is not
/// on it (at least 1). In one word, not 0, for the table.
struct Fate {
  static constexpr unsigned kCycleBits = 10;

  std::size_t cycle;
  std::size_t steps;

  std::uint64_t word() const { return std::uint64_t{steps} << kCycleBits | cycle; }
  static Fate of(std::uint64_t word) {
    return {static_cast<std::size_t>(word & ((1U << kCycleBits) - 1)),
            static_cast<std::size_t>(word >> kCycleBits)};
  }
};

}  // namespace zelvion::atlas
