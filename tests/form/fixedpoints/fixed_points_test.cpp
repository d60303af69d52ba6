
#include <functional>

#include "engine/fixedpoints/candidates.h"
#include "form/form_test.h"

namespace zelvion {
namespace {

using testing::candidatesOf;
using testing::fixedImage;

/// The images of the candidates of `digits` digits that are hits, each followed by ", ".
std::string hitsOf(unsigned k, int digits) {
  const testing::PlainPower plain(k);
  std::string hits;
  for (const std::string& candidate : candidatesOf(digits)) {
    const std::string image = fixedImage(plain, candidate);
    if (!image.empty()) hits += image + ", ";
  }
  return hits;
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
  for (const char* k : {"0", "-3", "0.5", "14", "37", "57", "59", "300", "32766.4"}) expectSearch(k, "");
}

TEST_F(FixedPoints, KWithDecimalsIsRoundedButRunsTheWholeCascade) {
  std::string list;
  for (int digits = 2; digits <= 12; ++digits) list += hitsOf(4, digits);
  for (const char* k : {"3,5", "4.4"}) expectSearch(k, list);
}

TEST_F(FixedPoints, AnswersWithoutASearch) {
  form_.ordrek.Text = "1";
  std::vector<std::string> boxes = press("Command5", {Answer::Yes, Answer::Ok});
  EXPECT_EQ(
      boxes[0],
      R"(On effectue la recherche pour k = 1 ou sinon on change la valeur de k?|Ne dépassez pas k=11. Jusqu'à k=6 le temps de calcul est raisonnable; à partir de 7 il faut au moins 1 heure et jusqu'à une douzaine pour k=12. Jusqu'à k=12 toutes les possibilités sont considéres, au-delà on ne considère que les nombres des boucles de 1 à 12 chiffres, complétés par (k-12) 9)");
  EXPECT_EQ(
      boxes[1],
      R"(Points fixes de la transformations velmoire triviale k=1|Tous les nombres de 1 à 9 sont points fixes et sont des nombres narcissiques parfaits)");
  form_.ordrek.Text = "abc";
  press("Command5", {Answer::No});
  EXPECT_EQ(form_.RichTextBox1.Text, "Choisissez un nouveau k!!");
  EXPECT_EQ(form_.ListePfixe, "Point(s) fixe(s) pour k = 1\r\n1,2,3,4,5,6,7,8,9");
  for (const std::string k :
       {"2", "12", "13", "15", "18", "22", "26", "28", "30", "036", "", "abc", "40000"}) {
    const std::string header = "Point(s) fixe(s) pour k = " + k + "\r\n", old = form_.RichTextBox1.Text;
    const bool refused = k.empty() || k[0] > '3';
    const std::string oldList = form_.ListePfixe;
    form_.ordrek.Text = k;
    const std::string told = press("Command5", {Answer::Yes, Answer::Ok})[1];
    EXPECT_TRUE(told.starts_with(refused ? standard()
                                         : "Transformation velmoire pour k = " + k + "|Pas de point fixe"));
    EXPECT_EQ(form_.RichTextBox1.Text, refused ? old : header);
    EXPECT_EQ(form_.ListePfixe, refused ? oldList : header);
  }
  EXPECT_TRUE(desktop_.files.empty());
}

TEST_F(FixedPoints, UnwritableFileIsToldOnceAPressAndTheListIsComplete) {
  desktop_.onMessage = [this] { desktop_.clock += 4; };
  for (int* error : {&desktop_.writeError, &desktop_.syncError}) {
    *error = ENOSPC;
    const std::vector<std::string> boxes =
        press("Command5", {Answer::Yes, Answer::Ok, Answer::Ok, Answer::Ok});
    EXPECT_NE(boxes[1].find(desktop_.pathOf("pfixe.txt")), std::string::npos);
    EXPECT_TRUE(boxes[2].ends_with(" 0 Seconde(s)")) << boxes[2];
    EXPECT_EQ(form_.RichTextBox1.Text, "Point(s) fixe(s) pour k = 3\r\n370, 407, 153, 371, ");
    for (const auto operation : {&Velmoire::boucle1, &Velmoire::boucle3}) {  // several records each
      desktop_.expect(Answer::Ok);
      (form_.*operation)();
    }
    shown(2);
    *error = 0;
  }
}

TEST_F(FixedPoints, NinesInFrontCountInTheGreatestLength) {
  using Tester = void (Velmoire::*)(const std::string&);
  const std::tuple<const char*, Tester, std::size_t> rows[] = {
      {"12,4", &Velmoire::PfixeK, 0},  {"14,5", &Velmoire::PfixeK, 2}, {"57", &Velmoire::PfixeK, 41},
      {"57.4", &Velmoire::PfixeK, 45}, {"58", &Velmoire::PfixeK, 46},  {"x", &Velmoire::Pfixe57, 41},
      {"x", &Velmoire::Pfixe58, 46},   {"x", &Velmoire::Pfixe59, 51},  {"x", &Velmoire::Pfixe60, 56}};
  for (const auto& [k, test, nines] : rows) {
    form_.ordrek.Text = k;
    EXPECT_NO_THROW((form_.*test)(std::string(32'766 - nines, '1'))) << k;
    EXPECT_THROW((form_.*test)(std::string(32'767 - nines, '1')), Refusal) << k;
  }
}

TEST_F(FixedPoints, LimitsOfKAreThoseOfTheCandidates) {
  const auto refusal = [&](const std::string& k, const std::function<void()>& run) -> std::string {
    form_.ordrek.Text = k;
    try {
      run();
    } catch (const Refusal& refused) {
      return std::string(refused.what()).substr(std::string(refused.what()).rfind(' ') + 1);
    }
    return "";
  };
  EXPECT_EQ(refusal("32776", [&] { form_.boucle2(); }), "");
  EXPECT_EQ(refusal("32777", [&] { form_.boucle2(); }), "32776.");
  EXPECT_EQ(refusal("32767,5", [&] { form_.boucle11(); }), "32767.");
  EXPECT_EQ(refusal("32780", [&] { form_.PfixeK("1"); }), "32778.");
  EXPECT_EQ(refusal("-1e9", [&] { form_.PfixeK("1"); }), "3.");
  EXPECT_EQ(refusal("-3000000000", [&] { form_.PfixeK("1"); }), "2147483647.");
  form_.ordrek.Text = "99999999999";
  EXPECT_TRUE(press("Command5", {Answer::Yes, Answer::Ok})[1].ends_with(" 32766."));
}

TEST_F(FixedPoints, EnumeratorsTestEachMultisetOnce) {
  using Enumerator = void (Velmoire::*)();
  const Enumerator rows[] = {&Velmoire::boucle2,  &Velmoire::boucle3,  &Velmoire::boucle4, &Velmoire::boucle5,
                             &Velmoire::boucle6,  &Velmoire::boucle7,  &Velmoire::boucle8, &Velmoire::boucle9,
                             &Velmoire::boucle10, &Velmoire::boucle11, &Velmoire::boucle12};
  for (int digits = 2; digits <= 12; ++digits) {
    form_.ListePfixe = "";
    (form_.*rows[digits - 2])();
    EXPECT_EQ(form_.ListePfixe, hitsOf(3, digits)) << digits;
  }
  form_.ListePfixe = "";
  form_.boucle1();
  EXPECT_EQ(form_.ListePfixe, "0, 1, ");
}

TEST_F(FixedPoints, HighOrdersHaveNoHit) {
  using Enumerator = void (Velmoire::*)();
  std::string seen;
  desktop_.expect(Answer::Ok);
  for (const Enumerator run :
       {&Velmoire::boucle13, &Velmoire::boucle14, &Velmoire::boucle15, &Velmoire::boucle16,
        &Velmoire::boucle13K58, &Velmoire::boucle9K59, &Velmoire::boucle5k60}) {
    form_.ordrek.Text = form_.RichTextBox1.Text = form_.ListePfixe = "old";
    (form_.*run)();
    seen += form_.ordrek.Text + form_.RichTextBox1.Text + form_.ListePfixe + " ";
  }
  EXPECT_EQ(seen, "57rienold 57rienold 57rienold 57rienold 58rienold 59rienold 60rienold ");
  EXPECT_EQ(shown(), std::vector<std::string>{"zelvion|fin boucle13 pour k=58 avec j= 203490"});
  EXPECT_TRUE(desktop_.files.empty());
}

}  // namespace
}  // namespace zelvion
