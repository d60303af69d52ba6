#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/atlas/basins.h"
#include "engine/atlas/least_number.h"
#include "engine/atlas/weight.h"

namespace zelvion::atlas {

/// What one thread has counted for one cycle.
class Tally {
 public:
  std::array<Weight, kMaxCountedDigits + 1> byNonzero;  ///< numbers by how many of their digits are not 0

  /// Adds the numbers of a multiset, whose tails are all of this length, at least kNear.
  void add(std::size_t tail, const Weight& count, const LeastNumber& least) {
    Tail& place = at(tail);
    if (place.count == Weight() || least < place.least) place.least = least;
    place.count += count;
  }
  /// The same for tails below kNear, where it depends on the order of the digits which numbers have them.
  void addNear(std::size_t tail, const Weight& count, const Decimal& least) {
    Tail& place = at(tail);
    if (place.count == Weight() || least < nearest_[tail]) nearest_[tail] = least;
    place.count += count;
  }
  static constexpr std::size_t kNear = 2;

  bool isEmpty() const { return tails_.empty(); }
  /// Puts what was counted into `basin`.
  void putTails(Basin& basin) const {
    for (std::size_t tail = 0; tail < tails_.size(); ++tail) {
      const auto& [count, least] = tails_[tail];
      basin.tails.push_back(count.decimal());
      basin.leastByTail.push_back(count == Weight() ? Decimal()
                                  : tail < kNear    ? nearest_[tail]
                                                    : least.decimal());
    }
  }

 private:
  struct Tail {
    Weight count;
    LeastNumber least;
  };

  Tail& at(std::size_t tail) {
    if (tail >= tails_.size()) tails_.resize(tail + 1);
    return tails_[tail];
  }

  std::vector<Tail> tails_;
  std::array<Decimal, kNear> nearest_;
};

}  // namespace zelvion::atlas
