#pragma once

#include <cstddef>
#include <memory>

#include "explorer/path.h"
#include "explorer/picture.h"
#include "explorer/power.h"

namespace zelvion {

/// The values of a path over its steps, in parts of 10^d or logarithmic. Tail and cycle differ in line and
/// marks, not in colour alone.
std::shared_ptr<const Picture> pathPicture(std::shared_ptr<const Path> path, bool logarithmic);

/// How many numbers have a tail of each length, as a histogram. The power must be counted.
std::shared_ptr<const Picture> tailsPicture(std::shared_ptr<const Power> power);

/// The ring of the cycle at this place of the list.
std::shared_ptr<const Picture> ringPicture(std::shared_ptr<const Power> power, std::size_t cycle);

/// The rings of all cycles in rows, as large as their shares, or as their orders where nothing is counted;
/// the one that the path leads to is marked.
std::shared_ptr<const Picture> ringsPicture(std::shared_ptr<const Power> power,
                                            const std::shared_ptr<const Path>& path);

/// All multisets and where they lead, with the path over it if there is one; the rings alone for a power
/// that has too many multisets.
std::shared_ptr<const Picture> mapPicture(std::shared_ptr<const Power> power,
                                          std::shared_ptr<const Path> path);

/// "point fixe 153" or "cycle d’ordre 28 qui passe par 6514".
QString cycleName(const atlas::Cycle& cycle);

}  // namespace zelvion
