#include <algorithm>
#include <map>
#include <stdexcept>

#include "fixedpoints/multiset_walk.h"
#include "form_test.h"

namespace zelvion {
namespace {

using testing::PlainPower;

/// The multisets of `digits` digits from 1 to 9, each from its greatest digit down, ascending.
const std::vector<std::string>& candidatesOf(int digits) {
  static std::map<int, std::vector<std::string>> known = {{0, {""}}};
  std::vector<std::string>& candidates = known[digits];
  if (!candidates.empty()) return candidates;
  for (const std::string& shorter : candidatesOf(digits - 1)) {
    for (char d = '1'; d <= (shorter.empty() ? '9' : shorter.back()); ++d) candidates.push_back(shorter + d);
  }
  return candidates;
}

/// Of the candidates of `digits` digits with `nines` in front, the index and image of each that is a hit.
std::map<std::size_t, std::string> hitsOf(unsigned k, int nines, int digits) {
  const PlainPower plain(k);
  std::map<std::size_t, std::string> hits;
  for (std::size_t i = 0; i < candidatesOf(digits).size(); ++i) {
    const std::string image =
        plain.image(std::string(static_cast<std::size_t>(nines), '9') + candidatesOf(digits)[i]);
    if (plain.image(image) == image) hits[i] = image;
  }
  return hits;
}

TEST(MultisetWalk, CountsAllAndPassesNoHitBy) {
  const std::tuple<int, int, int> rows[] = {{1, 0, 6},  {2, 0, 6},     {3, 0, 9},  {4, 0, 9},  {5, 0, 8},
                                            {7, 0, 9},  {10, 0, 10},   {14, 2, 6}, {17, 2, 7}, {24, 1, 6},
                                            {39, 8, 5}, {200, 100, 5}, {3, 3, 4}};
  for (const auto& [k, nines, greatest] : rows) {
    MultisetWalk walk(k, nines);
    for (int digits = 1; digits <= greatest; ++digits) {
      const std::vector<std::string>& candidates = candidatesOf(digits);
      std::vector<std::string> survivors;
      const std::int32_t count = walk.run(digits, [&](const std::string& c) { survivors.push_back(c); });
      EXPECT_EQ(count, static_cast<std::int32_t>(candidates.size()));
      EXPECT_EQ(count, MultisetWalk::count(digits));
      // In their order, each once, and none that is no candidate.
      EXPECT_TRUE(std::includes(candidates.begin(), candidates.end(), survivors.begin(), survivors.end()));
      for (const auto& [index, image] : hitsOf(static_cast<unsigned>(k), nines, digits)) {
        EXPECT_TRUE(std::binary_search(survivors.begin(), survivors.end(), candidates[index]))
            << k << " " << image;
      }
    }
  }
}

class FixedPoints : public testing::FormTest {
 protected:
  void expectSearch(const std::string& k, const std::string& list) {
    type(k, "789");
    desktop_.files.clear();
    desktop_.clock = 0;
    desktop_.secondsPerLook = 61;
    form_.RichTextBox1.Text = "old";
    desktop_.onMessage = [this] { EXPECT_EQ(form_.RichTextBox1.Text, "old"); };
    const std::vector<std::string> boxes = press("Command5", {Answer::Yes, Answer::Ok, Answer::Ok});
    const std::string text = "Point(s) fixe(s) pour k = " + k + "\r\n" + list;
    EXPECT_EQ(boxes[1], "Début du calcul: 22/11/2026 20:30:00|Temps de calcul:   1 Minute(s) 1 Seconde(s)");
    EXPECT_EQ(boxes[2], "Transformation velmoire pour k = " + k + "|" + text);
    EXPECT_EQ(form_.RichTextBox1.Text, text);
    EXPECT_EQ(form_.ListePfixe, text);
    expectRecords(k, list);
  }
  /// A record for every entry of the list, and no file without one.
  void expectRecords(const std::string& k, const std::string& list) {
    std::string records;
    for (std::size_t i = 0; i < list.size(); i = list.find(' ', i) + 1) {
      records += "Ordre " + k + ", points fixes:\r\n" + list.substr(i, list.find(' ', i) + 1 - i) + "\r\n";
    }
    EXPECT_EQ(desktop_.files.size(), list.empty() ? 0U : 1U) << k;
    EXPECT_EQ(list.empty() ? "" : desktop_.files["pfixe.txt"], records) << k;
  }
};

TEST_F(FixedPoints, SearchesListThemInTheOrderFound) {
  const std::string rows[][2] = {{"3", "370, 407, 153, 371, "},
                                 {"4", "8208, 1634, 9474, "},
                                 {" 5", "4150, 4151, 93084, 54748, 92727, 194979, "},
                                 {"6,0", "548834, "},
                                 {"7", "9800817, 4210818, 1741725, 9926315, 14459929, "},
                                 {"8", "24678050, 24678051, 88593477, "},
                                 {"9", "146511208, 472335975, 534494836, 912985153, "},
                                 {"10", "4679307774, "},
                                 {"11",
                                  "32164049650, 40028394225, 42678290603, 49388550606, 32164049651, "
                                  "44708635679, 94204591914, 82693916578, "}};
  for (const auto& [k, list] : rows) expectSearch(k, list);
  for (const char* k : {"0", "-3", "0.5", "14", "37", "57", "59", "300"}) expectSearch(k, "");
}

TEST_F(FixedPoints, KWithDecimalsIsRoundedButRunsTheWholeCascade) {
  for (const auto& [k, power] :
       {std::pair{"1.4", 1U}, {"2,4", 2U}, {"2.6", 3U}, {"3,5", 4U}, {"12,2", 12U}}) {
    std::string list;
    for (int digits = 2; digits <= 12; ++digits) {
      for (const auto& [index, image] : hitsOf(power, 0, digits)) list += image + ", ";
    }
    expectSearch(k, list);
  }
}

TEST_F(FixedPoints, AnswersWithoutASearch) {
  type("1", "789");
  std::vector<std::string> boxes = press("Command5", {Answer::Yes, Answer::Ok});
  EXPECT_EQ(
      boxes[0],
      "On effectue la recherche pour k = 1 ou sinon on change la valeur de k?|Ne dépassez pas k=11. Jusqu'à "
      "k=6 le temps de calcul est raisonnable; à partir de 7 il faut au moins 1 heure et jusqu'à une "
      "douzaine pour "
      "k=12. Jusqu'à k=12 toutes les possibilités sont considéres, au-delà on ne considère que les nombres "
      "des "
      "boucles de 1 à 12 chiffres, complétés par (k-12) 9");
  EXPECT_EQ(boxes[1],
            "Points fixes de la transformations velmoire triviale k=1|Tous les nombres de 1 à 9 sont points "
            "fixes et sont des nombres narcissiques parfaits");
  const std::string ofOne = "Point(s) fixe(s) pour k = 1\r\n1,2,3,4,5,6,7,8,9";
  EXPECT_EQ(form_.RichTextBox1.Text, ofOne);

  form_.ordrek.Text = "abc";
  press("Command5", {Answer::No});
  EXPECT_EQ(form_.RichTextBox1.Text, "Choisissez un nouveau k!!");
  EXPECT_EQ(form_.ListePfixe, ofOne);

  for (const std::string k : {"2", "12", "13", "15", "18", "22", "26", "28", "30", "036", "2,0"}) {
    form_.ordrek.Text = k;
    boxes = press("Command5", {Answer::Yes, Answer::Ok});
    EXPECT_EQ(boxes[1], "Transformation velmoire pour k = " + k + "|Pas de point fixe");
    EXPECT_EQ(form_.RichTextBox1.Text, "Point(s) fixe(s) pour k = " + k + "\r\n");
    EXPECT_EQ(form_.ListePfixe, form_.RichTextBox1.Text);
  }
  for (const std::string k : {"", "abc", "99999999999", "40000", "2147483647"}) {
    form_.ordrek.Text = k;
    form_.RichTextBox1.Text = "old";
    EXPECT_TRUE(press("Command5", {Answer::Yes, Answer::Ok})[1].starts_with(standard()));
    EXPECT_EQ(form_.RichTextBox1.Text, "old");
    EXPECT_EQ(form_.ListePfixe, "Point(s) fixe(s) pour k = " + k + "\r\n");
  }
  EXPECT_TRUE(desktop_.files.empty());
}

TEST_F(FixedPoints, UnwritableFileIsToldOnceAPressAndTheListIsComplete) {
  desktop_.writeError = ENOSPC;
  type("5", "789");
  for (int i = 0; i < 2; ++i) {
    const std::vector<std::string> boxes =
        press("Command5", {Answer::Yes, Answer::Ok, Answer::Ok, Answer::Ok});
    EXPECT_NE(boxes[1].find(desktop_.pathOf("pfixe.txt")), std::string::npos);
    EXPECT_EQ(form_.RichTextBox1.Text,
              "Point(s) fixe(s) pour k = 5\r\n4150, 4151, 93084, 54748, 92727, 194979, ");
  }
}

TEST_F(FixedPoints, OneCandidate) {
  const std::string rows[][3] = {
      {"3", "73", "370, "},        {"3 ", "731", "371, "},      {"3", "11", ""},  {"4", "882", "8208, "},
      {"5", "999741", "194979, "}, {"5", "479919", "194979, "}, {"11", "99", ""}, {"0", "11", ""},
      {"3", "333332211", "153, "}};
  for (const auto& [k, candidate, point] : rows) {
    desktop_.files.clear();
    form_.ListePfixe = "old, ";
    form_.ordrek.Text = k;
    form_.PfixeK(candidate);
    EXPECT_EQ(form_.ListePfixe, "old, " + point) << k << " " << candidate;
    expectRecords(k, point);
  }
  EXPECT_EQ(form_.RichTextBox1.Text, "");
  EXPECT_THROW(form_.PfixeK("7x"), std::invalid_argument);
  form_.ordrek.Text = "abc";
  EXPECT_THROW(form_.PfixeK("73"), std::invalid_argument);
}

TEST_F(FixedPoints, NinesInFrontCountInTheGreatestLength) {
  using Tester = void (Velmoire::*)(const std::string&);
  const std::tuple<Tester, const char*, int> rows[] = {
      {&Velmoire::PfixeK, "12", 0},   {&Velmoire::PfixeK, "13", 1},   {&Velmoire::PfixeK, "12,4", 0},
      {&Velmoire::PfixeK, "14,5", 2}, {&Velmoire::PfixeK, "57", 41},  {&Velmoire::PfixeK, "57.4", 45},
      {&Velmoire::PfixeK, "58", 46},  {&Velmoire::Pfixe57, "57", 41}, {&Velmoire::Pfixe58, "58", 46},
      {&Velmoire::Pfixe59, "59", 51}, {&Velmoire::Pfixe60, "60", 56}};
  for (const auto& [test, k, nines] : rows) {
    const bool high = test != &Velmoire::PfixeK;
    form_.ordrek.Text = high ? "3" : k;
    form_.RichTextBox1.Text = "old";
    const std::string longest(static_cast<std::size_t>(32'766 - nines), '1');
    EXPECT_NO_THROW((form_.*test)(longest)) << k;
    EXPECT_EQ(form_.ordrek.Text + form_.RichTextBox1.Text, k + std::string(high ? "rien" : "old"));
    EXPECT_THROW((form_.*test)(longest + "1"), std::length_error) << k;
  }
  EXPECT_TRUE(desktop_.files.empty());
}

TEST_F(FixedPoints, EnumeratorsTestEachMultisetOnce) {
  using Enumerator = void (Velmoire::*)();
  const Enumerator rows[] = {&Velmoire::boucle2,  &Velmoire::boucle3,  &Velmoire::boucle4, &Velmoire::boucle5,
                             &Velmoire::boucle6,  &Velmoire::boucle7,  &Velmoire::boucle8, &Velmoire::boucle9,
                             &Velmoire::boucle10, &Velmoire::boucle11, &Velmoire::boucle12};
  for (int digits = 2; digits <= 12; ++digits) {
    std::string list;  // a small power has many hits
    for (const auto& [index, image] : hitsOf(3, 0, digits)) list += image + ", ";
    form_.ListePfixe = "";
    (form_.*rows[digits - 2])();
    EXPECT_EQ(form_.ListePfixe, list) << digits;
  }
  const std::string ofOneDigit[][2] = {
      {"3", "0, 1, "}, {"1", "0, 1, 2, 3, 4, 5, 6, 7, 8, 9, "}, {"0", "0, "}, {"20", ""}};
  for (const auto& [k, list] : ofOneDigit) {
    desktop_.files.clear();
    form_.ordrek.Text = k;
    form_.ListePfixe = "";
    form_.boucle1();
    EXPECT_EQ(form_.ListePfixe, list) << k;
    expectRecords(k, list);
  }
}

TEST_F(FixedPoints, HighOrdersHaveNoHit) {
  const std::tuple<void (Velmoire::*)(), std::string, std::string> rows[] = {
      {&Velmoire::boucle13, "57", ""},
      {&Velmoire::boucle14, "57", ""},
      {&Velmoire::boucle15, "57", ""},
      {&Velmoire::boucle16, "57", ""},
      {&Velmoire::boucle9K59, "59", ""},
      {&Velmoire::boucle5k60, "60", ""},
      {&Velmoire::boucle13K58, "58", "zelvion|fin boucle13 pour k=58 avec j= 203490"}};
  form_.ListePfixe = "old";
  for (const auto& [run, k, box] : rows) {
    form_.ordrek.Text = "x";
    form_.RichTextBox1.Text = "old";
    if (!box.empty()) desktop_.expect(Answer::Ok);
    (form_.*run)();
    EXPECT_EQ(shown()[0], box);
    EXPECT_EQ(form_.ordrek.Text + form_.RichTextBox1.Text, k + "rien");
  }
  EXPECT_EQ(form_.ListePfixe, "old");
  EXPECT_TRUE(desktop_.files.empty());
}

}  // namespace
}  // namespace zelvion
