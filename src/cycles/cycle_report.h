#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "transform/transformation.h"

namespace zelvion {

/// Calls its argument with the texts of the points of a cycle, one after another.
using PointLister = std::function<void(const TextTaker&)>;

/// Appends to `report` the list of the `order` points of a cycle from `point` on, a line end, and the line of
/// its extreme points. `listFurther` lists the points behind `point`, which becomes the last one.
void appendCycleReport(std::string& report, std::string& point, std::int32_t order,
                       const PointLister& listFurther);

}  // namespace zelvion
