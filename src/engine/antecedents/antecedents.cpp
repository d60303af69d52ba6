#include "engine/antecedents/antecedents.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <vector>

#include "engine/arith/fixed_sum.h"
#include "engine/transform/power_multiples.h"

namespace zelvion {
namespace {

Decimal multiple(const Decimal& power, std::size_t count) { return power * Decimal(count); }

// The multisets of at most so many digits with a given sum of powers.
template <std::size_t kLimbs>
class Walk {
  using Sum = FixedSum<kLimbs>;

 public:
  Walk(const std::array<Decimal, 10>& powers, std::size_t digits, const std::atomic<bool>& stop,
       const std::function<void(const Silhouette&)>& found)
      : stop_(stop), found_(found) {
    for (std::size_t digit = 1; digit <= 9; ++digit) {
      const Sum power = Sum::of(powers[digit]);
      auto& multiples = multiples_[digit];
      for (multiples.resize(1); multiples.size() <= digits;) multiples.push_back(multiples.back() + power);
    }
  }

  // Chooses the count of `digit`; `left` digits up to it, zeros too, make up `rest`.
  void descend(std::size_t digit, const Sum& rest, std::size_t left) {
    if (stop_.load(std::memory_order_relaxed)) return;
    std::uint32_t& chosen = silhouette_.counts[digit - 1];
    if (digit == 1) {  // the rest fits, for it is at most `left`
      chosen = static_cast<std::uint32_t>(rest.limbs[0]);
      found_(silhouette_);
    } else {
      for (std::size_t count = 0; count <= left && !(rest < multiples_[digit][count]); ++count) {
        const Sum less = rest - multiples_[digit][count];
        if (multiples_[digit - 1][left - count] < less) continue;
        chosen = static_cast<std::uint32_t>(count);
        descend(digit - 1, less, left - count);
      }
    }
    chosen = 0;
  }

 private:
  const std::atomic<bool>& stop_;
  const std::function<void(const Silhouette&)>& found_;
  std::array<std::vector<Sum>, 10> multiples_;
  Silhouette silhouette_;
};

// The fewest digits, and of those the least number, with a given sum of powers.
template <std::size_t kLimbs>
class Least {
  using Sum = FixedSum<kLimbs>;

 public:
  Least(const std::array<Decimal, 10>& powers, std::uint64_t limit, std::uint64_t& work,
        const std::atomic<bool>& stop)
      : limit_(limit), work_(work), stop_(stop) {
    for (std::size_t digit = 1; digit <= 9; ++digit) {
      powers_[digit] = Sum::of(powers[digit]);
      estimates_[digit] = estimate(powers_[digit]);
    }
  }

  std::optional<Silhouette> best;

  // Goes through the choices of `digit`; digits up to it make up `rest`, beside `used` that are chosen.
  void descend(std::size_t digit, const Sum& rest, std::uint64_t used) {
    if (work_ == 0 || stop_.load(std::memory_order_relaxed)) return;
    --work_;
    if (!canFit(digit, rest, used)) return;
    std::uint64_t count = 0;
    Sum less = remainder(digit, rest, count);
    if (digit == 2) {
      finish(used, count, less);
      return;
    }
    // Each one fewer of this digit takes more of the lesser ones.
    while (canFit(digit - 1, less, used + count)) {
      silhouette_.counts[digit - 1] = static_cast<std::uint32_t>(count);
      descend(digit - 1, less, used + count);
      if (count-- == 0) break;
      less += powers_[digit];
    }
    silhouette_.counts[digit - 1] = 0;
  }

 private:
  static double estimate(const Sum& sum) {
    double value = 0;
    for (std::size_t i = kLimbs; i-- > 0;)
      value = value * static_cast<double>(Sum::kBase) + static_cast<double>(sum.limbs[i]);
    return value;
  }

  // Whether digits up to `digit` may make up the rest within the limit: not fewer than this quotient do, of
  // which a part that is far more than the error of its estimate is taken off.
  bool canFit(std::size_t digit, const Sum& rest, std::uint64_t used) const {
    constexpr double kBelow = 1 - 1e-9;
    return static_cast<double>(used) + kBelow * (estimate(rest) / estimates_[digit]) <=
           static_cast<double>(limit_);
  }

  // The rest that is left by as many of a digit as it holds, which go into `count`: not much more than the
  // limit.
  Sum remainder(std::size_t digit, const Sum& rest, std::uint64_t& count) const {
    count = static_cast<std::uint64_t>(estimate(rest) / estimates_[digit]);
    Sum product = times(powers_[digit], count);
    while (rest < product) {
      product = product - powers_[digit];
      --count;
    }
    Sum less = rest - product;
    for (; !(less < powers_[digit]); ++count) less = less - powers_[digit];
    return less;
  }

