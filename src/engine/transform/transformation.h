#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/transform/packed_silhouette.h"
#include "engine/transform/vector_image.h"

namespace zelvion {

/// Separates the numbers of a list.
inline constexpr std::string_view kListSeparator = ", ";

/// The digit-power transformation T for one power k: a number goes to the sum of the k-th powers of its
/// digits. T depends on the silhouette alone, so an image is nine products of a count by a precomputed
/// power.
class Transformation {
 public:
  /// An image with more digits than this is refused.
  static constexpr std::size_t kMaxImageDigits = 1'000'000;
  /// The most digits that a silhouette may have in all for the fast path; above it each product is computed
  /// on its own.
  static constexpr std::uint32_t kMaxCount = 1'000'000;

  /// Works out the powers of the nine digits that are short enough to be of use. `k` is at least 1.
  explicit Transformation(std::int32_t k);

  /// Puts the image of every number with this silhouette into `image` and returns the silhouette of the
  /// image. Throws Refusal, whose sentence tells the length of the image, if it would have more than
  /// kMaxImageDigits digits.
  Silhouette apply(const Silhouette& silhouette, Decimal& image);
  Decimal image(const Silhouette& silhouette);
  /// Appends the texts of the images of many silhouettes to `list`, kListSeparator before each. Throws as
  /// `apply`.
  void appendImages(std::span<const PackedSilhouette> silhouettes, std::string& list);
  /// Iterates from `silhouette`: the silhouettes of the images go into `silhouettes`, the last one into
  /// `silhouette`, too. Returns the number of steps taken: as a rule all of them; fewer, or none, where an
  /// image is long or a count does not fit, which needs apply(). Calling apply() on any silhouette reached is
  /// never refused.
  std::size_t iterate(Silhouette& silhouette, std::span<PackedSilhouette> silhouettes);

  /// The greatest k with which the image of a number with this silhouette has no more than `maxDigits`
  /// digits; the greatest of all for the digits 0 and 1 alone.
  static std::int32_t greatestPower(const Silhouette& silhouette, std::size_t maxDigits = kMaxImageDigits);

  std::int32_t k() const noexcept { return k_; }
  /// The k-th power of `digit`, 1 to 9, which must not be longer than kMaxImageDigits.
  Decimal power(int digit) const;

 private:
  [[noreturn]] void refuse(std::size_t digits, const Silhouette& silhouette) const;
  Decimal imageInParts(const Silhouette& silhouette) const;
  void makeVectorRows(const Decimal& greatestPower);
  bool inVectors(const Silhouette& silhouette) const;
  std::size_t vectors() const;

  std::int32_t k_;
  int greatestDigit_ = 9;  ///< the powers of the digits above it are too long
  std::size_t stride_ = 0;
  std::vector<std::uint32_t> rows_;                ///< nine rows of stride_ limbs, of the digits 1 to 9
  std::vector<vector_image::RowPair> vectorRows_;  ///< the same in limbs of four digits; empty if too long
  std::vector<std::uint64_t> sums_;
  std::vector<std::uint32_t> scratch_;
  std::vector<std::uint32_t> limbs_;
};

}  // namespace zelvion
