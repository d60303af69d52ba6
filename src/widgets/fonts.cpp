#include "widgets/fonts.h"

#include <QFontDatabase>

namespace zelvion {
namespace {

/// The family of all fonts, or none where the system's own has to do. To ask for one takes a millisecond.
QString family() {
  for (const char* family : {"MS Sans Serif", "Liberation Sans"}) {
    if (QFontDatabase::hasFamily(family)) return family;
  }
  return {};
}

}  // namespace

QFont screenFont(int pixels) {
  static const QString kFamily = family();
  QFont result;
  if (!kFamily.isEmpty()) result.setFamily(kFamily);
  result.setPixelSize(pixels);
  return result;
}

}  // namespace zelvion
