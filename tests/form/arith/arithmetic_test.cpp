#include <algorithm>
#include <limits>
#include <random>

#include "engine/arith/decimal.h"
#include "engine/arith/gmp.h"
#include "form/form_test.h"

namespace zelvion {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

using testing::padded;
using testing::valueIn;

class Arithmetic : public testing::FormTest {
 protected:
  std::string digits(std::size_t length) { return testing::runsOfDigits(length, random_); }
  /// Now and then a long one.
  std::string digits() { return digits(random_() % (random_() % 10 == 0 ? 3'000 : 20) + 1); }
  std::string canonical() { return mpz_class(valueIn(digits()) * (random_() % 2 == 0 ? 1 : -1)).get_str(); }
  /// Numbers of all sizes, those at the ends of the range more often than by chance.
  std::int32_t small() {
    static constexpr std::int32_t kEdges[] = {0, 1, -1, 9, 10, 214'748'364, kMost, kLeast, -kMost};
    const auto any = random_();
    if (any % 3 == 0) return kEdges[random_() % std::size(kEdges)];
    return static_cast<std::int32_t>(any) >> (random_() % 32);
  }

  std::mt19937 random_{20};
};

TEST_F(Arithmetic, SumsAndProductsKeepTheWidthOfTheirDigits) {
  for (int i = 0; i < 3'000; ++i) {
    const std::string a = digits(), b = digits(random_() % 30);
    if (a != "0") {
      ASSERT_EQ(Velmoire::Plusplus(a, b), padded(valueIn(a) + valueIn(b), std::max(a.size(), b.size())));
    }
    const std::int32_t lk = small();
    const bool minus = random_() % 2 == 0 && lk != 0;
    std::string product = padded(valueIn(b) * lk, b.size());
    if (minus != (lk < 0) && !product.empty() && product != "0") product.insert(0, "-");
    ASSERT_EQ(Velmoire::MulCalcul((minus ? "-" : "") + b, lk), product) << b << " " << lk;
  }
  for (const std::string zero : {"0", "", "-0"}) {
    for (const std::string ent2 : {"", "0", "007", "-5", "x"})
      EXPECT_EQ(Velmoire::Plusplus(zero, ent2), ent2);
  }
}

TEST_F(Arithmetic, Powers) {
  for (const std::string ent : {"2", "9", "-9", "10", "007", "-012", "00", "2147483647", "-2147483648"}) {
    for (const std::int32_t lk : {2, 3, 39, 500, 3'333}) {
      mpz_class value = valueIn(ent);
      mpz_pow_ui(value.get_mpz_t(), value.get_mpz_t(), static_cast<unsigned>(lk));
      const std::string digits = padded(value, ent.size() - (ent[0] == '-' ? 1 : 0));
      EXPECT_EQ(Velmoire::PuisCalcul(ent, lk), (value < 0 ? "-" : "") + digits) << ent << " " << lk;
    }
  }
  for (const std::string ent : {"0", "", "-0", "2147483648", "abc"}) {
    EXPECT_EQ(Velmoire::PuisCalcul(ent, 1) + Velmoire::PuisCalcul(ent, 0) + Velmoire::PuisCalcul(ent, -1),
              ent);
  }
  EXPECT_EQ(Velmoire::PuisCalcul("1", kMost) + Velmoire::PuisCalcul("0", kMost), "10");
  for (const std::int32_t lk : {1'060'000, kMost}) EXPECT_THROW(Velmoire::PuisCalcul("9", lk), Refusal);
}

TEST_F(Arithmetic, SignedSumsAndQuotientsAgreeWithGmp) {
  std::string sort;
  for (int i = 0; i < 5'000; ++i) {
    std::string ent = canonical();
    const bool minus = ent[0] == '-';
    const std::string number = ent.substr(minus ? 1 : 0);
    std::int32_t lk = i % 4 != 0 || ent.size() > 9 ? small() : std::stoi(ent) * (i % 8 == 0 ? 1 : -1);
    const mpz_class value = valueIn(ent), quotient = lk == 0 ? 0 : mpz_class(value / lk);
    ASSERT_EQ(Velmoire::PlusCalcul(ent, lk), mpz_class(value + lk).get_str()) << ent << " " << lk;
    ASSERT_EQ(form_.MoinsCalcul(ent, lk), mpz_class(value - lk).get_str()) << ent << " " << lk;
    if (lk >= 0 && valueIn(number) >= lk) {
      ASSERT_EQ(Velmoire::MoinsCalcul0("00" + number, lk), mpz_class(valueIn(number) - lk).get_str());
    }
    if (lk != 0 && lk != kLeast && value != 0) {
      const bool exact = quotient * lk == value;
      const std::string inexact = (minus != (lk < 0) ? "-" : "") + number;
      const std::int32_t positive = std::abs(lk);
      ASSERT_EQ(Velmoire::DiviCalcul(ent, lk, sort), exact) << ent << " " << lk;
      ASSERT_EQ(sort, exact ? quotient.get_str() : inexact) << ent << " " << lk;
      ASSERT_EQ(lk, positive);
    }
    // Halves and thirds lose one zero, and a half the sign of its number.
    const std::string half = padded(valueIn(number) / 2, number.size()),
                      third = padded(valueIn(number) / 3, number.size());
    ASSERT_EQ(Velmoire::TiersCalcul(number), third.substr(third[0] == '0' ? 1 : 0));
    if (value == 0) continue;
    ASSERT_EQ(Velmoire::DemiCalcul(ent), (minus ? "-" : "") + half.substr(half[0] == '0' ? 1 : 0));
    ASSERT_EQ(ent, number);
  }
}

TEST_F(Arithmetic, TextsThatAreNoPlainNumbers) {
  for (const char* zero : {"0", "", "-0"}) EXPECT_EQ(Velmoire::PlusCalcul(zero, kLeast), "-2147483648");
  EXPECT_EQ(Velmoire::PlusCalcul("007", 3) + Velmoire::PlusCalcul("-007", -1), "010-008");
  desktop_.expect(Answer::Ok);
  EXPECT_EQ(form_.MoinsCalcul("", 5), "");
  EXPECT_EQ(shown()[0], "zelvion|entreee vide!");
  std::string half = "0", minusOne = "-1", sort;
  EXPECT_EQ(Velmoire::DemiCalcul(half) + Velmoire::DemiCalcul(minusOne), "0-");
  for (const std::int32_t least : {0, kLeast}) {
    std::int32_t divisor = least;
    EXPECT_FALSE(Velmoire::DiviCalcul("-0", divisor, sort));
    EXPECT_THROW(Velmoire::DiviCalcul("-12", divisor, sort), Refusal);
    EXPECT_EQ(sort + std::to_string(divisor), "-0" + std::to_string(least));
  }
}

TEST_F(Arithmetic, Order) {
  for (int i = 0; i < 3'000; ++i) {
    const std::string a = canonical(), b = mpz_class(valueIn(a) + small()).get_str();
    const bool greater = valueIn(a) > valueIn(b);
    ASSERT_EQ(Velmoire::Maxi(a, b), greater ? a : b);
    ASSERT_EQ(Velmoire::Mini(a, b), greater ? b : a);
  }
  const std::string greaterFirst[][2] = {{"007", "12"}, {"0", "-0"},    {"5", ""},      {"", "-"},
                                         {"-", "-5"},   {"13x", "12y"}, {"871", "12é"}, {"12é", "99"}};
  for (const auto& [greater, lesser] : greaterFirst) {
    EXPECT_EQ(Velmoire::Maxi(greater, lesser) + Velmoire::Maxi(lesser, greater), greater + greater);
    EXPECT_EQ(Velmoire::Mini(greater, lesser) + Velmoire::Mini(lesser, greater), lesser + lesser);
  }
}

TEST_F(Arithmetic, Properties) {
  for (const std::string ent : {"0", "-0", "-4", "998"}) EXPECT_TRUE(Velmoire::Pair(ent)) << ent;
  for (const std::string ent : {"1", "-3", "-", ""}) EXPECT_FALSE(Velmoire::Pair(ent)) << ent;
  for (const std::string ent : {"3", "12", "111", "000"}) EXPECT_TRUE(Velmoire::Triple(ent)) << ent;
  for (const std::string ent : {"10", "0", "1", "2", "-", ""}) EXPECT_FALSE(Velmoire::Triple(ent)) << ent;
  EXPECT_EQ(Velmoire::Demilong(-4) + Velmoire::Demilong(-3) + Velmoire::Demilong(6), 1);
  std::string ent = "old";
  desktop_.expect(Answer::Ok);
  form_.Choixentree(ent);
  EXPECT_EQ(shown()[0], "zelvion|Entier initial avec 4000 chiffres");
  EXPECT_EQ(ent.substr(3'980), "12345678901234567890");
  EXPECT_EQ(Velmoire::ResuPartiel("2147483647", ent) + ent, "7214748364");
  EXPECT_EQ(Velmoire::ResuPartiel("7", ent) + ent, "7");
  EXPECT_EQ(Velmoire::ResuPartiel("1é", ent) + ent, "é1");
}

TEST_F(Arithmetic, TextsWithoutAValueAreRefused) {
  std::string half = "1x";
  EXPECT_THROW(Decimal::parse("-1"), Refusal);
  EXPECT_THROW(Velmoire::Plusplus("5", "-5"), Refusal);
  EXPECT_THROW(Velmoire::MulCalcul("-5", 0), Refusal);
  EXPECT_THROW(Velmoire::PuisCalcul("2147483648", 2), Refusal);
  EXPECT_THROW(Velmoire::PlusCalcul("1é", 1), Refusal);
  EXPECT_THROW(Velmoire::DemiCalcul(half), Refusal);
  EXPECT_THROW(Velmoire::TiersCalcul("-3"), Refusal);
  EXPECT_THROW(Velmoire::Triple("-3"), Refusal);
  EXPECT_THROW(Velmoire::Maxi("x1", "x2"), Refusal);
  EXPECT_THROW(Velmoire::Mini("1é", "1è"), Refusal);
}

}  // namespace
}  // namespace zelvion
