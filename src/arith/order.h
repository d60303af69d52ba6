#pragma once

#include <compare>
#include <string_view>

namespace zelvion {

/// The order of two texts of digits without a sign: by length, then by their first difference. Throws
/// std::invalid_argument, with a French sentence, if two texts of one length have another character up to
/// there.
std::strong_ordering compareDigits(std::string_view a, std::string_view b);

/// Whether the number `a` is greater than `b`: a text that begins with "-" is below every other, and of two
/// such texts the one of lesser magnitude is the greater. Throws as compareDigits.
inline bool isGreater(std::string_view a, std::string_view b) {
  const bool negativeA = a.starts_with('-');
  const bool negativeB = b.starts_with('-');
  if (negativeA && negativeB) return isGreater(b.substr(1), a.substr(1));
  if (negativeA || negativeB) return negativeB;
  return a.size() == b.size() ? compareDigits(a, b) > 0 : a.size() > b.size();
}

}  // namespace zelvion
