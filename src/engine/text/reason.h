#pragma once

#include <string>
#include <system_error>

namespace zelvion::text {

/// Why the system refused something, as a French clause.
std::string reasonOf(const std::error_code& error);

}  // namespace zelvion::text
