#pragma once

#include <array>
#include <string_view>

namespace zelvion {

/// A row of the catalogue: the narcissistic numbers of exactly `order` digits.
struct CatalogueRow {
  int order;
  std::string_view text;   ///< as shown
  std::string_view start;  ///< becomes the starting point of the itineraries; may be empty
};

/// The rows of the orders 1 to 39.
extern const std::array<CatalogueRow, 39> kCatalogue;

}  // namespace zelvion
