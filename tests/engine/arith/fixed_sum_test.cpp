#include "engine/arith/fixed_sum.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "engine/arith/gmp.h"
#include "engine/plain_power.h"
#include "engine/transform/power_multiples.h"

namespace zelvion {
namespace {

std::string drawn(std::mt19937& random, std::size_t digits) {
  return testing::valueIn(testing::runsOfDigits(1 + random() % digits, random)).get_str();
}

template <std::size_t kLimbs>
void tryNumbers() {
  std::mt19937 random;
  FixedSum<kLimbs> uncarried;
  mpz_class expected;
  for (int i = 0; i < 300; ++i) {
    const std::string a = drawn(random, FixedSum<kLimbs>::kDigits - 3), b = drawn(random, a.size());
    const auto x = FixedSum<kLimbs>::of(Decimal::parse(a)), y = FixedSum<kLimbs>::of(Decimal::parse(b));
    EXPECT_EQ(x.decimal().text(), a);
    EXPECT_EQ((x + y).decimal().text(), mpz_class(mpz_class(a) + mpz_class(b)).get_str());
    EXPECT_EQ(x < y, mpz_class(a) < mpz_class(b));
    EXPECT_EQ(y < x, mpz_class(b) < mpz_class(a));
    EXPECT_EQ(x == y, a == b);
    EXPECT_EQ(unpacked(packed(x)), silhouetteOf(a));
    uncarried.addLimbs(x);
    expected += mpz_class(a);
  }
  uncarried.carry();
  EXPECT_EQ(uncarried.decimal().text(), expected.get_str());
}

TEST(FixedSum, IsExact) {
  tryNumbers<1>();
  tryNumbers<2>();
  tryNumbers<7>();
  // What is more stays in the highest limb, and counts in comparisons.
  const auto most = FixedSum<1>::of(Decimal::parse("9999999999999999"));
  EXPECT_EQ((most + most).limbs[0], 19'999'999'999'999'998U);
  EXPECT_LT(most, most + most);
}

TEST(PowerMultiples, GiveTheImages) {
  std::mt19937 random;
  for (const int k : {1, 3, 28, 29}) {
    const PowerMultiples<2> powers(digitPowers(k), 30);
    for (int i = 0; i < 100; ++i) {
      const std::string number = drawn(random, 30);
      const PackedSilhouette digits = packed(silhouetteOf(number)).value();
      const std::string image = testing::PlainPower(static_cast<unsigned>(k)).image(number);
      EXPECT_EQ(powers.image(digits).decimal().text(), image);
      EXPECT_EQ(powers.next(digits), packed(silhouetteOf(image)));
      EXPECT_EQ(totalOf(digits), totalOf(silhouetteOf(number)));
      EXPECT_EQ(countOf(7, digits), silhouetteOf(number).counts[6]);
    }
  }
}

}  // namespace
}  // namespace zelvion
