#include "engine/atlas/basin_join.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zelvion::atlas {
namespace {

void add(std::vector<Decimal>& sums, const std::vector<Decimal>& others) {
  if (sums.size() < others.size()) sums.resize(others.size());
  for (std::size_t i = 0; i < others.size(); ++i) sums[i] += others[i];
}

// Puts the least numbers of other tails in where they are less; 0 tails of a length have none.
void takeLeast(std::vector<Decimal>& least, const std::vector<Decimal>& tails, const Basin& other) {
  if (least.size() < other.tails.size()) least.resize(other.tails.size());
  for (std::size_t tail = 0; tail < other.tails.size(); ++tail) {
    if (other.tails[tail].isZero()) continue;
    const bool isFirst = tail >= tails.size() || tails[tail].isZero();
    if (isFirst || other.leastByTail[tail] < least[tail]) least[tail] = other.leastByTail[tail];
  }
}

// Adds what was counted for the same cycle elsewhere.
void add(Basin& basin, const Basin& other) {
  takeLeast(basin.leastByTail, basin.tails, other);
  add(basin.below, other.below);
  add(basin.tails, other.tails);
}

// Whether the longest tail of `a` is longer than that of `b`, or begins with a lesser number.
bool isDeeper(const Basin& a, const Basin& b) {
  if (a.tails.size() != b.tails.size()) return a.tails.size() > b.tails.size();
  return a.farthest() < b.farthest();
}

}  // namespace

std::vector<Basin> merged(std::vector<Basin> basins) {
  std::sort(basins.begin(), basins.end(), [](const Basin& a, const Basin& b) { return a.cycle < b.cycle; });
  std::vector<Basin> sums;
  for (Basin& basin : basins) {
    if (sums.empty() || sums.back().cycle != basin.cycle) {
      sums.push_back(std::move(basin));
    } else {
      add(sums.back(), basin);
    }
  }
  return sums;
}

void checkWhole(const Basins& basins) {
  for (std::size_t n = 0; n <= static_cast<std::size_t>(basins.digits); ++n) {
    Decimal sum;
    for (const Basin& basin : basins.basins) sum += basin.below[n];
    if (sum != Decimal::power(Decimal(10), n)) {
      throw std::logic_error("the basins do not hold each number once");
    }
  }
}

const Basin& Basins::deepest() const { return *std::min_element(basins.begin(), basins.end(), isDeeper); }

std::vector<Decimal> Basins::tails() const {
  std::vector<Decimal> sums;
  for (const Basin& basin : basins) add(sums, basin.tails);
  return sums;
}

std::vector<Decimal> Basins::leastByTail() const {
  std::vector<Decimal> least, sums;
  for (const Basin& basin : basins) {
    takeLeast(least, sums, basin);
    add(sums, basin.tails);
  }
  return least;
}

Basins joined(const std::vector<Basins>& parts) {
  if (parts.empty()) throw std::logic_error("no part to join");
  Basins whole{parts[0].k, parts[0].digits, {}};
  std::vector<Basin> basins;
  for (const Basins& part : parts) {
    if (part.k != whole.k || part.digits != whole.digits) {
      throw std::logic_error("parts of different counts");
    }
    basins.insert(basins.end(), part.basins.begin(), part.basins.end());
  }
  whole.basins = merged(std::move(basins));
  checkWhole(whole);
  return whole;
}

}  // namespace zelvion::atlas
