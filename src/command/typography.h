#pragma once

#include <string>
#include <string_view>

namespace zelvion::command {

/// A French text for the screen: no-break spaces in place of those before ":", ";", "!", "?" and "»" and
/// behind "«", and "’" for each "'" behind a letter.
std::string typeset(std::string_view text);

/// "1 point", "2 points": `word` takes an "s" from 2 on.
std::string counted(std::size_t count, std::string_view word);

}  // namespace zelvion::command