  static Sum times(const Sum& sum, std::uint64_t factor) {
    __extension__ using Wide = unsigned __int128;
    Sum product;
    Wide carried = 0;
    for (std::size_t i = 0; i < kLimbs; ++i) {
      carried += static_cast<Wide>(sum.limbs[i]) * factor;
      const bool isLast = i + 1 == kLimbs;
      product.limbs[i] = static_cast<std::uint64_t>(isLast ? carried : carried % Sum::kBase);
      carried /= Sum::kBase;
    }
    return product;
  }

  // As many twos as can be, and the rest in ones, are the fewest.
  void finish(std::uint64_t used, std::uint64_t twos, const Sum& ones) {
    if (estimate(ones) > static_cast<double>(limit_) || used + twos + ones.limbs[0] > limit_) return;
    Silhouette candidate = silhouette_;
    candidate.counts[1] = static_cast<std::uint32_t>(twos);
    candidate.counts[0] = static_cast<std::uint32_t>(ones.limbs[0]);
    const std::uint64_t digits = used + twos + ones.limbs[0];
    if (!best || digits < limit_ || hasLesserNumber(candidate, *best)) best = candidate;
    limit_ = digits;
  }

  std::uint64_t limit_;  ///< digits, at most
  std::uint64_t& work_;
  const std::atomic<bool>& stop_;
  std::array<Sum, 10> powers_;
  std::array<double, 10> estimates_{};
  Silhouette silhouette_;
};

// The quotient of two numbers, the first at most 10^7 times the second, rounded down.
std::uint64_t quotient(Decimal number, const Decimal& divisor) {
  std::uint64_t result = 0;
  for (std::uint64_t unit = 100'000'000; unit > 0; unit /= 10) {
    for (const Decimal multiple = divisor * Decimal(unit); number >= multiple; result += unit)
      number -= multiple;
  }
  return result;
}

}  // namespace

void findAntecedents(std::int32_t k, std::size_t digits, const Decimal& number, const std::atomic<bool>& stop,
                     const std::function<void(const Silhouette&)>& found) {
  const auto powers = digitPowers(k);
  const Decimal greatest = multiple(powers[9], digits);
  if (number > greatest) return;
  withLimbsFor<1, 2, 4, 8>(greatest.digits(), [&]<std::size_t kLimbs>() {
    Walk<kLimbs>(powers, digits, stop, found).descend(9, FixedSum<kLimbs>::of(number), digits);
  });
}

Decimal arrangements(const Silhouette& silhouette, std::size_t digits) {
  assert(totalOf(silhouette) <= digits);
  Decimal ways(1);
  std::size_t left = digits;
  for (const std::uint32_t count : silhouette.counts) {  // so many of the places left
    for (std::uint32_t i = 1; i <= count; ++i) {
      ways = ways * Decimal(left--);
      ways.divideBy(i);
    }
  }
  return ways;
}

bool hasLesserNumber(const Silhouette& a, const Silhouette& b) {
  const auto digits = totalOf(a);
  if (digits != totalOf(b)) return digits < totalOf(b);
  return a.counts > b.counts;  // more of the least digit goes first
}

LeastAntecedent leastAntecedent(std::int32_t k, const Decimal& number, std::uint32_t most,
                                const std::atomic<bool>& stop) {
  const auto powers = digitPowers(k);
  LeastAntecedent least;
  if (number > multiple(powers[9], most)) return {std::nullopt, most};
  const std::uint64_t nines = quotient(number, powers[9]);
  std::uint64_t work = 30'000'000;
  // With `slack` digits more than the quotient, each nine fewer takes (9/8)^k - 1 of them at least.
  const double price = std::pow(9.0 / 8, k) - 1;
  for (std::uint64_t slack = 8; least.excluded < most; slack += slack / 2) {
    const std::uint64_t limit = std::min<std::uint64_t>(nines + slack, most);
    const std::uint64_t variable = static_cast<std::uint64_t>(static_cast<double>(slack + 2) / price) + 2;
    const std::uint64_t fixed = nines - std::min(nines, variable);
    Decimal rest = number;
    rest -= multiple(powers[9], fixed);
    withLimbsFor<1, 2, 3, 4, 8>(std::max(powers[9].digits(), rest.digits() + 1), [&]<std::size_t kLimbs>() {
      Least<kLimbs> search(powers, limit, work, stop);
      search.descend(9, FixedSum<kLimbs>::of(rest), fixed);
      least.silhouette = search.best;
    });
    if (work == 0 || stop) return {std::nullopt, least.excluded};
    if (least.silhouette) {
      least.silhouette->counts[8] += static_cast<std::uint32_t>(fixed);
      least.excluded = std::max(totalOf(*least.silhouette), 1U) - 1;
      return least;
    }
    least.excluded = static_cast<std::uint32_t>(limit);
  }
  return least;
}

}  // namespace zelvion
