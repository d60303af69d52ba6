#include "engine/arith/decimal.h"

#include <gtest/gtest.h>

#include "engine/arith/gmp.h"

namespace zelvion {
namespace {

using testing::padded;
using testing::runsOfDigits;
using testing::valueIn;

TEST(Decimal, AgreesWithGmp) {
  std::mt19937 random(20);
  const std::size_t lengths[] = {0, 1, 7, 8, 9, 16, 17, 33, 250, 700, 1'999, 6'000, 26'000, 70'001};
  for (const std::size_t n : lengths) {
    for (const std::size_t m : lengths) {
      const std::string a = runsOfDigits(n, random),
                        b = random() % 3 == 0 ? std::string(m, '9') : runsOfDigits(m, random);
      const mpz_class x = valueIn(a), y = valueIn(b);
      const Decimal p = Decimal::parse(a), q = Decimal::parse(b);
      ASSERT_EQ(p.padded(n + 3), padded(x, n + 3));
      ASSERT_EQ((p * q).text(), mpz_class(x * y).get_str()) << n << " " << m;
      ASSERT_EQ((p * p).text(), mpz_class(x * x).get_str()) << n;
      Decimal sum = p;
      ASSERT_EQ((sum += q).text(), mpz_class(x + y).get_str()) << n << " " << m;
      ASSERT_EQ(sum -= p, q) << n << " " << m;
      ASSERT_EQ(p < q, x < y);
      const auto divisor = std::max<std::uint32_t>(1, static_cast<std::uint32_t>(random()));
      Decimal quotient = p;
      ASSERT_EQ(quotient.divideBy(divisor), mpz_class(x % divisor).get_ui());
      ASSERT_EQ(quotient.text(), mpz_class(x / divisor).get_str());
    }
  }
  // (10^n - 1)(10^m - 1): the greatest sums that a product can meet
  const std::size_t n = 600'000, m = 40'000;
  const std::string nines(n, '9');
  const Decimal a = Decimal::parse(nines), b = Decimal::parse(nines.substr(n - m));
  const std::string ab = nines.substr(0, m - 1) + "8" + nines.substr(m) + std::string(m - 1, '0') + "1";
  EXPECT_TRUE((a * b).text() == ab && (b * a).text() == ab);
  EXPECT_TRUE((a * a).text() == nines.substr(1) + "8" + std::string(n - 1, '0') + "1");
}

}  // namespace
}  // namespace zelvion
