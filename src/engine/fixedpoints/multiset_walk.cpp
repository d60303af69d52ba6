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

std::int32_t MultisetWalk::count(int digits) {
  return static_cast<std::int32_t>(tailsUpTo(9, digits));
}

MultisetWalk::MultisetWalk(DigitPower& power, std::size_t nines) : nines_(nines) {
  // Under a power below 1 the first image is empty and the second one "0". An image of n digits has an image
  // of at most n times 9^k: where the nines in front make more, nobody needs to look.
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

  // What the sums of weights and the tolerance leave of their bits is for the weight of a nine.
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

// Makes the table of tails of `length` digits: behind a first digit d come the tails of one digit less that
// have no digit above d, which stand at the front of their table.
void MultisetWalk::buildTails(int length) {
  using vector_sieve::kLanes;
  if (tailNumbers_.empty() || length < tailLength_) {
    tailLength_ = 0;
    tailNumbers_ = {0};
    tailWeights_ = {0};
    coarseTailWeights_ = {0};
    tailSums_.assign(size_ * kLanes, 0);
  }
  for (; tailLength_ < length; ++tailLength_) {
    const auto unit = static_cast<std::uint32_t>(std::pow(10, tailLength_));
    const std::size_t blocks = (tailsUpTo(9, tailLength_ + 1) + kLanes - 1) / kLanes;
    std::vector<std::uint32_t> numbers;
    std::vector<std::uint32_t> weights;
    std::vector<Short> coarseWeights;
    std::vector<Short> sums(blocks * kLanes * size_);
    for (std::uint32_t digit = 1; digit <= 9; ++digit) {
      const Short* power = &powers_[digit * size_];
      const std::size_t behind = tailsUpTo(static_cast<int>(digit), tailLength_);
      for (std::size_t i = 0; i < behind; ++i) {
        const Short* from = &tailSums_[tailPlace(i)];
        Short* to = &sums[tailPlace(numbers.size())];
        std::uint32_t carry = 0;
        for (std::size_t limb = 0; limb < size_; ++limb) {
          to[limb * kLanes] = addLimbs(power[limb], from[limb * kLanes], carry);
        }
        numbers.push_back(digit * unit + tailNumbers_[i]);
        weights.push_back(weights_[digit] + tailWeights_[i]);
        coarseWeights.push_back(static_cast<Short>(coarseWeights_[digit] + coarseTailWeights_[i]));
      }
    }
    coarseWeights.resize(blocks * kLanes);
    tailNumbers_.swap(numbers);
    tailWeights_.swap(weights);
    coarseTailWeights_.swap(coarseWeights);
    tailSums_.swap(sums);
  }
  assert(tailNumbers_.size() <= std::numeric_limits<Short>::max());
  places_.resize(tailNumbers_.size());
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
  if (digits == tailLength_) {
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
  const std::size_t count = tailsUpTo(greatest, tailLength_);
  const auto test = [&](std::size_t tail) {
    if (passes(tail, weight.fine + tailWeights_[tail])) {
      (*survivor_)(front_ + std::to_string(tailNumbers_[tail]));
    }
  };
  const std::uint32_t width = 2 * tolerance_;
  if (!vector_sieve::isSupported() || width > 0xFFFF) {
    for (std::size_t tail = 0; tail < count; ++tail) test(tail);
    return;
  }
  const vector_sieve::Tails tails{count, size_, tailSums_.data(), coarseTailWeights_.data()};
  const std::uint32_t offset = tolerance_ - weight.coarse;
  const std::size_t left = vector_sieve::sift(tails, frontSum(), coarseBytes_, static_cast<Short>(offset),
                                              static_cast<Short>(width), places_.data());
  for (std::size_t i = 0; i < left; ++i) test(places_[i]);
}

bool MultisetWalk::passes(std::size_t tail, std::uint32_t target) const {
  const Short* front = frontSum();
  const Short* sum = &tailSums_[tailPlace(tail)];
  std::uint32_t reached = 0;
  std::uint32_t carry = 0;
  for (std::size_t i = 0; i < size_; ++i) {
    reached += groupWeights_[addLimbs(front[i], sum[i * vector_sieve::kLanes], carry)];
  }
  return reached + tolerance_ >= target && reached <= target + tolerance_;
}

}  // namespace zelvion
