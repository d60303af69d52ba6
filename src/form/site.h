#pragma once

#include <string_view>

#include "form/desktop.h"

namespace zelvion {

// The pages of the site that goes with the program.
inline constexpr std::string_view kTheoryPage = "/mathfon/velmoire.php";
inline constexpr std::string_view kHomePage = "/index.php";
inline constexpr std::string_view kDynamicsPage = "/systdyn.php";
inline constexpr std::string_view kInstructionsPage = "/zelvion.php";

/// Opens a page of the site, whose address is set when the program is configured (ZELVION_SITE), or tells
/// that it cannot be opened.
void openPage(Desktop& desktop, std::string_view page);

}  // namespace zelvion
