#pragma once

#include <array>
#include <string_view>

namespace zelvion {

/// A row of the catalogue of perfect narcissistic numbers: the numbers of exactly `order` digits that are the
/// sum of their digits' powers of that order.
struct CatalogueRow {
  int order;
  std::string_view text;   ///< as shown
  std::string_view start;  ///< the number that goes to the itineraries; empty where there is none
};

/// The rows of the orders 1 to 39.
extern const std::array<CatalogueRow, 39> kCatalogue;

}  // namespace zelvion
