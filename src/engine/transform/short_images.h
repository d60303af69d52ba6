#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zelvion {

/// The images for one power k that fit a machine word, summed from a table of all groups of four digits. For
/// numbers by the million: an image takes a few nanoseconds.
class ShortImages {
 public:
  /// `k` is at least 1.
  explicit ShortImages(std::int32_t k);

  /// The most digits that a number may have whose image is surely at most `bound`.
  std::size_t digitsBelow(std::uint64_t bound) const noexcept { return ninth_ > 0 ? bound / ninth_ : 0; }
  /// The most digits that a number may have here; 0 from k = 21 on.
  std::size_t maxDigits() const noexcept { return maxDigits_; }

  /// The image of a number, which has at most maxDigits() digits.
  std::uint64_t of(std::string_view digits) const noexcept;
  std::uint64_t of(std::uint64_t number) const noexcept;

 private:
  std::uint64_t ninth_;  ///< the power of 9; 0 where it is no word
  std::size_t maxDigits_;
  std::vector<std::uint64_t> groups_;  ///< empty where no number is short
};

}  // namespace zelvion
