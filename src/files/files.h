#pragma once

#include <string>

namespace zelvion {

/// Appends `text` to the file at `path`, whole or not at all even if the process is killed, and creates the
/// file if necessary. It survives a power cut only after `syncFile`. Throws std::system_error, and leaves the
/// file as it was. SIGXFSZ must be ignored.
void appendWhole(const std::string& path, const std::string& text);

/// Flushes the file at `path` to disk. Throws std::system_error.
void syncFile(const std::string& path);

/// The bytes of the file at `path`, at most 2^30. Throws std::system_error, EFBIG for a larger one.
std::string readWhole(const std::string& path);

}  // namespace zelvion
