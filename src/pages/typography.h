#pragma once

#include <string>
#include <string_view>

namespace zelvion::pages {

/// A French text for the screen: no-break spaces in place of those before ":", ";", "!", "?" and "»" and
/// behind "«", and "’" for each "'" behind a letter. Bytes that are no UTF-8, as a call may have them, are
/// read as Windows-1252.
std::string typeset(std::string_view bytes);

/// "1 point", "2 points": `word` takes an "s" from 2 on.
std::string counted(std::size_t count, std::string_view word);

// Numbers for French readers: digits in groups, and a share as "41,3 %", in powers of ten where it is tiny.
std::string groupedDigits(std::string_view digits);
std::string percentText(double share);
/// "10⁸".
std::string powerOfTenText(int exponent);
/// A time, for example "2 min 5 s".
std::string durationText(double seconds);
/// A number with at most `decimals` decimals, for a picture.
std::string decimalText(double value, int decimals = 1);
/// The same with a comma, for a reader.
std::string decimalComma(double value, int decimals);

}  // namespace zelvion::pages
