#pragma once

namespace zelvion {

/// Gives the application its name, icon and font, the French texts of the toolkit whatever the locale, and
/// what assistive tools need to read its texts. To be called once, before the first window opens.
void prepare();

}  // namespace zelvion
