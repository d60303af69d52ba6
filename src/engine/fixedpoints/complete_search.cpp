#include "engine/fixedpoints/complete_search.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>

namespace zelvion {
namespace {

constexpr std::uint64_t kLimbBase = 10'000'000'000'000'000;
constexpr std::size_t kLimbDigits = 16;

// A sum of powers in limbs of sixteen digits, the lowest first. The highest limb takes what is more.
template <std::size_t kSize>
using Sum = std::array<std::uint64_t, kSize>;

template <std::size_t kSize>
Sum<kSize> operator+(const Sum<kSize>& a, const Sum<kSize>& b) {
  Sum<kSize> sum;
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i + 1 < kSize; ++i) {
    const std::uint64_t limb = a[i] + b[i] + carry;
    carry = limb >= kLimbBase ? 1 : 0;
    sum[i] = limb - carry * kLimbBase;
  }
  sum[kSize - 1] = a[kSize - 1] + b[kSize - 1] + carry;
  return sum;
}

template <std::size_t kSize>
bool isLess(const Sum<kSize>& a, const Sum<kSize>& b) {
  for (std::size_t i = kSize; i-- > 0;) {
    if (a[i] != b[i]) return a[i] < b[i];
  }
  return false;
}

template <std::size_t kSize>
Sum<kSize> toSum(const Decimal& number) {
  Sum<kSize> sum{};
  const auto limbs = number.limbs();
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    const std::uint64_t unit = i % 2 == 0 ? 1 : Decimal::kBase;
    sum[std::min(i / 2, kSize - 1)] += limbs[i] * (i / 2 < kSize ? unit : kLimbBase);
  }
  return sum;
}

// Ten counts of digits, each up to 63, in one word.
class Counts {
 public:
  std::uint64_t operator[](std::size_t digit) const {
    return (word_ >> (kBits * digit)) & ((1U << kBits) - 1);
  }
  void add(std::size_t digit, std::uint64_t count) { word_ += count << (kBits * digit); }

 private:
  static constexpr unsigned kBits = 6;
  std::uint64_t word_ = 0;
};

// Division of a number below 10^16 by a power of ten, as a product: exact since 2^54 is more than 10^16 and
// the multiplier, rounded up, has 64 bits.
class PowerOfTen {
 public:
  explicit PowerOfTen(std::uint64_t value = 1) {
    __extension__ using Wide = unsigned __int128;
    if (value == 1) return;
    while ((std::uint64_t{2} << shift_) < value) ++shift_;
    multiplier_ = static_cast<std::uint64_t>((static_cast<Wide>(1) << (64 + shift_)) / value) + 1;
  }

  std::uint64_t divide(std::uint64_t number) const {
    __extension__ using Wide = unsigned __int128;
    if (multiplier_ == 0) return number;
    return static_cast<std::uint64_t>((static_cast<Wide>(number) * multiplier_) >> 64) >> shift_;
  }

 private:
  std::uint64_t multiplier_ = 0;
  unsigned shift_ = 0;
};

template <std::size_t kSize>
class Search {
 public:
  explicit Search(int order) : order_(static_cast<std::size_t>(order)) {
    const auto tenTo = [](std::size_t exponent) { return Decimal::power(Decimal(10), exponent); };
    Decimal last = tenTo(order_);
    last -= Decimal(1);
    lowest_ = toSum<kSize>(order == 1 ? Decimal() : tenTo(order_ - 1));
    highest_ = toSum<kSize>(last);
    for (std::size_t digit = 0; digit <= 9; ++digit) {
      const Sum<kSize> power = toSum<kSize>(Decimal::power(Decimal(digit), order_));
      for (std::size_t count = 1; count <= order_; ++count) {
        multiples_[digit][count] = multiples_[digit][count - 1] + power;
      }
    }
    std::uint64_t ten = 1;
    for (PowerOfTen& power : tens_) {
      power = PowerOfTen(ten);
      ten *= 10;
    }
  }

