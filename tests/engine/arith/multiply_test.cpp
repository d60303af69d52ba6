#include "engine/arith/multiply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "engine/arith/fourier.h"
#include "engine/arith/gmp.h"

namespace zelvion {
namespace {

using testing::valueIn;
using Limbs = std::vector<Decimal::Limb>;

constexpr std::uint64_t kPrime = 4'294'967'291;

std::uint64_t remainder(const Limbs& limbs) {
  std::uint64_t rest = 0;
  for (std::size_t i = limbs.size(); i-- > 0;) rest = (rest * Decimal::kBase + limbs[i]) % kPrime;
  return rest;
}

/// Limbs at the edges of what a limb and half a limb hold, in runs, among random ones: greatest sums, carries
/// and borrows that travel far.
Limbs someLimbs(std::size_t count, std::mt19937& random) {
  static constexpr Decimal::Limb kEdges[] = {99'999'999, 0,          49'995'000, 50'005'000,
                                             50'000'000, 49'999'999, 1,          99'990'000};
  std::uniform_int_distribution<Decimal::Limb> any(0, Decimal::kBase - 1);
  Limbs limbs;
  const bool isWhole = random() % 3 == 0;
  while (limbs.size() < count) {
    const auto kind = random() % (2 * std::size(kEdges));
    const std::size_t run = isWhole ? count : random() % (random() % 8 == 0 ? 5'000 : 9) + 1;
    for (std::size_t i = std::min(run, count - limbs.size()); i > 0; --i) {
      limbs.push_back(kind < std::size(kEdges) ? kEdges[kind] : any(random));
    }
  }
  return limbs;
}

void expectRightModuloPrime(const Limbs& a, const Limbs& b) {
  const Limbs product = multiplyLimbs(a, b);
  ASSERT_EQ(product.size(), a.size() + b.size());
  ASSERT_LT(*std::max_element(product.begin(), product.end()), Decimal::kBase);
  ASSERT_EQ(remainder(product), remainder(a) * remainder(b) % kPrime) << a.size() << " " << b.size();
}

TEST(Multiply, AgreesWithGmpAroundTheFirstLengthsOfTransforms) {
  std::mt19937 random(21);
  const auto number = [](const Limbs& limbs) {
    Decimal decimal;
    decimal.assign(limbs);
    return decimal;
  };
  for (const std::size_t n : {1, 2, 63, 64, 65, 95, 96, 120, 127, 128, 160, 191, 192, 193, 479, 480, 481}) {
    for (const std::size_t m : {64, 65, 128, 192, 288, 1'000, 3'000}) {
      for (int i = 0; i < 4; ++i) {
        const Decimal a = number(someLimbs(n, random)), b = number(someLimbs(m, random));
        ASSERT_EQ((a * b).text(), mpz_class(valueIn(a.text()) * valueIn(b.text())).get_str());
        ASSERT_EQ((a * a).text(), mpz_class(valueIn(a.text()) * valueIn(a.text())).get_str());
      }
    }
  }
}

// Each length of a transform is a leaf of 4 to 15 coefficients times a power of four.
TEST(Multiply, IsExactAtEveryLengthOfATransform) {
  std::mt19937 random(22);
  for (std::size_t leaf = 4; leaf <= fourier::kMostLeaf; ++leaf) {
    for (std::size_t length = 16 * leaf; length <= 300'000; length *= 4) {
      for (const std::size_t all : {length - 1, length, length + 1}) {
        const std::size_t part = all / (random() % 4 + 2);
        expectRightModuloPrime(someLimbs(part, random), someLimbs(all - part, random));
        const Limbs root = someLimbs(all / 2, random);
        expectRightModuloPrime(root, root);
      }
    }
  }
}

TEST(Multiply, GoesOnWhereTransformsEnd) {
  std::mt19937 random(23);
  for (const std::size_t all : {fourier::kMostLimbs - 1, fourier::kMostLimbs, 2 * fourier::kMostLimbs + 3}) {
    // Coefficients that are all 5,000 or -5,000, and sums that are all carried
    for (const Decimal::Limb limb : {49'995'000, 99'999'999}) {
      const Limbs worst(all / 2, limb);
      expectRightModuloPrime(worst, worst);
    }
    expectRightModuloPrime(someLimbs(all / 2, random), someLimbs(all - all / 2, random));
  }
  expectRightModuloPrime(someLimbs(200, random), someLimbs(fourier::kMostLimbs, random));
}

}  // namespace
}  // namespace zelvion
