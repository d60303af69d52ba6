#include "engine/text/number.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "engine/text/refusal.h"

namespace zelvion::text {
namespace {

/// The sentence with which `read` refuses, empty if it does not; a Refusal is told as French is set.
std::string refusal(const std::function<void()>& read) {
  try {
    read();
  } catch (const Refusal& refused) {
    const std::string sentence = refused.what();
    for (const char* wrong : {"'", " :", " ;", "« ", " »"}) {
      EXPECT_EQ(sentence.find(wrong), std::string::npos) << sentence;
    }
    return sentence;
  }
  return "";
}

TEST(Numbers, AsDoubles) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::pair<std::string, double> rows[] = {{"3", 3},
                                                 {" +3,5 ", 3.5},
                                                 {"-.5", -0.5},
                                                 {"7.", 7},
                                                 {"007", 7},
                                                 {"\u00A0\u202F1\r\n", 1},
                                                 {std::string(400, '9'), kInfinity},
                                                 {"-" + std::string(400, '9'), -kInfinity},
                                                 {"0." + std::string(400, '0') + "1", 0}};
  for (const auto& [text, value] : rows) EXPECT_EQ(toDouble(text, "k"), value) << text;
  for (const char* text : {"", " ", "+", ".", "1e3", "0x3", "1 000", "--1", "1.2.3", "inf", "é"}) {
    EXPECT_TRUE(refusal([&] { toDouble(text, "Le k"); }).starts_with("Le k ")) << text;
  }
}

TEST(Numbers, RoundToTheEvenOneWithinTheirRange) {
  const std::pair<const char*, std::int32_t> rows[] = {
      {"2.5", 2},
      {"3,5", 4},
      {"-0,5", 0},
      {"2147483647.5", 0},
      {"2147483647.4", 2'147'483'647},
      {"-2147483648.5", std::numeric_limits<std::int32_t>::min()}};
  for (const auto& [text, value] : rows) {
    std::int32_t read = 0;
    const std::string told = refusal([&, text = text] { read = toInt32(text, "k"); });
    EXPECT_EQ(read, value) << text;
    EXPECT_EQ(told.empty(), value != 0 || text[0] == '-') << told;
  }
  EXPECT_EQ(toInt16(32'767.4), 32'767);
  EXPECT_EQ(toInt16(-32'768.5), -32'768);
  EXPECT_FALSE(toInt16(32'767.5) || toInt16(-32'769) || toInt16(std::numeric_limits<double>::infinity()));
}

TEST(Numbers, RefusalsTellWhatIsWrongAndWhatIsAccepted) {
  try {
    requireDigits("12é4");
    FAIL();
  } catch (const Refusal& refused) {
    EXPECT_EQ(refused.text(), "12é4");
    EXPECT_EQ(refused.place(), 2U);
    EXPECT_NE(std::string(refused.what()).find("«\u00A0é\u00A0» en position 3"), std::string::npos);
  }
  const std::string accents = "ééééé";
  requireLength(accents, 5);
  EXPECT_NE(refusal([&] { requireLength(accents, 4); }).find("il a 5 caractères, et 4 au plus"),
            std::string::npos);
  EXPECT_NE(refusal([] { refuseRange("40", "k", -3, 32'767); }).find("de -3 à 32767."), std::string::npos);
  EXPECT_EQ(valueOf("-2147483648"), std::numeric_limits<std::int32_t>::min());
  for (const char* text : {"", "-", "+1", " 1", "1.0", "2147483648"}) {
    EXPECT_NE(refusal([&] { valueOf(text); }), "") << text;
  }
  EXPECT_EQ(grouped(7) + " " + grouped(1'048'576), "7 1\u202F048\u202F576");
}

}  // namespace
}  // namespace zelvion::text
