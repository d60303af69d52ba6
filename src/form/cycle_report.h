#pragma once

#include <cstddef>
#include <string>

namespace zelvion {

/// Ends the list of the points of a cycle, the first of which is at `begin` in `report` and `size` characters
/// long, and which goes on to the end of `report`; appends the line of its extreme points. With more than one
/// point, all are digits, but that the first may be a zero with a sign.
void endCycleReport(std::string& report, std::size_t begin, std::size_t size);

}  // namespace zelvion
