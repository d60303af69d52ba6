#pragma once

#include <QFont>

namespace zelvion {

/// The program's font in a size: MS Sans Serif where it is installed, else one of about its widths.
QFont screenFont(int pixels);

}  // namespace zelvion
