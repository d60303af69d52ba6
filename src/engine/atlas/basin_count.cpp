#include "engine/atlas/basins.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "engine/atlas/basin_join.h"
#include "engine/atlas/basin_worker.h"
#include "engine/atlas/range.h"

namespace zelvion::atlas {
namespace {

template <std::size_t kLimbs>
Basin basinOf(const BasinPlan<kLimbs>& plan, Cycle cycle, const Tally& tally) {
  Basin basin{std::move(cycle), {}, {}, {}};
  for (std::size_t n = 0; n <= plan.digits; ++n) {
    Weight sum;
    for (std::size_t nonzero = 0; nonzero <= n; ++nonzero) {
      // Of the places of those digits, which are counted among all, the ones among the last n.
      Weight weight = tally.byNonzero[nonzero];
      weight.divideBy(plan.binomials[plan.digits][nonzero]);
      sum += weight * plan.binomials[n][nonzero];
    }
    basin.below.push_back(sum.decimal());
  }
  tally.putTails(basin);
  return basin;
}

template <std::size_t kLimbs>
std::optional<Basins> count(std::int32_t k, int digits, unsigned threads, Progress& progress,
                            const TableMemory& memory, Part part) {
  BasinPlan<kLimbs> plan(k, digits, progress, memory);
  std::vector<BasinNode<kLimbs>> pieces;
  BasinNode<kLimbs> root;
  root.left = static_cast<std::size_t>(digits);
  std::size_t place = 0;
  expand(plan, root, 9, BasinWorker<kLimbs>::kPieceDigit, [&](const BasinNode<kLimbs>& node) {
    if (part.has(place++)) pieces.push_back(node);
  });
  progress.pieces = pieces.size();
  std::vector<BasinWorker<kLimbs>> workers;
  for (unsigned i = 0; i < std::max(threads, 1U); ++i) workers.emplace_back(plan);
  if (!runPieces(pieces.size(), threads, progress,
                 [&](std::size_t i, unsigned worker) { workers[worker].run(pieces[i]); })) {
    return std::nullopt;
  }
  std::vector<Basin> basins;
  for (const BasinWorker<kLimbs>& worker : workers) {
    for (std::size_t i = 0; i < worker.tallies().size(); ++i) {
      const Tally& tally = *worker.tallies()[i];
      if (!tally.isEmpty()) basins.push_back(basinOf(plan, plan.cycles.all()[i], tally));
    }
  }
  return Basins{k, digits, merged(std::move(basins))};
}

}  // namespace

int usualDigits(std::int32_t k) {
  constexpr std::int32_t kLastCountedWhole = 45;
  constexpr int kDigitsBeyond = 18;
  return k <= kLastCountedWhole ? rangeDigits(k) : kDigitsBeyond;
}

std::size_t usefulTable(std::int32_t k, int digits) {
  const auto width = static_cast<std::size_t>(std::max(digits, rangeDigits(k)));
  return sizeof(std::uint64_t) * BasinPlan<1>::wantedSlots(width);
}

std::optional<Basins> basinsOf(std::int32_t k, int digits, unsigned threads, Progress& progress,
                               TableMemory memory, Part part) {
  assert(k >= 1 && k <= kMaxPower && digits >= 1 && digits <= kMaxCountedDigits);
  assert(part.number >= 1 && part.number <= part.count);
  const auto width = static_cast<std::size_t>(std::max(digits, rangeDigits(k)));
  auto counted = withLimbsFor<1, 2, 3, 4, 8>(
      width, [&]<std::size_t kLimbs>() { return count<kLimbs>(k, digits, threads, progress, memory, part); });
  if (counted && part.count == 1) checkWhole(*counted);
  return counted;
}

}  // namespace zelvion::atlas
