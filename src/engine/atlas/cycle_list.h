#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/atlas/cycle.h"
#include "engine/parallel/pieces.h"

namespace zelvion::atlas {

/// Every cycle of the power `k` (1 to kMaxPower), 0's own among them, sorted by order, then by least point.
/// Works on `threads` threads and tells `progress` how far it is (`found`: the cycles so far); nothing if it
/// was stopped. Of a `part` it returns those of the cycles that lie there: joined() of all parts is the
/// whole. The result depends on nothing else.
std::optional<std::vector<Cycle>> cyclesOf(std::int32_t k, unsigned threads, Progress& progress,
                                           Part part = {});

/// The cycles of several parts in one list, each cycle once, sorted as cyclesOf() sorts.
std::vector<Cycle> joined(const std::vector<std::vector<Cycle>>& parts);

}  // namespace zelvion::atlas
