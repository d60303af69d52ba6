#include "desktop/fonts.h"

#include <QFontDatabase>

namespace zelvion {

QFont screenFont(const Font& font) {
  QFont result;
  for (const char* family : {"MS Sans Serif", "Liberation Sans"}) {
    if (QFontDatabase::hasFamily(family)) {
      result.setFamily(family);
      break;
    }
  }
  result.setPixelSize(qRound(font.quarterPoints / 3.0));
  result.setBold(font.bold);
  result.setItalic(font.italic);
  return result;
}

}  // namespace zelvion
