#include "engine/fixedpoints/multiset_walk.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "engine/fixedpoints/vector_sieve.h"
#include "engine/transform/transformation.h"

namespace zelvion {
namespace {

constexpr std::uint32_t kLimbBase = 10'000;
constexpr std::size_t kLimbDigits = 4;
constexpr std::size_t kLimbsPerLimb = Decimal::kLimbDigits / kLimbDigits;

std::vector<std::uint16_t> limbsOfFour(const Decimal& number, std::size_t size) {
  const auto limbs = number.limbs();
  std::vector<std::uint16_t> result(size, 0);
  for (std::size_t i = 0; i < std::min(size, kLimbsPerLimb * limbs.size()); ++i) {
    const Decimal::Limb limb = limbs[i / kLimbsPerLimb];
    result[i] = static_cast<std::uint16_t>(i % kLimbsPerLimb == 0 ? limb % kLimbBase : limb / kLimbBase);
  }
  return result;
}

// The sum of two limbs and a carry, which is left for the next limb.
std::uint16_t addLimbs(std::uint32_t a, std::uint32_t b, std::uint32_t& carry) {
  const std::uint32_t sum = a + b + carry;
  carry = sum >= kLimbBase ? 1 : 0;
  return static_cast<std::uint16_t>(sum - carry * kLimbBase);
}

// Row by row Pascal's triangle.
constexpr int kRows = MultisetWalk::kMaxDigits + 9;
constexpr std::array<std::array<std::uint32_t, kRows>, kRows> kBinomials = [] {
  std::array<std::array<std::uint32_t, kRows>, kRows> rows{};
  for (std::size_t n = 0; n < rows.size(); ++n) {
    rows[n][0] = 1;
    for (std::size_t m = 1; m <= n; ++m) rows[n][m] = rows[n - 1][m - 1] + rows[n - 1][m];
  }
  return rows;
}();

// How many multisets of `length` digits from 1 to `greatest` there are.
std::size_t tailsUpTo(int greatest, int length) {
  return kBinomials[static_cast<std::size_t>(length + greatest - 1)][static_cast<std::size_t>(length)];
}

// A longer table takes longer to make, and saves fronts. These lengths were the fastest.
int tailLengthFor(int digits) {
  if (digits < 10) return (digits + 1) / 2;
  return digits < 14 ? 6 : 8;
}

}  // namespace

std::int32_t MultisetWalk::count(int digits) { return static_cast<std::int32_t>(tailsUpTo(9, digits)); }

MultisetWalk::MultisetWalk(DigitPower& power, std::size_t nines) : nines_(nines) {
  // Under a power below 1 the first image is empty and the second one "0". An image of n digits has an image
  // of at most n times 9^k: where the nines in front make more, there is none.
  const double front = static_cast<double>(nines);
  hopeless_ = power.k() < 1 || power.k() * std::log10(9.0) + std::log10(front + kMaxDigits) + 2 < front;
  if (!hopeless_) prepare(*power.transformation());
}

void MultisetWalk::prepare(const Transformation& transformation) {
  const Decimal nine = transformation.power(9);
  const std::size_t mostDigits = nines_ + kMaxDigits;
  const std::size_t imageDigits = (nine * Decimal(mostDigits)).digits();
  size_ = (imageDigits + kLimbDigits - 1) / kLimbDigits;
  tolerance_ = static_cast<std::uint32_t>(std::max(size_ * kLimbDigits, mostDigits));

  // The bits that the sums of weights and the tolerance do not need are for the weight of a nine.
  const std::uint32_t unit = (std::uint32_t{1} << 31) / (tolerance_ + 1);
  const std::uint32_t coarseUnit = (0xFFFF - std::min(2 * tolerance_, 0xFFFFU)) / (tolerance_ + 1);
  weights_.assign(10, 0);
  powers_.assign(10 * size_, 0);
  for (std::size_t digit = 1; digit <= 9; ++digit) {
    const long double weight = std::pow(static_cast<long double>(digit) / 9, transformation.k());
    weights_[digit] = static_cast<std::uint32_t>(weight * unit);
    coarseWeights_[digit] = static_cast<Short>(weight * coarseUnit);
    coarseBytes_.low[digit] = static_cast<std::uint8_t>(coarseWeights_[digit]);
    coarseBytes_.high[digit] = static_cast<std::uint8_t>(coarseWeights_[digit] >> 8);
    const auto limbs = limbsOfFour(transformation.power(static_cast<int>(digit)), size_);
    std::copy(limbs.begin(), limbs.end(), powers_.begin() + static_cast<std::ptrdiff_t>(digit * size_));
  }
  groupWeights_.resize(kLimbBase);
  for (std::size_t group = 0; group < groupWeights_.size(); ++group) {
    groupWeights_[group] = group < 10 ? weights_[group] : groupWeights_[group / 10] + weights_[group % 10];
  }
  frontSums_ = limbsOfFour(nine * Decimal(nines_), size_);
  frontSums_.resize((kMaxDigits + 1) * size_);
}

// Where the lowest limb of a tail's sum is; the others follow kLanes apart.
std::size_t MultisetWalk::tailPlace(std::size_t tail) const {
  using vector_sieve::kLanes;
  return tail / kLanes * kLanes * size_ + tail % kLanes;
}

void MultisetWalk::buildTails(int length) {
  if (tails_.numbers.empty() || length < tails_.length) {
    tails_ = {0,
              {0},
              {0},
              std::vector<Short>(vector_sieve::kLanes),
              std::vector<Short>(size_ * vector_sieve::kLanes)};
  }
  while (tails_.length < length) tails_ = extended(tails_);
  assert(tails_.numbers.size() <= std::numeric_limits<Short>::max());
  places_.resize(tails_.numbers.size());
}

// After a first digit d come those tails that have no digit above d, which stand at the front of their table.
MultisetWalk::Tails MultisetWalk::extended(const Tails& tails) const {
  using vector_sieve::kLanes;
  const auto unit = static_cast<std::uint32_t>(std::pow(10, tails.length));
  const std::size_t blocks = (tailsUpTo(9, tails.length + 1) + kLanes - 1) / kLanes;
  Tails longer;
  longer.length = tails.length + 1;
  longer.sums.resize(blocks * kLanes * size_);
  for (std::uint32_t digit = 1; digit <= 9; ++digit) {
    const Short* power = &powers_[digit * size_];
    const std::size_t count = tailsUpTo(static_cast<int>(digit), tails.length);
    for (std::size_t i = 0; i < count; ++i) {
      const Short* from = &tails.sums[tailPlace(i)];
      Short* to = &longer.sums[tailPlace(longer.numbers.size())];
      std::uint32_t carry = 0;
      for (std::size_t limb = 0; limb < size_; ++limb) {
        to[limb * kLanes] = addLimbs(power[limb], from[limb * kLanes], carry);
      }
      longer.numbers.push_back(digit * unit + tails.numbers[i]);
      longer.weights.push_back(weights_[digit] + tails.weights[i]);
      longer.coarseWeights.push_back(static_cast<Short>(coarseWeights_[digit] + tails.coarseWeights[i]));
    }
  }
  longer.coarseWeights.resize(blocks * kLanes);
  return longer;
}

std::int32_t MultisetWalk::run(int digits, const Survivor& survivor) {
  assert(digits >= 1 && digits <= kMaxDigits);
  if (!hopeless_) {
    survivor_ = &survivor;
    buildTails(tailLengthFor(digits));
    const auto nines = static_cast<std::uint32_t>(nines_);
    descend(digits, 9, {nines * weights_[9], nines * coarseWeights_[9]});
  }
  return count(digits);
}

void MultisetWalk::descend(int digits, int greatest, FrontWeight weight) {
  if (digits == tails_.length) {
    testTails(greatest, weight);
    return;
  }
  for (int digit = 1; digit <= greatest; ++digit) {
    const auto d = static_cast<std::size_t>(digit);
    const Short* power = &powers_[d * size_];
    const Short* sum = frontSum();
    front_.push_back(static_cast<char>('0' + digit));
    Short* next = &frontSums_[front_.size() * size_];
    std::uint32_t carry = 0;
    for (std::size_t i = 0; i < size_; ++i) next[i] = addLimbs(sum[i], power[i], carry);
    descend(digits - 1, digit, {weight.fine + weights_[d], weight.coarse + coarseWeights_[d]});
    front_.pop_back();
  }
}

void MultisetWalk::testTails(int greatest, FrontWeight weight) {
  const std::size_t count = tailsUpTo(greatest, tails_.length);
  const auto test = [&](std::size_t tail) {
    if (passes(tail, weight.fine + tails_.weights[tail])) {
      (*survivor_)(front_ + std::to_string(tails_.numbers[tail]));
    }
  };
  const std::uint32_t width = 2 * tolerance_;
  if (!vector_sieve::isSupported() || width > 0xFFFF) {
    for (std::size_t tail = 0; tail < count; ++tail) test(tail);
    return;
  }
  const vector_sieve::Tails tails{count, size_, tails_.sums.data(), tails_.coarseWeights.data()};
  const std::uint32_t offset = tolerance_ - weight.coarse;
  const std::size_t left = vector_sieve::sift(tails, frontSum(), coarseBytes_, static_cast<Short>(offset),
                                              static_cast<Short>(width), places_.data());
  for (std::size_t i = 0; i < left; ++i) test(places_[i]);
}

bool MultisetWalk::passes(std::size_t tail, std::uint32_t target) const {
  const Short* front = frontSum();
  const Short* sum = &tails_.sums[tailPlace(tail)];
  std::uint32_t reached = 0;
  std::uint32_t carry = 0;
  for (std::size_t i = 0; i < size_; ++i) {
    reached += groupWeights_[addLimbs(front[i], sum[i * vector_sieve::kLanes], carry)];
  }
  return reached + tolerance_ >= target && reached <= target + tolerance_;
}

}  // namespace zelvion
