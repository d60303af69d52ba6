#pragma once

#include <map>
#include <span>
#include <string>

#include "pages/facts.h"

namespace zelvion::pages {

/// The files of an atlas by name: "index.html", the way in; for each power a page "k3.html" with its tables
/// as "k3-bassins.csv", "k3-cycles.csv" and "k3-pas.csv", and the map of a small one as "k3-carte.svg"; the
/// proof, a table across powers and a checker that shares nothing with this program. The powers follow one
/// another. The pages need nothing but themselves.
std::map<std::string, std::string> atlasPages(std::span<const AtlasFacts> powers);

}  // namespace zelvion::pages
