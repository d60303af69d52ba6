#pragma once

#include <string>
#include <string_view>

namespace zelvion::command {

/// A French text for the screen: no-break spaces in place of those before ":", ";", "!", "?" and "»" and
/// behind "«", and "’" for each "'" behind a letter. Bytes that are no UTF-8, as a call may have them, are
/// read as Windows-1252.
std::string typeset(std::string_view bytes);

/// "1 point", "2 points": `word` takes an "s" from 2 on.
std::string counted(std::size_t count, std::string_view word);

}  // namespace zelvion::command
