#pragma once

#include <cstddef>
#include <string>

namespace zelvion {

/// Closes the list of the points of a cycle that ends `report`, and appends the line with its extreme points.
/// The list starts with a point of `size` characters at `begin`. If there are several, all points are digits,
/// except that the first may be a signed zero.
void endCycleReport(std::string& report, std::size_t begin, std::size_t size);

}  // namespace zelvion
