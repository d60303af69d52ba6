#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "engine/atlas/basins.h"
#include "engine/atlas/fate.h"
#include "engine/atlas/found_cycles.h"
#include "engine/atlas/least_number.h"
#include "engine/atlas/range.h"
#include "engine/atlas/tail_table.h"
#include "engine/atlas/weight.h"
#include "engine/parallel/pieces.h"
#include "engine/transform/power_multiples.h"

namespace zelvion::atlas {

/// What the threads of a count of basins share.
template <std::size_t kLimbs>
struct BasinPlan {
  BasinPlan(std::int32_t k, int numberDigits, Progress& counted, const TableMemory& memory)
      : digits(static_cast<std::size_t>(numberDigits)),
        width(std::max(digits, static_cast<std::size_t>(rangeDigits(k)))),
        progress(counted),
        powers(digitPowers(k), width),
        table(std::min(memory.bytes / sizeof(std::uint64_t), wantedSlots(width)), memory.prepare),
        cycles(powers, counted) {
    for (std::size_t n = 0; n < binomials.size(); ++n) {
      binomials[n][0] = 1;
      for (std::size_t i = 1; i <= n; ++i) binomials[n][i] = binomials[n - 1][i - 1] + binomials[n - 1][i];
    }
  }

  /// A quarter of the multisets, since images repeat, and at least so many that an answer fits next to a key.
  static std::size_t wantedSlots(std::size_t width) {
    std::uint64_t multisets = 1;
    for (std::uint64_t i = 1; i <= 9 && multisets >> 32 == 0; ++i) multisets = multisets * (width + i) / i;
    return static_cast<std::size_t>(std::max(std::bit_ceil(multisets / 4), std::uint64_t{1} << 18));
  }

  std::size_t digits;  ///< of the numbers that are counted
  std::size_t width;   ///< digits of the numbers and their iterates, at most
  Progress& progress;
  PowerMultiples<kLimbs> powers;
  TailTable table;
  FoundCycles<kLimbs> cycles;
  std::array<std::array<std::uint64_t, kMaxCountedDigits + 1>, kMaxCountedDigits + 1> binomials{};
};

/// A node of the search tree: the multisets with these counts of the digits that were chosen.
template <std::size_t kLimbs>
struct BasinNode {
  FixedSum<kLimbs> sum;  ///< of the powers of the digits chosen
  LeastNumber least;     ///< with the digits chosen, none of them 0
  Weight weight{1};      ///< arrangements, as if the other digits were equal
  std::size_t left = 0;  ///< digits that are not chosen
};

/// Calls action(child) for all choices of the counts of the digits from `digit` down to `last`.
template <std::size_t kLimbs, typename Action>
void expand(const BasinPlan<kLimbs>& plan, const BasinNode<kLimbs>& node, std::size_t digit, std::size_t last,
            Action&& action) {
  if (plan.progress.stop.load(std::memory_order_relaxed)) return;
  BasinNode<kLimbs> child = node;
  for (std::size_t count = 0; count <= node.left; ++count) {
    child.left = node.left - count;
    child.weight = node.weight * plan.binomials[node.left][count];
    if (digit == last) {
      action(child);
    } else {
      expand(plan, child, digit - 1, last, action);
    }
    child.least.add(digit, 1);
    if (child.left > 0) child.sum += plan.powers.multiple(digit, 1);
  }
}

}  // namespace zelvion::atlas
