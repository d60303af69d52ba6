#pragma once

#include <QString>
#include <string>

#include "engine/arith/decimal.h"
#include "pages/typography.h"

namespace zelvion {

/// A French text with its blanks and apostrophes as they are printed.
inline QString french(std::string_view text) { return QString::fromStdString(pages::typeset(text)); }
/// A whole number with its digits in groups.
inline QString grouped(std::size_t number) {
  return QString::fromStdString(pages::groupedDigits(std::to_string(number)));
}
inline QString grouped(const Decimal& number) {
  return QString::fromStdString(pages::groupedDigits(number.text()));
}
/// A text for a label that reads HTML, which would take the narrow blank in a number for one that breaks.
inline QString inHtml(QString text) { return text.replace(u'\u202F', u'\u00A0'); }

}  // namespace zelvion
