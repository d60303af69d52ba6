#pragma once

#include <string>
#include <string_view>

#include "form/shell/desktop.h"

namespace zelvion {

// The pages of the site that goes with the program.
inline constexpr std::string_view kTheoryPage = "/mathfon/velmoire.php";
inline constexpr std::string_view kHomePage = "/index.php";
inline constexpr std::string_view kDynamicsPage = "/systdyn.php";
inline constexpr std::string_view kInstructionsPage = "/zelvion.php";

/// Opens the page at `address`, possibly a local file, or reports that it cannot be opened.
void openAddress(Desktop& desktop, const std::string& address);
/// Opens a page of the site, whose address is set at configuration (ZELVION_SITE), or reports that it cannot
/// be opened.
void openPage(Desktop& desktop, std::string_view page);

}  // namespace zelvion
