#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion {

/// A natural number in a fixed number of limbs of sixteen digits, the lowest first, for searches that add
/// millions of sums a second. Each limb is below kBase but the highest, which takes whatever is more and must
/// not pass 64 bits.
template <std::size_t kLimbs>
struct FixedSum {
  static constexpr std::uint64_t kBase = 10'000'000'000'000'000;
  static constexpr std::size_t kLimbDigits = 16;
  static constexpr std::size_t kDigits = kLimbs * kLimbDigits;

  std::array<std::uint64_t, kLimbs> limbs{};

  /// `number` has at most kDigits digits.
  static FixedSum of(const Decimal& number) {
    FixedSum sum;
    const auto halves = number.limbs();
    assert(halves.size() <= 2 * kLimbs);
    for (std::size_t i = 0; i < halves.size(); ++i) {
      sum.limbs[i / 2] += std::uint64_t{halves[i]} * (i % 2 == 0 ? 1 : Decimal::kBase);
    }
    return sum;
  }

  /// Only for a number of at most kDigits digits.
  Decimal decimal() const {
    std::vector<Decimal::Limb> halves;
    for (const std::uint64_t limb : limbs) {
      assert(limb < kBase);
      halves.push_back(static_cast<Decimal::Limb>(limb % Decimal::kBase));
      halves.push_back(static_cast<Decimal::Limb>(limb / Decimal::kBase));
    }
    Decimal number;
    number.assign(halves);
    return number;
  }

  FixedSum& operator+=(const FixedSum& other) {
    add(*this, other, *this);
    return *this;
  }

  /// Adds limb by limb. The sum of up to a thousand numbers is one again after carry().
  void addLimbs(const FixedSum& other) {
    for (std::size_t i = 0; i < kLimbs; ++i) limbs[i] += other.limbs[i];
  }
  void carry() {
    for (std::size_t i = 0; i + 1 < kLimbs; ++i) {
      limbs[i + 1] += limbs[i] / kBase;
      limbs[i] %= kBase;
    }
  }

  /// Takes a number off that is not greater.
  FixedSum& operator-=(const FixedSum& other) {
    std::uint64_t borrowed = 0;
    for (std::size_t i = 0; i + 1 < kLimbs; ++i) {
      const std::uint64_t taken = other.limbs[i] + borrowed;
      borrowed = limbs[i] < taken ? 1 : 0;
      limbs[i] += borrowed * kBase - taken;
    }
    limbs[kLimbs - 1] -= other.limbs[kLimbs - 1] + borrowed;
    return *this;
  }

  friend FixedSum operator-(FixedSum a, const FixedSum& b) { return a -= b; }
  // Neither by the other: a copy and += takes 3 % more of the searches, = and + a third more of the basins.
  friend FixedSum operator+(const FixedSum& a, const FixedSum& b) {
    FixedSum sum;
    add(a, b, sum);
    return sum;
  }
  friend bool operator==(const FixedSum&, const FixedSum&) = default;
  friend bool operator<(const FixedSum& a, const FixedSum& b) {
    for (std::size_t i = kLimbs; i-- > 0;) {
      if (a.limbs[i] != b.limbs[i]) return a.limbs[i] < b.limbs[i];
    }
    return false;
  }

 private:
  // `sum` may be one of the two.
  static void add(const FixedSum& a, const FixedSum& b, FixedSum& sum) {
    std::uint64_t carried = 0;
    for (std::size_t i = 0; i + 1 < kLimbs; ++i) {
      const std::uint64_t limb = a.limbs[i] + b.limbs[i] + carried;
      carried = limb >= kBase ? 1 : 0;
      sum.limbs[i] = limb - carried * kBase;
    }
    sum.limbs[kLimbs - 1] = a.limbs[kLimbs - 1] + b.limbs[kLimbs - 1] + carried;
  }
};

/// Calls action<n>() with the first of some ascending numbers of limbs that holds `digits` digits, or else
/// with the last.
template <std::size_t kLimbs, std::size_t... kMore, typename Action>
auto withLimbsFor(std::size_t digits, const Action& action) {
  if constexpr (sizeof...(kMore) > 0) {
    if (digits > FixedSum<kLimbs>::kDigits) return withLimbsFor<kMore...>(digits, action);
  }
  return action.template operator()<kLimbs>();
}

}  // namespace zelvion
