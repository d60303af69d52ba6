#include "fixedpoints/multiset_walk.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "transform/transformation.h"

namespace zelvion {
namespace {

constexpr std::uint64_t kLimbBase = 10'000'000'000'000'000;
constexpr std::size_t kLimbDigits = 16;

std::vector<std::uint64_t> limbsOfSixteen(const Decimal& number, std::size_t size) {
  const auto limbs = number.limbs();
  std::vector<std::uint64_t> wide(size, 0);
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    wide[i / 2] += i % 2 == 0 ? limbs[i] : std::uint64_t{limbs[i]} * Decimal::kBase;
  }
  return wide;
}

// The sum of two limbs and a carry, which is left for the next limb.
std::uint64_t addLimbs(std::uint64_t a, std::uint64_t b, std::uint64_t& carry) {
  const std::uint64_t sum = a + b + carry;
  carry = sum >= kLimbBase ? 1 : 0;
  return sum - carry * kLimbBase;
}

// How many tails of `length` digits have no digit above `greatest`: C(length + greatest - 1, length).
std::size_t tailsUpTo(int greatest, int length) {
  std::size_t count = 1;
  for (int i = 1; i <= length; ++i)
    count = count * static_cast<std::size_t>(greatest - 1 + i) / static_cast<std::size_t>(i);
  return count;
}

}  // namespace

std::int32_t MultisetWalk::count(int digits) {
  return static_cast<std::int32_t>(tailsUpTo(digits + 1, 8));
}

MultisetWalk::MultisetWalk(std::int32_t k, std::int32_t nines) : k_(k), nines_(nines) {
  assert(nines >= 0);
  // Under a power below 1 the first image is empty and the second one "0". An image of n digits has an image
  // of at most n times 9^k: where the nines in front make more, nobody needs to look.
  hopeless_ = k < 1 || k * std::log10(9.0) + std::log10(nines + kMaxDigits) + 2 < nines;
  if (!hopeless_) prepare();
}

