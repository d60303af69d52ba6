#pragma once

#include <cstddef>

namespace zelvion {

/// What stands where a text was too great, and in the box that tells it.
inline constexpr const char* kTooLittleMemory =
    "La mémoire ne suffit pas pour afficher ce texte. "
    "Si c’est un rapport, il est en entier dans son fichier.";

/// Returns if `bytes` more can be had now with enough to spare for the window to work on; else throws
/// std::bad_alloc. Asked before a large text is shown: a toolkit that runs out of memory halfway may not
/// recover.
void requireMemory(std::size_t bytes);

}  // namespace zelvion
