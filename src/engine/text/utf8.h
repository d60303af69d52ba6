#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts are UTF-8. What is counted and cut here are characters (code points), never bytes. A byte that is no
/// part of valid UTF-8 counts as a character of its own, so that every text has a length.
namespace zelvion::text {

/// The line end of box texts and result files.
inline constexpr std::string_view kLineEnd = "\r\n";

/// The length in bytes of the character that begins at the front of `text`, which must not be empty.
std::size_t firstCharacterSize(std::string_view text) noexcept;

/// How many characters `text` has.
std::size_t length(std::string_view text) noexcept;

/// The first `count` characters of `text`, or all of it if there are fewer.
std::string_view prefix(std::string_view text, std::size_t count) noexcept;

/// `text` in one short line for a message: its beginning and end with "…" between them if it is long, control
/// characters as blanks.
std::string shortened(std::string_view text);

/// The same between the quotation marks of a French sentence.
std::string quoted(std::string_view text);

/// The text of a file: bytes that are no valid UTF-8 are read as Windows-1252; a byte-order mark is dropped.
std::string fromBytes(std::string_view bytes);

/// Takes the first line off `text`, which must not be empty, and returns it without its end, LF or CR LF; the
/// last one may have none.
std::string_view takeLine(std::string_view& text) noexcept;

/// How a character is called in a French sentence: « a », or its name where it cannot be seen.
std::string characterName(std::string_view character);

}  // namespace zelvion::text
