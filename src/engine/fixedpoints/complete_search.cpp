#include "engine/fixedpoints/complete_search.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <iterator>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "engine/transform/transformation.h"

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

// Ten counts of digits in one word: each up to 63 in 64 bits, up to 4095 in 128.
template <typename Word>
class Counts {
 public:
  std::size_t operator[](std::size_t digit) const {
    return static_cast<std::size_t>(word_ >> (kBits * digit)) & ((std::size_t{1} << kBits) - 1);
  }
  void add(std::size_t digit, std::size_t count) { word_ += static_cast<Word>(count) << (kBits * digit); }
  void takeOne(std::size_t digit) { word_ -= static_cast<Word>(1) << (kBits * digit); }

 private:
  static constexpr unsigned kBits = sizeof(Word) * 8 / 10;
  Word word_ = 0;
};

// Division of a number below 10^16 by a power of ten, as a product: exact since 2^54 is more than 10^16 and
// the multiplier, rounded up, has 63 bits.
class PowerOfTen {
 public:
  explicit PowerOfTen(std::uint64_t value = 1) {
    __extension__ using Wide = unsigned __int128;
    while ((std::uint64_t{2} << shift_) <= value) ++shift_;
    multiplier_ = static_cast<std::uint64_t>(((static_cast<Wide>(1) << (63 + shift_)) - 1) / value) + 1;
  }

  std::uint64_t divide(std::uint64_t number) const {
    __extension__ using Wide = unsigned __int128;
    return static_cast<std::uint64_t>((static_cast<Wide>(2 * number) * multiplier_) >> 64) >> shift_;
  }

 private:
  std::uint64_t multiplier_;
  unsigned shift_ = 0;
};

// The fixed points of one length. The search parts into pieces, by how many there are of its greatest digits.
class Search {
 public:
  virtual ~Search() = default;
  virtual std::size_t pieces() const = 0;
  /// Appends what the piece holds to `found`, in no order. Leaves early when `stop` is set.
  virtual void run(std::size_t piece, const std::atomic<bool>& stop, std::vector<Decimal>& found) const = 0;
};

template <std::size_t kSize, typename Word>
class SizedSearch : public Search {
 public:
  SizedSearch(const std::array<Decimal, 10>& powers, int length) : length_(static_cast<std::size_t>(length)) {
    const auto tenTo = [](std::size_t exponent) { return Decimal::power(Decimal(10), exponent); };
    Decimal last = tenTo(length_);
    last -= Decimal(1);
    lowest_ = toSum<kSize>(length == 1 ? Decimal() : tenTo(length_ - 1));
    highest_ = toSum<kSize>(last);
    // A digit whose power is too long does not come.
    for (greatest_ = 9; greatest_ > 0 && powers[greatest_] > last;) --greatest_;
    for (std::size_t digit = 0; digit <= greatest_; ++digit) {
      const Sum<kSize> power = toSum<kSize>(powers[digit]);
      for (std::size_t count = 1; count <= length_; ++count) {
        multiples_[digit][count] = multiples_[digit][count - 1] + power;
      }
    }
    makeResidues(powers);
    std::array<std::uint64_t, kLimbDigits> tens{1};
    for (std::size_t i = 1; i < kLimbDigits; ++i) tens[i] = 10 * tens[i - 1];
    for (std::size_t place = length_; place-- > 0;) {
      positions_.push_back({place / kLimbDigits, PowerOfTen(tens[place % kLimbDigits])});
    }
    makePieces();
  }

  std::size_t pieces() const override { return pieces_.size(); }

  void run(std::size_t piece, const std::atomic<bool>& stop, std::vector<Decimal>& found) const override {
    goOn(pieces_[piece].node, pieces_[piece].greatest, Walk{stop, found, nullptr});
  }

 private:
  // What is known of a number on the way down: the digits that it has for certain, and its leading digits.
  struct Node {
    Sum<kSize> sum{};       // of the powers of the certain digits
    Counts<Word> certain;   // those of them that are not among the leading digits
    std::size_t left = 0;   // digits not yet certain
    std::size_t known = 0;  // leading digits known
    unsigned residue = 0;   // of the certain digits
  };

