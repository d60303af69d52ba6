#pragma once

#include <span>
#include <string_view>

namespace zelvion::command {

/// The one of `names` that `word` may be a slip for: the nearest by the characters that are wrong, missing,
/// too many or swapped with their neighbour, the first of several. Empty if none is near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> names);

}  // namespace zelvion::command
