#pragma once

#include <cstddef>

namespace zelvion {

/// Returns if `bytes` more can be had now with enough to spare for the window to work on; else throws
/// std::bad_alloc. Asked before a large text is shown: a toolkit that runs out of memory halfway may not
/// recover.
void requireMemory(std::size_t bytes);

}  // namespace zelvion
