#include "engine/atlas/cycle_list.h"

#include <algorithm>
#include <cassert>

#include "engine/atlas/cycle_walk.h"

namespace zelvion::atlas {

std::optional<std::vector<Cycle>> cyclesOf(std::int32_t k, unsigned threads, Progress& progress, Part part) {
  assert(part.number >= 1 && part.number <= part.count);
  const Rarity rarity = Rarity::of(k);
  switch ((rangeDigits(k) + kLongDigits - 1) / kLongDigits) {
    case 1:
    case 2:
      return walkCycles<2>(k, rarity, threads, progress, part);
    case 3:
      return walkCycles<3>(k, rarity, threads, progress, part);
    case 4:
      return walkCycles<4>(k, rarity, threads, progress, part);
    case 5:
      return walkCycles<5>(k, rarity, threads, progress, part);
    case 6:
      return walkCycles<6>(k, rarity, threads, progress, part);
    default:
      return walkCycles<8>(k, rarity, threads, progress, part);
  }
}

std::vector<Cycle> joined(const std::vector<std::vector<Cycle>>& parts) {
  std::vector<Cycle> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

}  // namespace zelvion::atlas