  std::vector<Decimal> run() {
    Node root;
    root.left = order_;
    descend(root, 9);
    std::sort(found_.begin(), found_.end());
    return found_;
  }

 private:
  // What is known of a number on the way down: the digits that it has for certain, and its leading digits.
  struct Node {
    Sum<kSize> sum{};       // of the powers of the certain digits
    Counts certain;         // how often each digit stands in it for certain
    Counts leading;         // how often among its leading digits
    std::size_t left = 0;   // digits not yet certain
    std::size_t known = 0;  // leading digits known
  };

  // The digits of a number down to this position, as far as they stand in one limb.
  std::uint64_t digitsTo(const Sum<kSize>& number, std::size_t position) const {
    const std::size_t place = order_ - 1 - position;
    return tens_[place % kLimbDigits].divide(number[place / kLimbDigits]);
  }

  // Finds the numbers that have the node's certain digits, no more digits above `greatest`, and else any.
  void descend(Node& node, std::size_t greatest) {
    if (!narrow(node, greatest)) return;
    if (node.known == order_) {
      report(node.sum);
      return;
    }
    assert(greatest > 0);  // with zeros alone left, both bounds are the number itself
    for (std::size_t more = 0; more <= node.left; ++more) {
      Node child = node;
      child.sum = node.sum + multiples_[greatest][more];
      if (isLess(highest_, child.sum)) return;
      child.certain.add(greatest, more);
      child.left = node.left - more;
      descend(child, greatest - 1);
    }
  }

  // A number lies between the sum and the sum with every digit left as great as can be. The leading digits
  // that both bounds share are its own, which makes digits certain and the bounds narrower, again and again.
  // False if there is no such number.
  bool narrow(Node& node, std::size_t greatest) const {
    for (bool narrower = true; narrower;) {
      narrower = false;
      Sum<kSize> high = node.sum + multiples_[greatest][node.left];
      if (isLess(high, lowest_) || isLess(highest_, node.sum)) return false;
      if (isLess(highest_, high)) high = highest_;
      const Sum<kSize> low = isLess(node.sum, lowest_) ? lowest_ : node.sum;
      for (; node.known < order_; ++node.known) {
        const std::uint64_t digits = digitsTo(low, node.known);
        if (digits != digitsTo(high, node.known)) break;
        const std::size_t digit = digits % 10;
        node.leading.add(digit, 1);
        if (node.leading[digit] <= node.certain[digit]) continue;
        if (digit > greatest || node.left == 0) return false;
        node.certain.add(digit, 1);
        --node.left;
        node.sum = node.sum + multiples_[digit][1];
        narrower = true;
      }
    }
    return true;
  }

  void report(const Sum<kSize>& sum) {
    std::vector<Decimal::Limb> limbs;
    for (const std::uint64_t limb : sum) {
      limbs.push_back(static_cast<Decimal::Limb>(limb % Decimal::kBase));
      limbs.push_back(static_cast<Decimal::Limb>(limb / Decimal::kBase));
    }
    Decimal number;
    number.assign(limbs);
    found_.push_back(std::move(number));
  }

  std::size_t order_;
  Sum<kSize> lowest_;
  Sum<kSize> highest_;
  std::array<std::array<Sum<kSize>, kLastPossibleOrder + 1>, 10> multiples_{};  // of each digit's power
  std::array<PowerOfTen, kLimbDigits> tens_;
  std::vector<Decimal> found_;
};

}  // namespace

std::vector<Decimal> narcissisticNumbers(int order) {
  assert(order >= 1 && order <= kLastPossibleOrder);
  if (order <= 16) return Search<1>(order).run();
  if (order <= 32) return Search<2>(order).run();
  if (order <= 48) return Search<3>(order).run();
  return Search<4>(order).run();
}

}  // namespace zelvion
