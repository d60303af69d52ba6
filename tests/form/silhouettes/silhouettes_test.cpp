#include <algorithm>

#include "form/form_test.h"

namespace zelvion {
namespace {

/// So many times "é", which is one character of two bytes.
std::string accents(std::size_t times) {
  std::string all;
  while (times-- > 0) all += "é";
  return all;
}

using Silhouettes = testing::FormTest;

TEST_F(Silhouettes, CountsOfDigits) {
  const std::string rows[][3] = {{"1000", "0, 0, 0, 0, 0, 0, 0, 0, 1, 3", "1"},
                                 {"-3é0 2\t19", "1, 0, 0, 0, 0, 0, 1, 1, 1, 1", "9321"}};
  for (const auto& [ent, counts, sorted] : rows) {
    EXPECT_EQ(Velmoire::Nbchif(ent), "(" + counts + ")") << ent;
    EXPECT_EQ(Velmoire::Sil(ent), "(" + counts.substr(0, counts.rfind(',')) + ")") << ent;
    EXPECT_EQ(Velmoire::Classenbre(ent), sorted) << ent;
  }
  for (const char* other : {"", "12", "\xC3", "3"}) EXPECT_EQ(Velmoire::NbchifK("12é", other), 0);
  EXPECT_EQ(Velmoire::NbchifK(accents(32'766), "é"), 32'766);
  EXPECT_THROW(Velmoire::Classenbre(accents(32'767)), Refusal);
}

TEST_F(Silhouettes, EqualOnes) {
  EXPECT_TRUE(Velmoire::idem("10235", "-53 21") && Velmoire::idem("", "0"));
  EXPECT_FALSE(Velmoire::idem("12", "122") || Velmoire::idem("5", "6") || Velmoire::idem("", "9"));
  EXPECT_THROW(Velmoire::idem("", std::string(32'767, '0')), Refusal);
}

TEST_F(Silhouettes, FortyCharacters) {
  for (const std::size_t length : {0U, 1U, 32U, 33U, 34U, 32'767U}) {
    const std::size_t kept = std::min<std::size_t>(length, 33);
    EXPECT_EQ(Velmoire::Complete9(accents(length)), accents(kept) + "9999999" + std::string(33 - kept, '3'));
  }
  try {
    Velmoire::Complete9(accents(32'768));
    FAIL();
  } catch (const Refusal& refused) {
    EXPECT_NE(std::string(refused.what()).find("il a 32\u202f768 caractères, et 32\u202f767 au plus"),
              std::string::npos);
  }
  const std::tuple<std::size_t, std::size_t, bool> rows[] = {
      {7, 33, true}, {6, 34, false}, {40, 0, true}, {39, 0, false}, {41, 0, false}};
  for (const auto& [nines, others, is] : rows) {
    form_.entier.Text = accents(others) + std::string(nines, '9');
    EXPECT_EQ(Velmoire::Test40et7x9(form_.entier.Text), is);
    const std::vector<std::string> boxes = press("Command8", std::vector<Answer>(is ? 2 : 1, Answer::Ok));
    EXPECT_NE(boxes[0].find(" choisi = " + std::to_string(nines + others) + "\r\n"), std::string::npos);
    EXPECT_EQ(boxes.back() == "zelvion|entrée avec 40 chiffres dont au moins 7 fois 9", is);
  }
}

TEST_F(Silhouettes, BoxesOfP) {
  type(" abc ", "789");
  EXPECT_EQ(press("Command8")[0],
            standard() +
                "Nombre de chiffres du p choisi = 3\r\n"
                "Nombre de 9,8,7,6,5,4,3,2,1,0 dans p = (1, 1, 1, 0, 0, 0, 0, 0, 0, 0)");
  const std::string text =
      R"(Transformations velmoires sur les entiers, k=  abc |La silhouette d'un nombre entier est la suite ordonnée du nombre de ses chiffres 9,8,..jusqu'à 1, les zéros éventuels n'étant pas pris en compte.)";
  EXPECT_EQ(press("Command15")[0], text + "\r\nSil(p) = (1, 1, 1, 0, 0, 0, 0, 0, 0)");
  form_.entier.Text = std::string(32'767, '7');
  EXPECT_TRUE(refuses("Command8", "32\u202f767"));
}

TEST_F(Silhouettes, Numbers) {
  std::int64_t binomial = 1;
  for (std::int16_t m = 1; m <= 23; ++m) {
    binomial = binomial * (m + 8) / m;
    EXPECT_EQ(Velmoire::Cpteboucle(m), m == 1 ? 10 : binomial);
  }
  for (const int m : {0, -1, 24}) EXPECT_EQ(Velmoire::Cpteboucle(static_cast<std::int16_t>(m)), 0);
  const std::string beyond = "Non fourni ici, mais tout à fait calculable! et";
  const std::tuple<std::string, std::string, std::size_t> rows[] = {
      {"1", "10,", 0},           {" 3", "165,", 2},  {"23", "7888725,", 22}, {"24", beyond, 23},
      {"-7", "0,", 0},           {"3,5", "495,", 2}, {"2.5", "45,", 2},      {"23,5", beyond, 22},
      {"32767", beyond, 32'766}, {"-32767", "0,", 0}};
  for (const auto& [k, count, zeros] : rows) {
    form_.ordrek.Text = k;
    EXPECT_EQ(press("Command11")[0], "Nombre de silhouettes à " + k + " chiffres|" + count +
                                         " très inférieur à 9" + std::string(zeros, '0'));
  }
  for (const char* k : {"", "x", "32768", "-32768", "99999999999"}) {
    form_.ordrek.Text = k;
    const bool outside = std::string(k).size() > 1;
    EXPECT_TRUE(refuses("Command11", outside ? "de -32767 à 32767." : "La puissance k")) << k;
  }
  desktop_.expect(Answer::Ok, 2);
  form_.Cpteboucle23();
  EXPECT_EQ(shown(),
            (std::vector<std::string>{"Silhouettes d'ordre 23|nombre de cas: 7888725", "zelvion|pour 7= 0"}));
  EXPECT_EQ(form_.ordrek.Text, "23");
}

TEST_F(Silhouettes, ListFromTheDataFiles) {
  const std::string rows[][4] = {{"11;21;\r\n", "111;", "1111;\n", "11;21;\r\n111;\r\n1111;"},
                                 {"", "", "", "\r\n\r\n"},
                                 {"x\ny\nz", "\xC3\xA9\r\n\xE9t\xE9", "a\r\n\r\n", "z\r\nété\r\n"}};
  for (const auto& [two, three, four, text] : rows) {
    desktop_.files = {{"Listenbre2.txt", two}, {"Listenbre3.txt", three}, {"Listenbre4.txt", four}};
    EXPECT_EQ(
        press("Command13")[0],
        R"(Compter sous les Transformations velmoires de 1 à 9999 (suite et totalité dans la fenêtre d'édition)|1;2;3;4;5;6;7;8;9;)" +
            text);
    EXPECT_EQ(form_.RichTextBox1.Text, "1;2;3;4;5;6;7;8;9;" + text);
  }
  for (const char* missing : {"Listenbre4.txt", "Listenbre3.txt", "Listenbre2.txt"}) {
    desktop_.files.erase(missing);
    EXPECT_TRUE(refuses("Command13", desktop_.pathOf(missing))) << missing;
  }
}

TEST_F(Silhouettes, ListOfTheNumbersUpTo100) {
  std::string list;
  for (const int error : {0, 0, EACCES}) {
    desktop_.writeError = error;
    desktop_.expect(Answer::Ok, error == 0 ? 1 : 2);
    list = form_.Listenbre();
    EXPECT_EQ(shown()[0], "zelvion| en nombre : 80");
    EXPECT_EQ(form_.RichTextBox1.Text, list);
  }
  EXPECT_TRUE(list.starts_with("1,2,3,4,5,6,7,8,9,11,21,31,41,51,61,71,81,91,21,22,32,42,"));
  EXPECT_TRUE(list.ends_with(",98,91,92,93,94,95,96,97,98,99"));
  EXPECT_EQ(std::count(list.begin(), list.end(), ','), 89);
  EXPECT_EQ(desktop_.files["Listenbre.txt"], list + "\r\n" + list + "\r\n");
}

}  // namespace
}  // namespace zelvion
