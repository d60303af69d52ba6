#include "transform/transformation.h"

#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>

#include "form_test.h"
#include "transform/orbit.h"

namespace zelvion {
namespace {

std::string imageOf(int k, const Silhouette& silhouette) {
  const testing::PlainPower plain(static_cast<unsigned>(k));
  mpz_class sum;
  for (std::size_t i = 0; i < 9; ++i) sum += plain[i + 1] * silhouette.counts[i];
  return sum.get_str();
}

void expectExact(Transformation& transformation, const Silhouette& silhouette, Decimal& image) {
  const std::string expected = imageOf(transformation.k(), silhouette);
  const Silhouette counted = transformation.apply(silhouette, image);
  ASSERT_TRUE(image.text() == expected) << "k = " << transformation.k();
  ASSERT_EQ(counted, silhouetteOf(image));
  for (std::size_t i = 0; i < 9; ++i) {
    ASSERT_EQ(counted.counts[i], std::count(expected.begin(), expected.end(), "123456789"[i]));
  }
}

TEST(Transformation, ImagesAgreeWithGmp) {
  std::mt19937 random(27);
  Decimal image;  // one for all, so that what is left of a longer image would show
  for (const int k :
       {1, 2, 8, 16, 39, 60, 75, 90, 105, 120, 127, 128, 255, 308, 999, 1'800, 1'900, 10'007, 34'000}) {
    Transformation transformation(k);
    for (const std::uint32_t total : {0U, 1U, 12U, 126U, 128U, 1'800U, 1'860U, 32'766U, 1'000'000U}) {
      for (std::uint32_t kinds = 1; kinds <= 9; kinds += k < 400 ? 1 : 3) {
        Silhouette silhouette;
        for (std::uint32_t left = total, some = 0; left > 0; left -= some) {
          some = std::min(left, 1 + static_cast<std::uint32_t>(random() % (2 * total / kinds + 1)));
          silhouette.counts[random() % 9] += some;
        }
        expectExact(transformation, silhouette, image);
        if (total > 32'766) continue;
        std::string value;
        for (std::size_t d = 9; d > 0; --d) value.append(silhouette.counts[d - 1], "0123456789"[d]);
        DigitPower power(std::to_string(k));
        Orbit orbit(power, value);
        for (int step = 1; step <= 4 && value.size() <= 32'766; ++step) {
          orbit.advance();
          value = imageOf(k, silhouetteOf(value));
          ASSERT_TRUE(orbit.text() == value) << k << " " << total << " " << step;
        }
      }
    }
  }
}

TEST(Transformation, WalksAndTextsAgreeWithGmp) {
  std::mt19937_64 random(13);
  for (int k = 3; k < 470; k += 9) {
    Transformation transformation(k);
    std::vector<PackedSilhouette> silhouettes(20);
    Silhouette current = silhouetteOf("789");
    std::string value = "789";
    const std::size_t steps = transformation.walk(current, silhouettes);
    for (std::size_t i = 0; i < steps; ++i) {
      value = imageOf(k, silhouetteOf(value));
      ASSERT_EQ(unpacked(silhouettes[i]), silhouetteOf(value)) << k << " " << i;
    }
    EXPECT_EQ(current, silhouetteOf(value)) << k;
    for (std::size_t i = steps; i < silhouettes.size(); ++i) silhouettes[i] = random() >> (1 + random() % 63);
    silhouettes.push_back(~PackedSilhouette{0} >> 1);  // 127 of each digit
    std::string expected;
    for (const PackedSilhouette packed : silhouettes) expected += ", " + imageOf(k, unpacked(packed));
    std::string list;
    transformation.appendImages(silhouettes, list);
    EXPECT_EQ(list, expected) << k;
  }
}

TEST(Transformation, CarriesRunThroughLimbsOfNines) {
  // Images with many zeros in a row, from sixteen to forty: all carries meet there.
  const std::pair<int, std::array<std::uint32_t, 9>> rows[] = {
      {60, {49'989, 33'455, 95'018, 64'156, 106'945, 72'696, 68'998, 65'914, 55'803}},
      {60, {50'000, 47'467, 40'554, 48'605, 47'987, 48'681, 51'859, 55'233, 53'531}},
      {100, {100, 92, 112, 79, 128, 137, 103, 89, 132}},
      {400, {49'985, 74'613, 61'897, 55'490, 91'982, 44'859, 67'892, 78'655, 58'696}}};
  Decimal image;
  for (const auto& [k, counts] : rows) {
    Transformation transformation(k);
    expectExact(transformation, {counts}, image);
  }
}

TEST(Transformation, RefusesImagesOfMoreThanAMillionDigits) {
  const auto nines = [](std::uint32_t count) { return Silhouette{{0, 0, 0, 0, 0, 0, 0, 0, count}}; };
  Decimal image;
  Transformation beyond(1'100'000);  // the power of 9 is too long, that of 8 is not
  expectExact(beyond, {{7, 0, 0, 0, 0, 0, 1, 1, 0}}, image);
  EXPECT_THROW(beyond.apply(nines(1), image), std::length_error);
  Transformation greatest(std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(greatest.image({{123'456}}).text(), "123456");
  EXPECT_THROW(greatest.apply({{0, 1}}, image), std::length_error);
  Transformation last(1'047'951);
  EXPECT_THROW(last.apply(nines(5), image), std::length_error);
  expectExact(last, nines(4), image);
  EXPECT_EQ(image.digits(), Transformation::kMaxImageDigits);
}

using Transform = testing::FormTest;

TEST_F(Transform, TextsOfKAndOfP) {
  const std::string rows[][3] = {{"3", "007", "343"},
                                 {"3", "000", "0"},
                                 {"\u00A0+3\u202F", "20", "8"},
                                 {"0," + std::string(400, '0') + "1", "12", ""},
                                 {"3,5", "12", "17"},
                                 {"2.5", "12", "5"},
                                 {" 03 ", "12", "9"},
                                 {"-7", "12", ""},
                                 {"0,5", "12", ""},
                                 {"0.51", "99", "18"},
                                 {"2147483647,4", "11", "2"}};
  for (const auto& [k, p, image] : rows) {
    form_.ordrek.Text = k;
    EXPECT_EQ(form_.sommepuis(p), image) << k << " " << p;
  }
  for (const char* k :
       {"", " ", "abc", "3 3", "1e3", "--3", "3,,5", ",", "99999999999", "2147483647,5", "nan"}) {
    form_.ordrek.Text = k;
    EXPECT_THROW(form_.sommepuis("1"), std::invalid_argument) << k;
    for (const char* zero : {"0", "", "-", "-0"}) EXPECT_EQ(form_.sommepuis(zero), "0");
  }
  form_.ordrek.Text = "3";
  EXPECT_EQ(form_.sommepuis(std::string(32'766, '1')), "32766");
  EXPECT_THROW(form_.sommepuis(std::string(32'767, '1')), std::length_error);
  for (const char* p : {"-5", "1 2", "é", "--0"})
    EXPECT_THROW(form_.sommepuis(p), std::invalid_argument) << p;
}

TEST_F(Transform, ImageReplacesP) {
  for (const std::string image : {"1584", "702", "351", "153"}) {
    press("Command10", {});
    EXPECT_EQ(form_.entier.Text, image);
  }
  EXPECT_EQ(press("Command10")[0], "Transformations velmoires, k = 3|point fixe = 153");
  type("x", "");
  press("Command10", {});
  EXPECT_EQ(press("Command10")[0], "Transformations velmoires, k = x|point fixe = 0");
  type("34340", "9");
  press("Command10", {});
  const std::string tooLong = form_.entier.Text;
  const std::string rows[][3] = {{"3", tooLong, "32769"},
                                 {"2147483647", "9", "2049220185"},
                                 {"1100000", "789", "1049667"},
                                 {"3", "12a", "« a »"}};
  for (const auto& [k, p, told] : rows) {
    type(k, p);
    EXPECT_TRUE(refuses("Command10", told)) << told;
    EXPECT_EQ(form_.entier.Text, p);
  }
}

TEST_F(Transform, ThousandIterates) {
  const std::string rows[][3] = {{"3", "789", " 1584 702 351"}, {"0", "789", " "}, {"abc", "-0", " 0"}};
  for (const auto& [k, p, start] : rows) {
    type(k, p);
    press("Command6", {});
    std::string expected = start;
    while (std::count(expected.begin(), expected.end(), ' ') < 1'000) expected += k == "3" ? " 153" : " 0";
    EXPECT_EQ(form_.RichTextBox1.Text, expected);
  }
  type("3", "");
  EXPECT_EQ(press("Command6")[0], standard() + "Choisissez un nombre à étudier! Je choisis 789 par exemple!");
  EXPECT_EQ(form_.RichTextBox1.Text.substr(0, 9) + form_.entier.Text, " 1584 702");
  type("40000", "9");  // the first iterate is longer than what can be transformed
  EXPECT_TRUE(refuses("Command6", "32766"));
  EXPECT_EQ(form_.RichTextBox1.Text, "Je calcule ...");
}

TEST_F(Transform, Itineraries) {
  const std::string fixed = " est un point fixe (ce qui rend inutile la poursuite de l'itération)";
  const std::string rows[][4] = {{"3", "17", "737", "(344, 155, 251, 134, 92, 737, 713, 371)\r\n371" + fixed},
                                 {"abc", "0", "", "0" + fixed},
                                 {"", "-0", "0", "(0)\r\n0" + fixed},
                                 {"3", "0153", "0153", "(153)\r\n153" + fixed},
                                 {"0", "5", "5", "(, 0)\r\n0" + fixed},
                                 {"2", "4", "145", "(16, 37, 58, 89, 145, 42, 20, 4)"}};
  for (const auto& [k, elem, greatest, list] : rows) {
    type(k, elem);
    const std::string value = greatest.empty() ? "" : "VALEUR MAXIMALE ATTEINTE = " + greatest + "\r\n\r\n";
    const std::string rest = ") du point  " + elem + ": \r\n\r\n" + list;
    EXPECT_EQ(press("Command2")[0], standard() + value + "ITINERAIRE (ordre 100" + rest);
    EXPECT_EQ(press("Command7")[0], standard() + value + "ITINERAIRE (ordre 50" + rest);
  }
  const std::string limits[][4] = {
      {"2", "2", "37, 58...)", " 4, 16...)"},
      {"13", "3106173077331", " 3106173077331...)", "...)"},
      {"18", "302129995006651436", " 302129995006651436)", " 302129995006651436...)"}};
  for (const auto& [k, elem, of100, of50] : limits) {
    type(k, elem);
    const std::string box = press("Command2")[0], shorter = press("Command7")[0];
    EXPECT_EQ(std::count(box.begin(), box.end(), ','), k == "18" ? 49 : 99) << k;
    EXPECT_EQ(std::count(shorter.begin(), shorter.end(), ','), 49) << k;
    EXPECT_TRUE(box.ends_with(of100) && shorter.ends_with(of50)) << k;
  }
  type("3", std::string(32'767, '1'));
  EXPECT_TRUE(refuses("Command2", "32767"));
}

}  // namespace
}  // namespace zelvion