  struct Piece {
    Node node;
    std::size_t greatest = 0;  // digit that may come beside the certain ones
  };

  struct Walk {
    const std::atomic<bool>& stop;
    std::vector<Decimal>& found;
    std::vector<Piece>* pieces;  // if not null, what is left to do below goes there
  };

  // Where a digit of a number stands: its limb, and the power of ten there.
  struct Position {
    std::size_t limb = 0;
    PowerOfTen power;

    // The digits down to this one, as far as they stand in the same limb.
    std::uint64_t digitsTo(const Sum<kSize>& number) const { return power.divide(number[limb]); }
  };

  // A number and the sum of its digits leave the same remainder by 9. So for a fixed point the residues of
  // its digits, which are d^k - d, add up to a multiple of 9, whatever their order.
  void makeResidues(const std::array<Decimal, 10>& powers) {
    for (std::size_t digit = 0; digit <= greatest_; ++digit) {
      Decimal difference = powers[digit];
      difference += Decimal(9 - digit);
      const unsigned residue = difference.divideBy(9);
      for (std::size_t count = 0; count <= length_; ++count) {
        residues_[digit][count] = static_cast<std::uint8_t>(count * residue % 9);
        unsigned vanishing = digit == 0 ? 1 : vanishing_[digit - 1][count];
        for (unsigned before = 0; digit > 0 && count > 0 && before < 9; ++before) {
          if (canVanish((before + residue) % 9, digit, count - 1)) vanishing |= 1U << before;
        }
        vanishing_[digit][count] = static_cast<std::uint16_t>(vanishing);
      }
    }
  }

  // Whether `left` digits up to `greatest` can make a multiple of 9 of `residue`.
  bool canVanish(unsigned residue, std::size_t greatest, std::size_t left) const {
    return ((vanishing_[greatest][left] >> residue) & 1) != 0;
  }

  // The sum with every digit that is left as great as can be.
  Sum<kSize> highestSum(const Node& node, std::size_t greatest) const {
    return node.sum + multiples_[greatest][node.left];
  }

  void makePieces() {
    const std::atomic<bool> stop{false};
    std::vector<Decimal> none;
    Node root;
    root.left = length_;
    const Sum<kSize> high = highestSum(root, greatest_);
    if (!isLess(high, lowest_)) descend(root, greatest_, high, Walk{stop, none, &pieces_});
  }

  // Finds the numbers that have the node's certain digits, no more digits above `greatest`, and else any;
  // `high` is their highest sum. The two sums are not both below or both above the numbers of the length.
  void descend(Node& node, std::size_t greatest, const Sum<kSize>& high, const Walk& walk) const {
    if (!narrow(node, greatest, high) || walk.stop.load(std::memory_order_relaxed)) return;
    const bool isPiece = node.known == length_ || greatest + kChosenByPieces == greatest_;
    if (walk.pieces != nullptr && isPiece) {
      walk.pieces->push_back({node, greatest});
    } else {
      goOn(node, greatest, walk);
    }
  }

  // The same for a node that is as narrow as can be.
  void goOn(const Node& node, std::size_t greatest, const Walk& walk) const {
    if (node.known == length_) {
      report(node.sum, walk.found);
      return;
    }
    assert(greatest > 0);  // with zeros alone left, both bounds are the number itself
    for (std::size_t more = 0; more <= node.left; ++more) {
      if (!choose(node, greatest, more, walk)) return;
    }
  }

  // Goes on below `node` with `more` of the greatest digit. False if that many, and more, are too many.
  bool choose(const Node& node, std::size_t greatest, std::size_t more, const Walk& walk) const {
    const std::size_t left = node.left - more;
    unsigned residue = node.residue + residues_[greatest][more];
    if (residue >= 9) residue -= 9;
    if (!canVanish(residue, greatest - 1, left)) return true;
    const Sum<kSize> sum = node.sum + multiples_[greatest][more];
    if (isLess(highest_, sum)) return false;
    const Sum<kSize> high = sum + multiples_[greatest - 1][left];
    if (isLess(high, lowest_)) return true;
    Node child = {sum, node.certain, left, node.known, residue};
    child.certain.add(greatest, more);
    descend(child, greatest - 1, high, walk);
    return true;
  }

