#pragma once

#include <compare>
#include <string_view>

namespace zelvion {

/// The order of two texts of digits without a sign: by length, then by their first difference. Throws
/// Refusal if two texts of one length have another character up to there.
std::strong_ordering compareDigits(std::string_view a, std::string_view b);

/// Whether the number `a` is greater than `b`: a text that begins with "-" is below every other, and of two
/// such texts the one of lesser magnitude is the greater. Throws as compareDigits.
bool isGreater(std::string_view a, std::string_view b);

}  // namespace zelvion
