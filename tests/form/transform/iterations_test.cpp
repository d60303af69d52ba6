#include <algorithm>
#include <limits>

#include "form/form_test.h"

namespace zelvion {
namespace {

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
    EXPECT_THROW(form_.sommepuis("1"), Refusal) << k;
    for (const char* zero : {"0", "", "-", "-0"}) EXPECT_EQ(form_.sommepuis(zero), "0");
  }
  form_.ordrek.Text = "3";
  EXPECT_EQ(form_.sommepuis(std::string(32'766, '1')), "32766");
  EXPECT_THROW(form_.sommepuis(std::string(32'767, '1')), Refusal);
  for (const char* p : {"-5", "1 2", "é", "--0"}) EXPECT_THROW(form_.sommepuis(p), Refusal) << p;
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
  const std::string rows[][3] = {{"3", tooLong, "32\u202f769 caractères"},
                                 {"2147483647", "9", "2\u202f049\u202f220\u202f185 chiffres"},
                                 {"99999999999", "789", "1\u202f047\u202f951."},
                                 {"99999999999", "10", "2\u202f147\u202f483\u202f647."},
                                 {"1047952", "789", "jusqu’à 1\u202f047\u202f951."},
                                 {"3", "12a", "« a »"}};
  for (const auto& [k, p, told] : rows) {
    type(k, p);
    EXPECT_TRUE(refuses("Command10", told)) << told;
    EXPECT_EQ(form_.entier.Text, p);
    EXPECT_EQ(desktop_.selected, p == "12a" ? "entier 2" : "");
  }
  type("35000", "12");
  form_.elem.Text = "12";
  EXPECT_TRUE(refuses("Command6", "L’itéré numéro 2, «\u00a0"));
  EXPECT_TRUE(refuses("Command3", "a 33\u202f402 chiffres"));
  EXPECT_TRUE(refuses("Command2", "tant que k ne dépasse pas 34\u202f332."));
  for (const std::string k : {"34332", "34333"}) {
    form_.ordrek.Text = k;
    EXPECT_EQ(form_.sommepuis(std::string(32'766, '9')).size() <= 32'766, k == "34332");
  }
  form_.ordrek.Text = "1047951";
  EXPECT_EQ(form_.sommepuis("789").size(), 1'000'000U);
  type("3", "12a");
  EXPECT_TRUE(refuses("Command7", "12a"));
  EXPECT_EQ(desktop_.selected, "elem 2");
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
  form_.RichTextBox1.Text = "avant";
  EXPECT_TRUE(refuses("Command6", "32\u202f766"));
  EXPECT_EQ(form_.RichTextBox1.Text, "avant");
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
  EXPECT_TRUE(refuses("Command2", "32\u202f767"));
}

}  // namespace
}  // namespace zelvion
