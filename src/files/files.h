#pragma once

#include <string>

namespace zelvion {

/// Appends `text` to the file at `path`, whole or not at all, and creates the file if need be: a kill in the
/// middle changes nothing in that. After a power cut it is there for sure only if `syncFile` came after it.
/// Throws std::system_error; the file is then as it was before. The signal of a file that has grown to its
/// limit has to be ignored.
void appendWhole(const std::string& path, const std::string& text);

/// Returns when all that was appended to the file at `path` is on the disk. Throws std::system_error.
void syncFile(const std::string& path);

/// The bytes of the file at `path`, at most 2^30. Throws std::system_error, EFBIG for a larger one.
std::string readWhole(const std::string& path);

}  // namespace zelvion