void MultisetWalk::prepare() {
  const Transformation transformation(k_);
  const Decimal nine = transformation.power(9);
  const auto mostDigits = static_cast<std::size_t>(nines_) + kMaxDigits;
  const std::size_t imageDigits = (nine * Decimal(mostDigits)).digits();
  size_ = (imageDigits + kLimbDigits - 1) / kLimbDigits;

  tolerance_ = static_cast<std::uint32_t>(std::max(size_ * kLimbDigits, mostDigits));
  const std::uint32_t unit = (std::uint32_t{1} << 31) / (tolerance_ + 1);
  weights_.assign(10, 0);
  powers_.assign(10 * size_, 0);
  for (std::size_t digit = 1; digit <= 9; ++digit) {
    weights_[digit] = static_cast<std::uint32_t>(std::pow(static_cast<long double>(digit) / 9, k_) * unit);
    const auto limbs = limbsOfSixteen(transformation.power(static_cast<int>(digit)), size_);
    std::copy(limbs.begin(), limbs.end(), powers_.begin() + static_cast<std::ptrdiff_t>(digit * size_));
  }
  reachable_ = size_ == 1 ? 0 : static_cast<std::uint32_t>(imageDigits - kLimbDigits) * unit;

  groupWeights_.resize(10'000);
  for (std::size_t group = 0; group < groupWeights_.size(); ++group) {
    groupWeights_[group] = group < 10 ? weights_[group] : groupWeights_[group / 10] + weights_[group % 10];
  }
  root_ = {limbsOfSixteen(nine * Decimal(static_cast<std::uint64_t>(nines_)), size_),
           static_cast<std::uint32_t>(nines_) * weights_[9]};
}

// Makes the table of tails of `length` digits: behind a first digit d come the tails of one digit less that
// have no digit above d, which stand at the front of their table.
void MultisetWalk::buildTails(int length) {
  if (tailSums_.empty() || length < tailLength_) {
    tailLength_ = 0;
    tailNumbers_ = {0};
    tailWeights_ = {0};
    tailSums_.assign(size_, {0});
    tailUnit_ = 1;
  }
  for (; tailLength_ < length; ++tailLength_, tailUnit_ *= 10) {
    std::vector<std::uint32_t> numbers;
    std::vector<std::uint32_t> weights;
    std::vector<std::vector<std::uint64_t>> sums(size_);
    for (std::uint32_t digit = 1; digit <= 9; ++digit) {
      const std::size_t behind = tailsUpTo(static_cast<int>(digit), tailLength_);
      for (std::size_t i = 0; i < behind; ++i) {
        numbers.push_back(digit * tailUnit_ + tailNumbers_[i]);
        weights.push_back(weights_[digit] + tailWeights_[i]);
        std::uint64_t carry = 0;
        for (std::size_t limb = 0; limb < size_; ++limb) {
          sums[limb].push_back(addLimbs(powers_[digit * size_ + limb], tailSums_[limb][i], carry));
        }
      }
    }
    tailNumbers_.swap(numbers);
    tailWeights_.swap(weights);
    tailSums_.swap(sums);
  }
}

std::int32_t MultisetWalk::run(int digits, const Survivor& survivor) {
  assert(digits >= 1 && digits <= kMaxDigits);
  if (!hopeless_) {
    survivor_ = &survivor;
    prefix_.clear();
    buildTails(std::min(digits, kMaxTail));
    descend(digits, 9, root_);
  }
  return count(digits);
}

void MultisetWalk::descend(int digits, int greatest, const Node& node) {
  if (digits == tailLength_) {
    testTails(greatest, node);
    return;
  }
  Node next{std::vector<std::uint64_t>(size_), 0};
  for (int digit = 1; digit <= greatest; ++digit) {
    const auto d = static_cast<std::size_t>(digit);
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < size_; ++i)
      next.sum[i] = addLimbs(node.sum[i], powers_[d * size_ + i], carry);
    next.weight = node.weight + weights_[d];
    prefix_.push_back(static_cast<char>('0' + digit));
    descend(digits - 1, digit, next);
    prefix_.pop_back();
  }
}

std::uint32_t MultisetWalk::weightOf(std::uint64_t limb) const {
  const std::uint32_t* groups = groupWeights_.data();
  const auto high = static_cast<std::uint32_t>(limb / Decimal::kBase);
  const auto low = static_cast<std::uint32_t>(limb % Decimal::kBase);
  return groups[high / 10'000] + groups[high % 10'000] + groups[low / 10'000] + groups[low % 10'000];
}

void MultisetWalk::testTails(int greatest, const Node& node) {
  const std::size_t count = tailsUpTo(greatest, tailLength_);
  const std::uint64_t* sums = tailSums_[0].data();
  const std::uint32_t* weights = tailWeights_.data();
  const std::uint64_t sum = node.sum[0];
  // The lowest limb alone has to bring the weight into [target - reachable - tolerance, target + tolerance].
  const std::uint32_t offset = reachable_ + tolerance_ - node.weight;
  const std::uint32_t width = reachable_ + 2 * tolerance_;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint64_t carry = 0;
    const std::uint32_t reached = weightOf(addLimbs(sum, sums[i], carry));
    if (reached - weights[i] + offset > width) continue;
    if (size_ > 1 && !passes(node, i)) continue;
    (*survivor_)(prefix_ + std::to_string(tailNumbers_[i]));
  }
}

bool MultisetWalk::passes(const Node& node, std::size_t tail) const {
  const std::uint32_t target = node.weight + tailWeights_[tail];
  std::uint32_t reached = 0;
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < size_; ++i) {
    reached += weightOf(addLimbs(node.sum[i], tailSums_[i][tail], carry));
    // Nines in all digits above are the most that can still come.
    const auto digitsAbove = static_cast<std::uint32_t>((size_ - 1 - i) * kLimbDigits);
    if (reached + digitsAbove * weights_[9] + tolerance_ < target || reached > target + tolerance_)
      return false;
  }
  return true;
}

}  // namespace zelvion
