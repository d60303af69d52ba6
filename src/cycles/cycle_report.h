#pragma once

#include <cstdint>
#include <string>

#include "transform/orbit.h"

namespace zelvion {

/// Appends to `report` the list of the `order` points of a cycle from `point` on, a line end, and the line of
/// its extreme points. `point` becomes the last point listed. Throws as Orbit::advance.
void appendCycleReport(std::string& report, DigitPower& power, std::string& point, std::int32_t order);

}  // namespace zelvion
