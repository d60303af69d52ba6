#pragma once

#include <vector>

#include "engine/atlas/basins.h"

namespace zelvion::atlas {

/// The basins in one list, each cycle once with what was counted for it added up, sorted.
std::vector<Basin> merged(std::vector<Basin> basins);

/// Throws std::logic_error unless the basins hold all numbers below 10^n for each n.
void checkWhole(const Basins& basins);

}  // namespace zelvion::atlas
