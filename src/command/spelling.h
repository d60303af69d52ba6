#pragma once

#include <span>
#include <string_view>

namespace zelvion::command {

/// The one of `names` that `word` may be a typo of: the nearest by wrong, missing, extra and transposed
/// characters, the first of several. Empty if none is near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> names);

}  // namespace zelvion::command
