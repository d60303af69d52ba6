#pragma once

#include <QFont>

#include "form/form.h"

namespace zelvion {

/// The font that stands for `font` on this screen: its family where it is installed, else one of about its
/// widths; a point is 4/3 of a device-independent pixel.
QFont screenFont(const Font& font);

}  // namespace zelvion
