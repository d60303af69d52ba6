#pragma once

#include <map>
#include <span>
#include <string>

#include "command/atlas_facts.h"

namespace zelvion::command {

/// The files of an atlas by name: "index.html", an overview, and for each power a page "k3.html" with the
/// points of its cycles and the counts of its tails as "k3-cycles.csv" and "k3-pas.csv". The powers follow
/// one another. The pages need nothing but themselves.
std::map<std::string, std::string> atlasPages(std::span<const AtlasFacts> powers);

}  // namespace zelvion::command
