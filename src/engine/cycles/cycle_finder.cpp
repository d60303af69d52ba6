#include "engine/cycles/cycle_finder.h"

#include <algorithm>

namespace zelvion {

CycleFinder::CycleFinder(DigitPower& power, const std::string& start) : power_(power), orbit_(power, start) {
  history_.push(silhouetteOf(start));
}

std::optional<Return> CycleFinder::advance(std::int32_t last) {
  while (!return_ && step_ < last) {
    if (!orbit_.isNumber()) {
      advanceText();
      continue;
    }
    // Looking back takes a nanosecond for some ten steps; a step takes ten nanoseconds and more. So looking
    // each time the history has grown by an eighth costs little, and so do the steps past the return.
    constexpr std::int32_t kFewSteps = 64;
    advanceTo(std::min(last, step_ + std::max(kFewSteps, step_ / 8)));
    lookForReturn();
  }
  if (!return_ || return_->step > last) return std::nullopt;
  step_ = return_->step;
  return return_;
}

// Iterates that are no numbers are the empty text at most once, and then zeros.
void CycleFinder::advanceText() {
  const std::string previous = orbit_.text();
  orbit_.advance();
  ++step_;
  if (orbit_.isNumber()) {
    history_.push(orbit_.silhouette());
  } else if (step_ > 1 && orbit_.text() == previous) {
    return_ = {step_, step_ - 1};
  }
}

void CycleFinder::advanceTo(std::int32_t step) {
  while (step_ < step) {
    const auto room = history_.room();
    const auto between = static_cast<std::size_t>(step - step_ - 1);
    const std::size_t steps = orbit_.advance(room.first(std::min(room.size(), between)));
    history_.pushWritten(steps - 1);
    history_.push(orbit_.silhouette());
    step_ += static_cast<std::int32_t>(steps);
  }
}

void CycleFinder::lookForReturn() {
  const auto step = static_cast<std::size_t>(step_);
  const std::size_t before = history_.latestEqual(step);
  if (before == 0) return;
  const std::size_t order = step - before;
  std::size_t first = history_.firstReturn(order, 1, before);
  if (iterate(first) != iterate(first + order)) ++first;
  return_ = {static_cast<std::int32_t>(first + order), static_cast<std::int32_t>(first)};
}

// The iterate of a step, from the silhouette before it.
Decimal CycleFinder::iterate(std::size_t step) const {
  return power_.transformation()->image(history_.at(step - 1));
}

// A point is the image of the one before it. What is no number is a zero text: a fixed point, without others.
void CycleFinder::appendFurtherPoints(const Return& found, std::string& list) const {
  if (!orbit_.isNumber()) return;
  const auto end = static_cast<std::size_t>(found.step - 1);
  for (auto step = static_cast<std::size_t>(found.first); step < end;) {
    if (const auto silhouettes = history_.packedFrom(step, end - step); !silhouettes.empty()) {
      power_.transformation()->appendImages(silhouettes, list);
      step += silhouettes.size();
    } else {
      list.append(kListSeparator).append(power_.transformation()->image(history_.at(step)).text());
      ++step;
    }
  }
}

std::string CycleFinder::current() const {
  return orbit_.isNumber() && step_ > 0 ? iterate(static_cast<std::size_t>(step_)).text() : orbit_.text();
}

}  // namespace zelvion
