#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zelvion {

/// The walk over the multisets of non-zero digits in search of those whose image is a fixed point.
///
/// A candidate is a multiset of m digits from 1 to 9 that never rise, with a fixed number of nines in front.
/// The candidates of one m come in ascending order. Their last digits, up to six, are taken from a table of
/// all such tails with their sums of powers, so that a candidate costs one addition and the loop over tails
/// is a plain one.
///
/// Whether an image can be fixed is told by a sieve. With weights w(d) = floor(d^k W / 9^k), the weights of a
/// candidate add up to its image times W / 9^k, those of the digits of the image to the image's own image
/// likewise, each short by less than the number of digits. Where the two sums differ by more, the image is
/// not fixed. Most images fail on their last sixteen digits alone: nines for all the others could not make up
/// for what is missing.
class MultisetWalk {
 public:
  using Survivor = std::function<void(const std::string& candidate)>;

  /// The most digits that a candidate has behind its nines.
  static constexpr int kMaxDigits = 23;

  /// `k` is the power, `nines` (0 or more) how many nines stand in front of the digits of a candidate.
  MultisetWalk(std::int32_t k, std::int32_t nines);

  /// Goes through all candidates of `digits` digits (1 to kMaxDigits) and hands those that pass the sieve to
  /// `survivor`, each as its digits without the nines: every candidate whose image is a fixed point is among
  /// them, and hardly another. Returns the number of candidates.
  std::int32_t run(int digits, const Survivor& survivor);

  /// How many multisets of `digits` non-zero digits, 0 to kMaxDigits, there are: C(digits + 8, 8).
  static std::int32_t count(int digits);

 private:
  static constexpr int kMaxTail = 6;

  struct Node {
    std::vector<std::uint64_t> sum;  ///< of the powers of the nines and the digits so far, size_ limbs
    std::uint32_t weight = 0;
  };

  void prepare();
  void buildTails(int length);
  void descend(int digits, int greatest, const Node& node);
  void testTails(int greatest, const Node& node);
  std::uint32_t weightOf(std::uint64_t limb) const;
  bool passes(const Node& node, std::size_t tail) const;

  std::int32_t k_;
  std::int32_t nines_;
  bool hopeless_ = false;  ///< no image can be fixed
  const Survivor* survivor_ = nullptr;
  std::string prefix_;  ///< the digits of the candidate in front of its tail

  std::size_t size_ = 0;                ///< limbs of sixteen digits in a sum
  std::uint32_t tolerance_ = 0;         ///< how far the weights of a fixed point and its digits may lie apart
  std::uint32_t reachable_ = 0;         ///< the weight of nines in all digits above the lowest limb
  std::vector<std::uint32_t> weights_;  ///< of the digits 0 to 9
  std::vector<std::uint32_t> groupWeights_;  ///< of four digits together
  std::vector<std::uint64_t> powers_;        ///< of the digits 0 to 9, size_ limbs each

  Node root_;  ///< the nines alone

  int tailLength_ = 0;
  std::uint32_t tailUnit_ = 1;              ///< what a digit in front of a tail is worth
  std::vector<std::uint32_t> tailNumbers_;  ///< the tails of tailLength_ digits, ascending
  std::vector<std::uint32_t> tailWeights_;
  std::vector<std::vector<std::uint64_t>> tailSums_;  ///< their sums of powers, limb by limb
};

}  // namespace zelvion
