#include "engine/fixedpoints/sized_search.h"

#include <cassert>
#include <cstdint>
#include <type_traits>

#include "engine/fixedpoints/power_of_ten.h"
#include "engine/transform/power_multiples.h"

namespace zelvion {
namespace {

// The greatest number of so many digits.
Decimal greatestOf(std::size_t length) {
  Decimal number = Decimal::power(Decimal(10), length);
  number -= Decimal(1);
  return number;
}

// The greatest digit that can come: the power of a greater one is above `last`.
std::size_t greatestDigit(const std::array<Decimal, 10>& powers, const Decimal& last) {
  std::size_t digit = 9;
  while (digit > 0 && powers[digit] > last) --digit;
  return digit;
}

// The search for one length, in three lines: choose how many nines there are, then eights, and so on; the
// least and the greatest sum that remain share leading digits, which the number then has; prune where it
// cannot.
//
// For k = 3 and three digits, with one 5 and nothing greater, two digits up to 4 give sums from 125 to 253.
// Without a 4 they lie from 125 to 179, so that the number begins with a 1; with the 1 from 126 to 153, and
// with a 3 there is only 153 left, which is found. A 2 instead gives 134, whose 3 cannot come any more:
// pruned.
template <std::size_t kLimbs>
class Search : public SizedSearch {
  using Sum = FixedSum<kLimbs>;
  // The digits other than zero of a number of the length; zeros are never certain but as leading digits.
  __extension__ using Wide = unsigned __int128;
  using Counts = std::conditional_t<Sum::kDigits <= kMaxPackedCount, PackedSilhouette, Wide>;

 public:
  Search(const std::array<Decimal, 10>& powers, std::size_t length)
      : length_(length),
        lowest_(Sum::of(length == 1 ? Decimal() : Decimal::power(Decimal(10), length - 1))),
        highest_(Sum::of(greatestOf(length))),
        greatest_(greatestDigit(powers, greatestOf(length))),
        powers_(powers, length, greatest_) {
    makeResidues(powers);
    std::array<std::uint64_t, Sum::kLimbDigits> tens{1};
    for (std::size_t i = 1; i < tens.size(); ++i) tens[i] = 10 * tens[i - 1];
    for (std::size_t place = length_; place-- > 0;) {
      positions_.push_back({place / tens.size(), PowerOfTen(tens[place % tens.size()])});
    }
    makePieces();
  }

  std::size_t pieces() const override { return pieces_.size(); }

  void run(std::size_t piece, const std::atomic<bool>& stop, std::vector<Decimal>& found) const override {
    goOn(pieces_[piece].node, pieces_[piece].greatest, Walk{stop, found, nullptr});
  }

 private:
  // A node of the search tree: the digits that a number has for certain, and how many leading ones are known.
  struct Node {
    Sum sum;                // of the powers of the certain digits
    Counts certain = 0;     // those of them that are not among the leading digits
    std::size_t left = 0;   // digits not yet certain
    std::size_t known = 0;  // leading digits known
    unsigned residue = 0;   // of the certain digits
  };

  struct Piece {
    Node node;
    std::size_t greatest = 0;  // digit that may come in addition to the certain ones
  };

  struct Walk {
    const std::atomic<bool>& stop;
    std::vector<Decimal>& found;
    std::vector<Piece>* pieces;  // if not null, takes the nodes to search later
  };

  // The place of a digit: its limb, and the power of ten there.
  struct Position {
    std::size_t limb = 0;
    PowerOfTen power;

    // The digits of the limb down to this one.
    std::uint64_t digitsTo(const Sum& number) const { return power.divide(number.limbs[limb]); }
  };

  // A number and the sum of its digits are congruent modulo 9. So for a fixed point the residues of
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

  // The sum with every remaining digit as great as can be.
  Sum highestSum(const Node& node, std::size_t greatest) const {
    return node.sum + powers_.multiple(greatest, node.left);
  }

  void makePieces() {
    const std::atomic<bool> stop{false};
    std::vector<Decimal> none;
    Node root;
    root.left = length_;
    const Sum high = highestSum(root, greatest_);
    if (!(high < lowest_)) descend(root, greatest_, high, Walk{stop, none, &pieces_});
  }

  // Finds the numbers that have the node's certain digits, no more digits above `greatest`, and else any;
  // `high` is their highest sum. The two sums are not both below or both above the numbers of the length.
  void descend(Node& node, std::size_t greatest, const Sum& high, const Walk& walk) const {
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
      walk.found.push_back(node.sum.decimal());
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
    const Sum sum = node.sum + powers_.multiple(greatest, more);
    if (highest_ < sum) return false;
    const Sum high = sum + powers_.multiple(greatest - 1, left);
    if (high < lowest_) return true;
    Node child = {sum, node.certain, left, node.known, residue};
    child.certain += packed<Counts>(greatest, more);
    descend(child, greatest - 1, high, walk);
    return true;
  }

  // A number lies between the sum and the highest sum. The leading digits that both bounds share are its own,
  // which makes digits certain and the bounds narrower, again and again. False if there is no such number.
  bool narrow(Node& node, std::size_t greatest, Sum high) const {
    Counts certain = node.certain;
    std::size_t known = node.known;
    std::size_t left = node.left;
    unsigned residue = node.residue;
    while (true) {
      if (highest_ < high) high = highest_;
      const Sum& low = node.sum < lowest_ ? lowest_ : node.sum;
      Sum sum = node.sum;
      for (; known < length_; ++known) {
        const Position& position = positions_[known];
        const std::uint64_t digits = position.digitsTo(low);
        if (digits != position.digitsTo(high)) break;
        const std::size_t digit = digits % 10;
        if ((certain & kCountOf[digit]) != 0) {
          certain -= packed<Counts>(digit, 1);
          continue;
        }
        if (digit > greatest || left == 0) return false;
        --left;
        sum += powers_.multiple(digit, 1);
        residue += residues_[digit][1];
      }
      const bool narrower = left < node.left;
      residue %= 9;
      node = {sum, certain, left, known, residue};
      if (!narrower) return true;
      if (!canVanish(residue, greatest, left)) return false;
      high = highestSum(node, greatest);
      if (high < lowest_ || highest_ < node.sum) return false;
    }
  }

  // The bits of the count of each digit, none for zeros.
  static constexpr std::array<Counts, 10> kCountOf = [] {
    std::array<Counts, 10> bits{};
    for (std::size_t digit = 1; digit <= 9; ++digit)
      bits[digit] = packed<Counts>(digit, (1U << kCountBits<Counts>)-1);
    return bits;
  }();
  static constexpr std::size_t kChosenByPieces = 3;  // digits whose counts a piece fixes

  std::size_t length_;
  Sum lowest_;
  Sum highest_;
  std::size_t greatest_;  // digit whose power is not too long
  PowerMultiples<kLimbs> powers_;
  std::array<std::array<std::uint8_t, Sum::kDigits + 1>, 10> residues_{};    // of as many of each digit
  std::array<std::array<std::uint16_t, Sum::kDigits + 1>, 10> vanishing_{};  // a bit for each residue
  std::vector<Piece> pieces_;
  std::vector<Position> positions_;  // of the digits, the leading one first
};

}  // namespace

std::unique_ptr<SizedSearch> makeSearch(const std::array<Decimal, 10>& powers, std::size_t length) {
  return withLimbsFor<1, 2, 3, 4, 5, 6, 7, 9, 13>(length,
                                                  [&]<std::size_t kLimbs>() -> std::unique_ptr<SizedSearch> {
                                                    return std::make_unique<Search<kLimbs>>(powers, length);
                                                  });
}

}  // namespace zelvion
