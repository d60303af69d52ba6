#include "engine/transform/transformation.h"
#include "engine/text/refusal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "engine/plain_power.h"
#include "engine/transform/orbit.h"
#include "engine/transform/short_images.h"

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
    const std::size_t steps = transformation.iterate(current, silhouettes);
    for (std::size_t i = 0; i < steps; ++i) {
      value = imageOf(k, silhouetteOf(value));
      ASSERT_EQ(unpacked(silhouettes[i]), silhouetteOf(value)) << k << " " << i;
    }
    EXPECT_EQ(current, silhouetteOf(value)) << k;
    for (std::size_t i = steps; i < silhouettes.size(); ++i) silhouettes[i] = random() >> (1 + random() % 63);
    for (int i = 0; i < 30; ++i) {  // with 60 to 127 of each digit, too many for the vectors
      silhouettes.push_back(random() >> 1 | 0x4081020408102040);
    }
    std::string expected;
    for (const PackedSilhouette packed : silhouettes) expected += ", " + imageOf(k, unpacked(packed));
    std::string list;
    transformation.appendImages(silhouettes, list);
    EXPECT_EQ(list, expected) << k;
  }
}

TEST(ShortImages, AgreeWithGmpUpToTheLongestNumbers) {
  std::mt19937_64 random(18);
  for (const unsigned k : {1U, 4U, 19U, 20U}) {
    const ShortImages images(static_cast<std::int32_t>(k));
    const testing::PlainPower plain(k);
    for (std::size_t size = 1; size <= std::min<std::size_t>(images.maxDigits(), 19); ++size) {
      std::string digits(size, '9');
      for (int round = 0; round < 30; ++round) {
        ASSERT_EQ(std::to_string(images.of(digits)), plain.image(digits)) << digits;
        ASSERT_EQ(images.of(std::stoull(digits)), images.of(digits)) << digits;
        for (char& digit : digits) digit = static_cast<char>('0' + random() % 10);
      }
    }
  }
  EXPECT_EQ(ShortImages(19).maxDigits(), 13U);
  EXPECT_EQ(ShortImages(21).maxDigits(), 0U);
  EXPECT_EQ(ShortImages(1'000'000).maxDigits(), 0U);
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
  EXPECT_THROW(beyond.apply(nines(1), image), Refusal);
  Transformation greatest(std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(greatest.image({{123'456}}).text(), "123456");
  EXPECT_THROW(greatest.apply({{0, 1}}, image), Refusal);
  Transformation last(1'047'951);
  EXPECT_THROW(last.apply(nines(5), image), Refusal);
  expectExact(last, nines(4), image);
  EXPECT_EQ(image.digits(), Transformation::kMaxImageDigits);
}

}  // namespace
}  // namespace zelvion
