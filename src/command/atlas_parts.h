#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "engine/atlas/basins.h"
#include "engine/atlas/cycle_list.h"

namespace zelvion::command {

/// What one of several machines has worked out of the atlas of a power: a JSON object in a file.
struct AtlasPart {
  std::int32_t k = 0;
  atlas::Part part;
  std::vector<atlas::Cycle> cycles;
  std::optional<atlas::Basins> basins;
};

std::string jsonOf(const AtlasPart& part);

/// All parts of one power, from files, joined. Throws std::runtime_error, with a French sentence, at a file
/// that cannot be read or holds no whole part, and where parts are missing, doubled, or not of one work.
AtlasPart joinedParts(std::span<const std::string> files);

}  // namespace zelvion::command
