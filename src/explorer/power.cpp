#include "explorer/power.h"

#include <sys/mman.h>

#include <algorithm>
#include <bit>
#include <thread>

#include "engine/atlas/cycle_list.h"
#include "engine/atlas/range.h"
#include "engine/atlas/silhouette_map.h"
#include "explorer/picture.h"

namespace zelvion {
namespace {

unsigned threads() { return std::max(1U, std::thread::hardware_concurrency()); }

std::size_t bytesOf(const std::vector<Decimal>& numbers) {
  constexpr std::size_t kHeap = 16;  // what an allocation costs beside its bytes
  std::size_t bytes = numbers.capacity() * sizeof(Decimal);
  for (const Decimal& number : numbers) bytes += kHeap + number.limbs().size_bytes();
  return bytes;
}

}  // namespace

Power::Power(pages::AtlasFacts known) : facts(std::move(known)) {
  for (const atlas::Cycle& cycle : facts.cycles) {
    basins.push_back(facts.basinOf(cycle));
    longestOrder = std::max(longestOrder, cycle.order());
  }
  largestShare = facts.largestShare();
  if (facts.k > 1 && facts.k <= atlas::kMaxMapPower) map = pages::mapLayout(facts);
  if (!isCounted()) return;
  tails = facts.basins.tails();
  leastByTail = facts.basins.leastByTail();
  tailsChart = pages::tailsChart(tails, facts.basins.digits, kUnitSquare);
}

std::size_t Power::placeOf(const Decimal& least) const {
  const auto place =
      std::ranges::find_if(facts.cycles, [&](const atlas::Cycle& cycle) { return cycle.least() == least; });
  return static_cast<std::size_t>(place - facts.cycles.begin());
}

std::size_t Power::bytes() const {
  std::size_t bytes =
      sizeof(Power) + bytesOf(tails) + bytesOf(leastByTail) + tails.size() * sizeof(pages::BarChart::Bar);
  for (const atlas::Cycle& cycle : facts.cycles) bytes += bytesOf(cycle.points());
  for (const atlas::Basin& basin : facts.basins.basins)
    bytes += bytesOf(basin.cycle.points()) + bytesOf(basin.below) + bytesOf(basin.tails) +
             bytesOf(basin.leastByTail);
  if (map) bytes += map->nodes.size() * (sizeof(pages::MapSpot) + sizeof(atlas::MapNode) + 64);
  return bytes;
}

std::shared_ptr<const Power> listedPower(std::int32_t k, Progress& progress) {
  auto cycles = atlas::cyclesOf(k, threads(), progress);
  if (!cycles) return nullptr;
  return std::make_shared<const Power>(
      pages::AtlasFacts{k, atlas::rangeDigits(k), std::move(*cycles), atlas::Basins{}});
}

std::shared_ptr<const Power> countedPower(const Power& listed, Progress& progress) {
  const std::int32_t k = listed.facts.k;
  const atlas::TableMemory memory{
      .prepare = [](void* block, std::size_t bytes) { ::madvise(block, bytes, MADV_HUGEPAGE); }};
  auto basins = atlas::basinsOf(k, atlas::usualDigits(k), threads(), progress, memory);
  if (!basins) return nullptr;
  return std::make_shared<const Power>(pages::factsOf(k, listed.facts.cycles, std::move(*basins)));
}

Effort countingEffort(std::int32_t k) {
  constexpr double kMultisetsPerSecond = 17e6;  // of one thread
  const int digits = atlas::usualDigits(k);
  double multisets = 1;
  for (int i = 1; i <= 9; ++i) multisets *= static_cast<double>(digits + i) / i;
  return {multisets / kMultisetsPerSecond / threads(),
          std::max<std::size_t>(1, atlas::usefulTable(k, digits) >> 20)};
}

void KeptPowers::keep(std::shared_ptr<const Power> power) {
  std::erase_if(powers_, [&](const auto& kept) { return kept->facts.k == power->facts.k; });
  powers_.push_back(std::move(power));
  std::size_t bytes = 0;
  for (const auto& kept : powers_) bytes += kept->bytes();
  while (bytes > limit_) {
    bytes -= powers_.front()->bytes();
    powers_.pop_front();
  }
}

std::shared_ptr<const Power> KeptPowers::find(std::int32_t k) const {
  const auto place = std::ranges::find_if(powers_, [k](const auto& kept) { return kept->facts.k == k; });
  return place == powers_.end() ? nullptr : *place;
}

}  // namespace zelvion
