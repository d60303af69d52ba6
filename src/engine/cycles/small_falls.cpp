#include "engine/cycles/small_falls.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <vector>

namespace zelvion {
namespace {

constexpr std::uint32_t kPlaces = 1 << 22;
constexpr std::size_t kPlaceDigits = 7;
constexpr std::uint32_t kHalf = 1 << 16;

}  // namespace

// The images of all numbers that have a place have one themselves. They come from at most 11,440 multisets of
// seven digits, so that the length of a tail and the index of a cycle both fit half a word.
SmallFalls::SmallFalls(std::int32_t k) : images_(k) {
  const std::size_t digits = images_.digitsBelow(kPlaces - 1);
  if (digits < kPlaceDigits) return;
  places_.reset(static_cast<std::uint32_t*>(std::calloc(kPlaces, sizeof(std::uint32_t))));
  if (places_ == nullptr) throw std::bad_alloc();
  maxDigits_ = digits;
}

SmallFalls::Fall SmallFalls::find(std::string_view digits, const NewCycle& newCycle) {
  const auto image = static_cast<std::uint32_t>(images_.of(digits));
  const std::uint32_t known = places_[image] != 0 ? places_[image] : follow(image, newCycle);
  const Fall fall{known % kHalf - 1, known / kHalf};
  if (fall.tail > 0 || digits.size() > kPlaceDigits) return {fall.cycle, fall.tail + 1};
  // The image is on its cycle, and maybe the number is: then it has been followed.
  std::uint32_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool onCycle = number < kPlaces && places_[number] != 0 && places_[number] < kHalf;
  return {fall.cycle, onCycle ? 0U : 1U};
}

std::uint32_t SmallFalls::follow(std::uint32_t number, const NewCycle& newCycle) {
  std::vector<std::uint32_t> path;
  for (; places_[number] == 0; number = static_cast<std::uint32_t>(images_.of(number))) {
    path.push_back(number);
    places_[number] = kHalf - 1;  // no cycle's: a number of this path
  }
  std::uint32_t known = places_[number];
  if (known == kHalf - 1) {
    const auto first = std::ranges::find(path, number);
    known = newCycle(std::span(first, path.end())) + 1;
    std::for_each(first, path.end(), [&](std::uint32_t point) { places_[point] = known; });
    path.erase(first, path.end());
  }
  for (; !path.empty(); path.pop_back()) places_[path.back()] = known += kHalf;
  return known;
}

}  // namespace zelvion
