#include "engine/cycles/known_cycles.h"

#include <algorithm>
#include <utility>

namespace zelvion {
namespace {

constexpr unsigned kFirstTableBits = 10;
constexpr unsigned kLastTableBits = 20;

}  // namespace

KnownCycles::KnownCycles(Transformation& transformation)
    : transformation_(transformation),
      small_(transformation.k()),
      tableBits_(kFirstTableBits),
      table_(std::size_t{1} << tableBits_) {}

std::optional<KnownCycles::Fall> KnownCycles::find(std::string_view digits, std::int32_t limit,
                                                   const std::atomic<bool>& stop) {
  if (small_.hold(digits.size()) && !stop) {
    const auto [cycle, tail] = small_.find(digits, [this](auto points) { return indexOf(points); });
    return within(limit, cycle, tail);
  }
  const Silhouette silhouette = silhouetteOf(digits);
  const auto word = packed(silhouette);
  const Entry* const entry = word ? known(*word) : nullptr;
  const std::optional<Entry> found =
      entry != nullptr ? *entry : follow(silhouette, static_cast<std::size_t>(limit), stop);
  if (!found) return std::nullopt;
  const SilhouetteCycle& cycle = cycles_[found->cycle];
  const bool mayBeOnCycle =
      found->steps == 1 && digits.size() >= cycle.least.digits() && digits.size() <= cycle.greatest.digits();
  const bool isOnCycle = mayBeOnCycle && contains(cycle, silhouette, Decimal::parse(digits));
  return within(limit, found->cycle, isOnCycle ? 0 : found->steps);
}

std::optional<KnownCycles::Fall> KnownCycles::within(std::int32_t limit, std::uint32_t cycle,
                                                     std::size_t tail) const {
  if (tail + cycles_[cycle].order() > static_cast<std::size_t>(limit)) return std::nullopt;
  return Fall{&cycles_[cycle], cycle, static_cast<std::int32_t>(tail)};
}

// Iterates until a silhouette comes that is known, or comes back. The return of a silhouette may be one step
// ahead of that of a number.
std::optional<KnownCycles::Entry> KnownCycles::follow(const Silhouette& start, std::size_t limit,
                                                      const std::atomic<bool>& stop) {
  constexpr std::size_t kFewSteps = 16;
  SilhouetteHistory history;
  history.push(start);
  Silhouette current = start;
  while (!stop) {
    const std::size_t step = history.size() - 1;
    if (step > limit) return std::nullopt;
    advance(history, current, std::min(limit + 1 - step, std::max(kFewSteps, step / 8)));
    for (std::size_t i = step + 1; i < history.size(); ++i) {
      const auto word = packed(history.at(i));
      const Entry* const entry = word ? known(*word) : nullptr;
      if (entry != nullptr) return settle(history, i, *entry);
    }
    const std::size_t before = history.latestEqual(history.size() - 1);
    if (before > 0) return close(history, before);
  }
  return std::nullopt;
}

void KnownCycles::advance(SilhouetteHistory& history, Silhouette& current, std::size_t steps) {
  while (steps > 0) {
    auto room = history.room();
    room = room.first(std::min(room.size(), steps));
    std::size_t count = transformation_.iterate(current, room);
    if (count > 0) {
      history.pushWritten(count);
    } else {
      current = transformation_.apply(current, image_);
      history.push(current);
      count = 1;
    }
    steps -= count;
  }
}

// The latest silhouette equals that of step `before`, and none in between.
KnownCycles::Entry KnownCycles::close(const SilhouetteHistory& history, std::size_t before) {
  const std::size_t order = history.size() - 1 - before;
  const std::size_t first = history.firstReturn(order, 0, before);
  // The points are the images of the silhouettes that come back, each with the silhouette one step later.
  SilhouetteCycle cycle;
  std::size_t leastAt = 0;
  for (std::size_t i = 0; i < order; ++i) {
    const Decimal point = transformation_.image(history.at(first + i));
    if (i == 0 || point < cycle.least) {
      cycle.least = point;
      leastAt = i;
    }
    cycle.greatest = std::max(cycle.greatest, point);
    cycle.silhouettes.push_back(history.at(first + 1 + i));
  }
  std::rotate(cycle.silhouettes.begin(), cycle.silhouettes.begin() + static_cast<std::ptrdiff_t>(leastAt),
              cycle.silhouettes.end());

  const std::uint32_t index = indexOf(std::move(cycle));
  for (std::size_t i = first; i < first + order; ++i) {
    if (const auto word = packed(history.at(i))) keep({*word, index, 1});
  }
  return settle(history, first, {0, index, 1});
}

// `entry` is that of the silhouette of `step`; keeps those of the steps before and returns that of the start.
KnownCycles::Entry KnownCycles::settle(const SilhouetteHistory& history, std::size_t step, Entry entry) {
  while (step-- > 0) {
    const bool imageIsOnCycle = entry.steps == 1 && contains(cycles_[entry.cycle], history.at(step + 1),
                                                             transformation_.image(history.at(step)));
    if (!imageIsOnCycle) ++entry.steps;
    if (const auto word = packed(history.at(step))) {
      entry.silhouette = *word;
      keep(entry);
    }
  }
  return entry;
}

// A cycle comes a second time where the table has lost its silhouettes.
std::uint32_t KnownCycles::indexOf(SilhouetteCycle cycle) {
  const auto found = std::ranges::find(cycles_, cycle.least, &SilhouetteCycle::least);
  const auto index = static_cast<std::uint32_t>(found - cycles_.begin());
  if (found == cycles_.end()) cycles_.push_back(std::move(cycle));
  return index;
}

std::uint32_t KnownCycles::indexOf(std::span<const std::uint32_t> points) {
  const auto [least, greatest] = std::ranges::minmax_element(points);
  SilhouetteCycle cycle{{}, Decimal(*least), Decimal(*greatest)};
  for (const std::uint32_t point : points) cycle.silhouettes.push_back(silhouetteOf(Decimal(point)));
  auto& silhouettes = cycle.silhouettes;
  std::rotate(silhouettes.begin(), silhouettes.begin() + (least - points.begin()), silhouettes.end());
  return indexOf(std::move(cycle));
}

// The points of a cycle have silhouettes of their own, since each point has one image.
bool KnownCycles::contains(const SilhouetteCycle& cycle, const Silhouette& silhouette,
                           const Decimal& number) {
  if (number < cycle.least || number > cycle.greatest) return false;
  const auto found = std::ranges::find(cycle.silhouettes, silhouette);
  if (found == cycle.silhouettes.end()) return false;
  const auto before = found == cycle.silhouettes.begin() ? cycle.silhouettes.end() : found;
  return transformation_.image(*(before - 1)) == number;
}

std::vector<Decimal> KnownCycles::points(const SilhouetteCycle& cycle) {
  std::vector<Decimal> points = {cycle.least};
  for (std::size_t i = 0; i + 1 < cycle.order(); ++i) {
    points.push_back(transformation_.image(cycle.silhouettes[i]));
  }
  return points;
}

std::size_t KnownCycles::placeOf(PackedSilhouette silhouette) const {
  return (silhouette * 0x9E3779B97F4A7C15) >> (64 - tableBits_);  // odd and without a pattern
}

const KnownCycles::Entry* KnownCycles::known(PackedSilhouette silhouette) const {
  const Entry& entry = table_[placeOf(silhouette)];
  return entry.steps > 0 && entry.silhouette == silhouette ? &entry : nullptr;
}

void KnownCycles::keep(const Entry& entry) {
  if (used_ > table_.size() / 2 && tableBits_ < kLastTableBits) {
    ++tableBits_;
    used_ = 0;
    const std::vector<Entry> old = std::exchange(table_, std::vector<Entry>(std::size_t{1} << tableBits_));
    for (const Entry& kept : old) {
      if (kept.steps > 0) keep(kept);
    }
  }
  Entry& place = table_[placeOf(entry.silhouette)];
  if (place.steps == 0) ++used_;
  place = entry;
}

}  // namespace zelvion
