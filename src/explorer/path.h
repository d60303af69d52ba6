#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/parallel/pieces.h"
#include "pages/chart.h"

namespace zelvion {

/// Where a number leads: a value that does not change.
struct Path {
  std::int32_t k = 0;
  std::string p;                  ///< its digits, without zeros in front
  std::vector<Decimal> iterates;  ///< from p to the cycle and once around it, up to its first point again
  std::size_t tail = 0;           ///< steps before the cycle
  std::size_t order = 0;          ///< of the cycle; 0 if none was found
  Decimal least;                  ///< of the cycle
  int digits = 0;                 ///< every orbit falls below 10 to the power of this
  std::string list;               ///< the iterates with their steps, one a line
  pages::PathChart linear;        ///< in the unit square
  pages::PathChart logarithmic;

  /// "789 : 4 pas, puis le point fixe 153", long numbers shortened; in HTML with a link on each of them.
  QString sentence(bool linked) const;
};

/// The most steps that are followed.
inline constexpr std::int32_t kMostSteps = 1'000'000;

/// The path of `p`, a text of digits without zeros in front; null if it was stopped. Throws Refusal.
std::shared_ptr<const Path> pathOf(std::int32_t k, const std::string& p, Progress& progress);

/// A number in a short line: its beginning, its end and how many digits it has if it is long. In HTML it is a
/// link to all of it.
QString shownNumber(const std::string& digits, bool linked);

}  // namespace zelvion