  // A number lies between the sum and the highest sum. The leading digits that both bounds share are its own,
  // which makes digits certain and the bounds narrower, again and again. False if there is no such number.
  bool narrow(Node& node, std::size_t greatest, Sum<kSize> high) const {
    Counts<Word> certain = node.certain;
    std::size_t known = node.known;
    std::size_t left = node.left;
    unsigned residue = node.residue;
    while (true) {
      if (isLess(highest_, high)) high = highest_;
      const Sum<kSize>& low = isLess(node.sum, lowest_) ? lowest_ : node.sum;
      Sum<kSize> sum = node.sum;
      for (; known < length_; ++known) {
        const Position& position = positions_[known];
        const std::uint64_t digits = position.digitsTo(low);
        if (digits != position.digitsTo(high)) break;
        const std::size_t digit = digits % 10;
        if (certain[digit] > 0) {
          certain.takeOne(digit);
          continue;
        }
        if (digit > greatest || left == 0) return false;
        --left;
        sum = sum + multiples_[digit][1];
        residue += residues_[digit][1];
      }
      const bool narrower = left < node.left;
      residue %= 9;
      node = {sum, certain, left, known, residue};
      if (!narrower) return true;
      if (!canVanish(residue, greatest, left)) return false;
      high = highestSum(node, greatest);
      if (isLess(high, lowest_) || isLess(highest_, node.sum)) return false;
    }
  }

  void report(const Sum<kSize>& sum, std::vector<Decimal>& found) const {
    std::vector<Decimal::Limb> limbs;
    for (const std::uint64_t limb : sum) {
      limbs.push_back(static_cast<Decimal::Limb>(limb % Decimal::kBase));
      limbs.push_back(static_cast<Decimal::Limb>(limb / Decimal::kBase));
    }
    found.emplace_back().assign(limbs);
  }

  static constexpr std::size_t kChosenByPieces = 3;  // digits whose counts a piece fixes

  std::size_t length_;
  std::size_t greatest_ = 9;  // digit whose power is not too long
  Sum<kSize> lowest_;
  Sum<kSize> highest_;
  std::array<std::array<Sum<kSize>, kSize * kLimbDigits + 1>, 10> multiples_{};   // of each digit's power
  std::array<std::array<std::uint8_t, kSize * kLimbDigits + 1>, 10> residues_{};  // of as many of each digit
  std::array<std::array<std::uint16_t, kSize * kLimbDigits + 1>, 10> vanishing_{};  // a bit for each residue
  std::vector<Piece> pieces_;
  std::vector<Position> positions_;  // of the digits, the leading one first
};

std::unique_ptr<Search> makeSearch(const std::array<Decimal, 10>& powers, int length) {
  using Narrow = std::uint64_t;
  __extension__ using Wide = unsigned __int128;
  if (length <= 16) return std::make_unique<SizedSearch<1, Narrow>>(powers, length);
  if (length <= 32) return std::make_unique<SizedSearch<2, Narrow>>(powers, length);
  if (length <= 48) return std::make_unique<SizedSearch<3, Narrow>>(powers, length);
  if (length <= 63) return std::make_unique<SizedSearch<4, Narrow>>(powers, length);
  if (length <= 80) return std::make_unique<SizedSearch<5, Wide>>(powers, length);
  if (length <= 96) return std::make_unique<SizedSearch<6, Wide>>(powers, length);
  if (length <= 112) return std::make_unique<SizedSearch<7, Wide>>(powers, length);
  if (length <= 144) return std::make_unique<SizedSearch<9, Wide>>(powers, length);
  return std::make_unique<SizedSearch<13, Wide>>(powers, length);
}

