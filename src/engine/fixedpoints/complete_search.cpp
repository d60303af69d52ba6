#include "engine/fixedpoints/complete_search.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <iterator>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "engine/fixedpoints/sized_search.h"
#include "engine/transform/power_multiples.h"
#include "engine/transform/transformation.h"

namespace zelvion {
namespace {

// The lists of the lengths, reported in order as they become complete.
class Lists {
 public:
  Lists(int k, int first, std::vector<std::size_t> pieces, Progress& progress,
        const std::function<void(const Decimal&)>& found)
      : transformation_(k),
        first_(first),
        left_(std::move(pieces)),
        numbers_(left_.size()),
        progress_(progress),
        found_(found) {}

  // A piece of the list `list` is done, and held these numbers. Any thread may say so.
  void add(std::size_t list, std::vector<Decimal>& numbers) {
    const std::scoped_lock lock(mutex_);
    progress_.found += numbers.size();
    std::ranges::move(numbers, std::back_inserter(numbers_[list]));
    if (progress_.stop) return;
    --left_[list];
    advance();
  }

  // Reports what remains after a stop. Returns how many digits the lists are complete up to.
  int finish() {
    if (!progress_.stop) advance();
    const int complete = first_ - 1 + static_cast<int>(complete_);
    for (; complete_ < numbers_.size(); ++complete_) handOn(numbers_[complete_]);
    return complete;
  }

 private:
  void advance() {
    for (; complete_ < left_.size() && left_[complete_] == 0; ++complete_) handOn(numbers_[complete_]);
  }

  void handOn(std::vector<Decimal>& numbers) {
    std::ranges::sort(numbers);
    for (const Decimal& number : numbers) {
      if (transformation_.image(silhouetteOf(number)) != number)
        throw std::logic_error("Faute interne : " + number.text() + " n'est pas un point fixe.");
      found_(number);
    }
  }

  std::mutex mutex_;
  Transformation transformation_;
  int first_;
  std::vector<std::size_t> left_;  // pieces of each list
  std::vector<std::vector<Decimal>> numbers_;
  std::size_t complete_ = 0;
  Progress& progress_;
  const std::function<void(const Decimal&)>& found_;
};

}  // namespace

int longestFixedPoint(int k) {
  assert(k >= 1);
  const Decimal power = Decimal::power(Decimal(9), static_cast<std::uint64_t>(k));
  // m * 9^k gains a digit for ten times the m, so from some m on there is none.
  std::size_t length = power.digits();
  while ((power * Decimal(length + 1)).digits() > length) ++length;
  return static_cast<int>(length);
}

int findFixedPoints(int k, int first, int last, unsigned threads, Progress& progress,
                    const std::function<void(const Decimal&)>& found, Part part) {
  assert(k >= 1 && k <= kLastSearchedPower && first >= 1 && last <= kLastSearchedPower);
  const std::array<Decimal, 10> powers = digitPowers(k);
  struct Piece {
    std::size_t list;
    std::size_t piece;
  };
  std::vector<std::unique_ptr<SizedSearch>> searches;
  std::vector<std::size_t> counts;
  std::vector<Piece> pieces;
  std::size_t place = 0;
  for (int length = first; length <= last; ++length) {
    searches.push_back(makeSearch(powers, static_cast<std::size_t>(length)));
    counts.push_back(0);
    for (std::size_t piece = 0; piece < searches.back()->pieces(); ++piece) {
      if (!part.has(place++)) continue;
      pieces.push_back({counts.size() - 1, piece});
      ++counts.back();
    }
  }
  progress.pieces = pieces.size();
  progress.done = 0;
  Lists lists(k, first, std::move(counts), progress, found);
  runPieces(pieces.size(), threads, progress, [&](std::size_t index, unsigned) {
    const auto [list, piece] = pieces[index];
    std::vector<Decimal> numbers;
    searches[list]->run(piece, progress.stop, numbers);
    lists.add(list, numbers);
  });
  return lists.finish();
}

std::vector<Decimal> narcissisticNumbers(int order) {
  assert(order >= 1 && order <= kLastPossibleOrder);
  Progress progress;
  std::vector<Decimal> numbers;
  findFixedPoints(order, order, order, 1, progress,
                  [&](const Decimal& number) { numbers.push_back(number); });
  return numbers;
}

}  // namespace zelvion
