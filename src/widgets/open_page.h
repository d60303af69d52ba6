#pragma once

#include <string>

namespace zelvion {

/// Opens a page in the user's browser and returns at once; false if none can be started.
bool openPage(const std::string& address);

/// The address of the manual: that beside the program, that of the sources around the build, or that of the
/// system. Empty if there is none.
std::string manualAddress();

}  // namespace zelvion