// The lists of the lengths, handed on in order as they become complete.
class Lists {
 public:
  Lists(int k, int first, std::vector<std::size_t> pieces, Progress& progress,
        const std::function<void(const Decimal&)>& found)
      : transformation_(k),
        first_(first),
        left_(std::move(pieces)),
        numbers_(left_.size()),
        progress_(progress),
        found_(found) {}

  // A piece of the list `list` is done, and held these numbers. Any thread may say so.
  void add(std::size_t list, std::vector<Decimal>& numbers) {
    const std::scoped_lock lock(mutex_);
    progress_.found += numbers.size();
    std::ranges::move(numbers, std::back_inserter(numbers_[list]));
    if (progress_.stop) return;
    --left_[list];
    advance();
  }

  // Hands on what is left after a stop. Returns how many digits the lists are complete up to.
  int finish() {
    if (!progress_.stop) advance();
    const int complete = first_ - 1 + static_cast<int>(complete_);
    for (; complete_ < numbers_.size(); ++complete_) handOn(numbers_[complete_]);
    return complete;
  }

 private:
  void advance() {
    for (; complete_ < left_.size() && left_[complete_] == 0; ++complete_) handOn(numbers_[complete_]);
  }

  void handOn(std::vector<Decimal>& numbers) {
    std::ranges::sort(numbers);
    for (const Decimal& number : numbers) {
      if (transformation_.image(silhouetteOf(number)) != number)
        throw std::logic_error("Faute interne : " + number.text() + " n'est pas un point fixe.");
      found_(number);
    }
  }

  std::mutex mutex_;
  Transformation transformation_;
  int first_;
  std::vector<std::size_t> left_;  // pieces of each list
  std::vector<std::vector<Decimal>> numbers_;
  std::size_t complete_ = 0;
  Progress& progress_;
  const std::function<void(const Decimal&)>& found_;
};

}  // namespace

int longestFixedPoint(int k) {
  assert(k >= 1);
  const Decimal power = Decimal::power(Decimal(9), static_cast<std::uint64_t>(k));
  // m * 9^k gains a digit for ten times the m, so from some m on there is none.
  std::size_t length = power.digits();
  while ((power * Decimal(length + 1)).digits() > length) ++length;
  return static_cast<int>(length);
}

int findFixedPoints(int k, int first, int last, unsigned threads, Progress& progress,
                    const std::function<void(const Decimal&)>& found) {
  assert(k >= 1 && k <= kLastSearchedPower && first >= 1 && last <= kLastSearchedPower);
  std::array<Decimal, 10> powers;
  for (std::size_t digit = 0; digit <= 9; ++digit) {
    powers[digit] = Decimal::power(Decimal(digit), static_cast<std::uint64_t>(k));
  }
  struct Piece {
    std::size_t list;
    std::size_t piece;
  };
  std::vector<std::unique_ptr<Search>> searches;
  std::vector<std::size_t> counts;
  std::vector<Piece> pieces;
  for (int length = first; length <= last; ++length) {
    searches.push_back(makeSearch(powers, length));
    counts.push_back(searches.back()->pieces());
    for (std::size_t piece = 0; piece < counts.back(); ++piece) pieces.push_back({counts.size() - 1, piece});
  }
  progress.pieces = pieces.size();
  progress.done = 0;
  Lists lists(k, first, std::move(counts), progress, found);
  runPieces(pieces.size(), threads, progress, [&](std::size_t index, unsigned) {
    const auto [list, piece] = pieces[index];
    std::vector<Decimal> numbers;
    searches[list]->run(piece, progress.stop, numbers);
    lists.add(list, numbers);
  });
  return lists.finish();
}

std::vector<Decimal> narcissisticNumbers(int order) {
  assert(order >= 1 && order <= kLastPossibleOrder);
  Progress progress;
  std::vector<Decimal> numbers;
  findFixedPoints(order, order, order, 1, progress,
                  [&](const Decimal& number) { numbers.push_back(number); });
  return numbers;
}

}  // namespace zelvion
