#pragma once

#include <string>
#include <string_view>

namespace zelvion {

// The pages of the site that goes with the program.
inline constexpr std::string_view kTheoryPage = "/mathfon/velmoire.php";
inline constexpr std::string_view kHomePage = "/index.php";
inline constexpr std::string_view kDynamicsPage = "/systdyn.php";
inline constexpr std::string_view kInstructionsPage = "/zelvion.php";

/// The web address of a page. The address of the site is set when the program is configured (ZELVION_SITE).
std::string addressOf(std::string_view page);

}  // namespace zelvion
