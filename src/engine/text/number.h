#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers that people type, read and refused here and nowhere else.
namespace zelvion::text {

/// The longest text whose characters are counted or transformed: an index of 16 bits still has to step past
/// the last one.
inline constexpr std::size_t kMaxCharacters = 32'766;

/// Throws Refusal unless `text` holds decimal digits only.
void requireDigits(std::string_view text);

/// The digits that `text` holds, without zeros in front. Throws Refusal if it is empty or holds anything
/// else.
std::string_view digitsOf(std::string_view text);

/// Throws Refusal if `text` has more than `limit` characters.
void requireLength(std::string_view text, std::size_t limit = kMaxCharacters);

/// The value of a text of digits with at most one "-" in front. Throws Refusal at anything else and outside
/// -2,147,483,648 to 2,147,483,647.
std::int32_t valueOf(std::string_view text);

/// The value of a number as a double: an optional sign and decimal digits with at most one "." or "," among
/// them, blanks around it allowed. Throws Refusal, with a sentence that begins with `name`, at what is no
/// number.
double toDouble(std::string_view text, std::string_view name);

/// The same number rounded to the nearest integer, ties to the even one; throws Refusal also if that is no
/// signed 32-bit integer.
std::int32_t toInt32(std::string_view text, std::string_view name);
/// The same for a `value` that was read from `text`.
std::int32_t toInt32(double value, std::string_view text, std::string_view name);

/// `value` rounded likewise, or nothing if that is no signed 16-bit integer.
std::optional<std::int16_t> toInt16(double value);

/// Throws the Refusal of a number, typed as `text`, that has to lie from `least` to `most`.
[[noreturn]] void refuseRange(std::string_view text, std::string_view name, std::int64_t least,
                              std::int64_t most);

/// The digits of a number in groups of three, as a sentence has them.
std::string grouped(std::uint64_t number);

}  // namespace zelvion::text
