#pragma once

#include <cstdint>
#include <string_view>

/// Numbers that people type: an optional sign and decimal digits with at most one "." or "," among them;
/// blanks around are allowed. Each function throws std::invalid_argument, with a French sentence that begins
/// with `name` and shows the text, at what is no number or out of range.
namespace zelvion::text {

/// The number as a double-precision value.
double toDouble(std::string_view text, std::string_view name);

/// The number rounded to the nearest integer, ties to the even one, as a signed 32-bit integer.
std::int32_t toInt32(std::string_view text, std::string_view name);

/// `value` rounded likewise to a signed 16-bit integer; `text` is where it comes from, for the sentence.
std::int16_t toInt16(double value, std::string_view text, std::string_view name);

}  // namespace zelvion::text
