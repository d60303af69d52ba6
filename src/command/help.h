#pragma once

#include <array>
#include <span>
#include <string>

#include "command/subcommands.h"

namespace zelvion::command {

/// The options of a call without a subcommand.
inline constexpr std::array kGeneralOptions = {kHelpOption, kHelpAlias,
                                               Option{'V', "version", "", "affiche la version"}};

// Texts for a screen of 80 columns. The completions of the shells parse their lists.
std::string helpOf(const Subcommand& subcommand);
std::string generalHelp(std::span<const Subcommand* const> subcommands);

}  // namespace zelvion::command
