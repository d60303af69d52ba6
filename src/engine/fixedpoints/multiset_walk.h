#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/fixedpoints/vector_sieve.h"
#include "engine/transform/orbit.h"

namespace zelvion {

/// The walk over the multisets of non-zero digits in search of those whose image is a fixed point.
///
/// A candidate is a multiset of m digits from 1 to 9 that never rise, with a fixed number of nines in front.
/// The candidates of one m come in ascending order. Their last digits, about half of them, are taken from a
/// table of all such tails with their sums of powers, so that a candidate costs one addition and the loop
/// over tails is a plain one.
///
/// Whether an image can be fixed is told by a sieve. With weights w(d) = floor(d^k W / 9^k), the weights of a
/// candidate add up to its image times W / 9^k, those of the digits of the image to the image's own image
/// likewise, each short by less than the number of digits. Where the two sums differ by more, the image is
/// not fixed. Where the processor has the vectors, weights of 16 bits keep most candidates away from those of
/// 32 bits.
class MultisetWalk {
 public:
  using Survivor = std::function<void(const std::string& candidate)>;

  /// The most digits that a candidate has after its nines.
  static constexpr int kMaxDigits = 23;

  /// `nines` (0 or more) tells how many nines stand in front of the digits of a candidate. The powers of the
  /// digits are taken from `power`, which need not outlive the walk, unless no image can be fixed.
  MultisetWalk(DigitPower& power, std::size_t nines);

  /// Goes through all candidates of `digits` digits (1 to kMaxDigits) and hands those that pass the sieve to
  /// `survivor`, each as its digits without the nines: every candidate whose image is a fixed point is among
  /// them, and next to no other. Returns the number of candidates.
  std::int32_t run(int digits, const Survivor& survivor);

  /// How many multisets of `digits` non-zero digits, 0 to kMaxDigits, there are: C(digits + 8, 8).
  static std::int32_t count(int digits);

 private:
  /// A limb of four digits, or the coarse weight of one.
  using Short = std::uint16_t;

  /// The tails of `length` digits, ascending.
  struct Tails {
    int length = 0;
    std::vector<std::uint32_t> numbers;
    std::vector<std::uint32_t> weights;
    std::vector<Short> coarseWeights;  ///< up to whole blocks of the sieve
    std::vector<Short> sums;           ///< of powers, as vector_sieve has them
  };

  void prepare(const Transformation& transformation);
  void buildTails(int length);
  /// `tails` with one digit more in front.
  Tails extended(const Tails& tails) const;
  /// The weights of the nines and the digits in front of a tail.
  struct FrontWeight {
    std::uint32_t fine;
    std::uint32_t coarse;
  };

  void descend(int digits, int greatest, FrontWeight weight);
  void testTails(int greatest, FrontWeight weight);
  std::size_t tailPlace(std::size_t tail) const;
  bool passes(std::size_t tail, std::uint32_t target) const;
  /// The sum of the powers of the nines and the digits in front of the tail.
  const Short* frontSum() const { return &frontSums_[front_.size() * size_]; }

  std::size_t nines_;
  bool hopeless_ = false;  ///< no image can be fixed
  const Survivor* survivor_ = nullptr;

  std::size_t size_ = 0;                ///< limbs of a sum
  std::uint32_t tolerance_ = 0;         ///< how far the weights of a fixed point and its digits may lie apart
  std::vector<std::uint32_t> weights_;  ///< of the digits 0 to 9
  std::vector<std::uint32_t> groupWeights_;  ///< of four digits together
  std::vector<Short> powers_;                ///< of the digits 0 to 9, size_ limbs each

  std::string front_;             ///< the digits of the candidate in front of its tail
  std::vector<Short> frontSums_;  ///< the sums of the powers of the nines, and of them and each digit more

  Tails tails_;

  std::array<Short, 10> coarseWeights_{};  ///< of the digits 0 to 9, modulo 2^16 like all that come of them
  vector_sieve::DigitWeights coarseBytes_{};  ///< the same
  std::vector<Short> places_;                 ///< of the tails that pass the vectors
};

}  // namespace zelvion
