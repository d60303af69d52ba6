#pragma once

#include <string>

namespace zelvion {

/// Appends `text` to the file at `path`, whole or not at all, and creates the file if need be.
/// Throws std::system_error; the file is then as it was before. The signal of a file that has grown to its
/// limit has to be ignored.
void appendWhole(const std::string& path, const std::string& text);

/// The bytes of the file at `path`. Throws std::system_error.
std::string readWhole(const std::string& path);

}  // namespace zelvion
