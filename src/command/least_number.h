#pragma once

#include <string>

#include "engine/transform/silhouette.h"

namespace zelvion::command {

/// The least number with a silhouette, runs of one digit written short for people: "3789 suivi de 973 fois
/// 9".
std::string leastNumberText(const Silhouette& silhouette);

}  // namespace zelvion::command
