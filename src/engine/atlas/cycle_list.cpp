#include "engine/atlas/cycle_list.h"

#include <algorithm>
#include <cassert>

#include "engine/atlas/cycle_walk.h"

namespace zelvion::atlas {

std::optional<std::vector<Cycle>> cyclesOf(std::int32_t k, unsigned threads, Progress& progress, Part part) {
  assert(part.number >= 1 && part.number <= part.count);
  const Rarity rarity = Rarity::of(k);
  return withLimbsFor<2, 3, 4, 5, 6, 8>(static_cast<std::size_t>(rangeDigits(k)), [&]<std::size_t kLimbs>() {
    return walkCycles<kLimbs>(k, rarity, threads, progress, part);
  });
}

std::vector<Cycle> joined(const std::vector<std::vector<Cycle>>& parts) {
  std::vector<Cycle> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

}  // namespace zelvion::atlas
