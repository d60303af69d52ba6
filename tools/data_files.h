#pragma once

#include <map>
#include <string>

namespace zelvion {

/// The six data files that lie beside the program, worked out anew: their names and contents.
std::map<std::string, std::string> dataFiles();

}  // namespace zelvion
