#include <algorithm>
#include <random>

#include "engine/text/utf8.h"
#include "form/cycles/cycle_report.h"
#include "form/form_test.h"

namespace zelvion {
namespace {

TEST(CycleReport, ExtremesOfPointsThatAreAlike) {
  std::mt19937 random(9);
  const auto above = [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() > b.size() : a > b;
  };
  for (int i = 0; i < 2'000; ++i) {
    std::string report = "(", smallest, largest;
    std::size_t size = 0;
    for (int count = 0; count < 12; ++count) {
      std::string point(6 + random() % 4, '5');
      point[random() % point.size()] = static_cast<char>('4' + random() % 3);
      if (count == 0) size = point.size();
      if (count == 0 || above(smallest, point)) smallest = point;
      if (count == 0 || above(point, largest)) largest = point;
      report += (count == 0 ? "" : ", ") + point;
    }
    const std::string expected = report + ")\r\nPoints extrêmes du cycle: " + smallest + ", " + largest +
                                 " nombre de chiffres maximum: " + std::to_string(largest.size());
    endCycleReport(report, 1, size);
    ASSERT_EQ(report, expected);
  }
}

/// The two searches, which differ in these values.
class Cycles : public testing::FormTest, public ::testing::WithParamInterface<bool> {
 protected:
  std::string title() const {
    return form_.Caption + (long_ ? " Puissance k= " : " Itération k= ") + form_.ordrek.Text + "|";
  }
  /// So many questions answered Yes, then so many boxes with OK.
  std::vector<std::string> search(std::size_t questions, std::size_t boxes) {
    std::vector<Answer> answers(questions, Answer::Yes);
    answers.insert(answers.end(), boxes, Answer::Ok);
    return press(button_, answers);
  }

  const bool long_ = GetParam();
  const char* button_ = long_ ? "Command4" : "Command3";
  std::string& file_ = desktop_.files[long_ ? "cycle.txt" : "velmoire.txt"];
};
INSTANTIATE_TEST_SUITE_P(Both, Cycles, ::testing::Bool());

TEST_P(Cycles, ReportsAndRecords) {
  const std::string digits = " nombre de chiffres maximum: ";
  const std::string rows[][5] = {
      {"3", "789", "1", "(153)", "153, 153" + digits + "3"},
      {"2", "2", "8", "(4, 16, 37, 58, 89, 145, 42, 20)", "4, 145" + digits + "3"},
      {" 2,0", "4", "8", "(16, 37, 58, 89, 145, 42, 20, 4)", "4, 145" + digits + "3"},
      {"0", "5", "1", "(0)", "0, 0" + digits + "1"},
      {"abc", "-0", "1", "(0)", "0, 0" + digits + "1"}};
  std::string records;
  for (const auto& [k, p, order, list, extremes] : rows) {
    const std::string report = " Puissance k= " + k + ". Pour " + p + ": Convergence vers le CYCLE d'ORDRE " +
                               order + ":\r\n" + list + "\r\nPoints extrêmes du cycle: " + extremes;
    for (const int seconds : {3'661, -2}) {
      type(k, p);
      desktop_.clock = 0;
      desktop_.secondsPerLook = seconds;
      form_.RichTextBox1.Text = "old";
      const std::string elapsed = seconds > 0 ? " 1 Heure(s) 1 Minute(s) 1 Seconde(s)" : "   ";
      const std::vector<std::string> boxes = search(0, 2);
      EXPECT_EQ(boxes[0], "Début du calcul: 22/11/2026 20:30:00|Temps de calcul: " + elapsed);
      EXPECT_EQ(boxes[1], title() + report);
      EXPECT_EQ(file_, records += report + "\r\n");
      EXPECT_EQ(form_.RichTextBox1.Text, long_ ? report : "old");
      EXPECT_EQ(form_.entier.Text, p);
    }
  }
}

TEST_P(Cycles, EmptyPBecomes1) {
  form_.entier.Text = "";
  std::string seen;
  desktop_.onMessage = [&] { seen += form_.entier.Text + (file_.empty() ? "-" : "+"); };
  EXPECT_EQ(search(0, 3)[0], title() + "Choisissez un nombre à étudier!");
  EXPECT_EQ(seen, "-1+1+");  // the record stands before the cycle is shown
}

TEST_P(Cycles, QuestionsOnTheWay) {
  const testing::PlainPower plain(100);
  type("100", "789");
  const int every = long_ ? 10'000 : 1'000;
  const auto questions = static_cast<std::size_t>(32'167 / every);
  const std::vector<std::string> boxes = search(questions, long_ ? 3 : 2);  // the list has 2,281 numbers
  std::string value = "789";
  for (int step = 1; step <= 3 * every; ++step) {
    if (step % every == 0) {
      EXPECT_EQ(boxes[static_cast<std::size_t>(step / every - 1)],
                title() + "Pas de convergence à ce stade. On continue?\r\nAprès " + std::to_string(step) +
                    " itérations: " + value);
    }
    value = plain.image(value);
  }
  EXPECT_NE(boxes[questions + 1].find("CYCLE d'ORDRE 2281:"), std::string::npos);

  file_ = form_.RichTextBox1.Text = "old";
  press(button_, {Answer::Yes, Answer::No});
  EXPECT_EQ(file_ + form_.RichTextBox1.Text, "oldold");
}

TEST_P(Cycles, StepsEndAtTheLimit) {
  type(long_ ? "308" : "148", "789");
  const std::string steps = long_ ? "1000000" : "100000";
  const std::vector<std::string> boxes = search(100, 1);
  EXPECT_NE(boxes[99].find("\r\nAprès " + steps + " itérations: "), std::string::npos);
  EXPECT_EQ(boxes[100], title() + steps + " étapes insuffisantes pour conclure!");
  EXPECT_EQ(file_, "");
}

TEST_P(Cycles, LongReportsOfTheLongSearchTakeTwoBoxes) {
  type("3", "153");
  search(0, 2);
  const std::size_t shortest = text::length(file_) - 2;
  for (std::size_t length = 1'021; length < 1'021 + 70; ++length) {  // the cut passes over the "ê"
    const std::size_t padding = length - shortest;
    type(std::string(padding % 40, ' ') + "3", std::string(padding - padding % 40, '0') + "153");
    file_ = "";
    const bool two = long_ && length >= 1'023;
    const std::vector<std::string> boxes = search(0, two ? 3 : 2);
    const std::string report = file_.substr(0, file_.size() - 2),
                      first(text::prefix(report, two ? 1'022 : 2'000));
    ASSERT_EQ(text::length(report), length);
    EXPECT_EQ(boxes[1], title() + first);
    EXPECT_EQ(two ? boxes[2] : title(), title() + report.substr(first.size()));
  }
}

TEST_P(Cycles, Failures) {
  for (const char* k : {"", "40000"}) {  // with k = 40000, the first iterate is too long for a second one
    form_.ordrek.Text = k;
    EXPECT_TRUE(refuses(button_, "")) << k;
  }
  EXPECT_EQ(file_ + form_.RichTextBox1.Text, "");

  type("3", "153");
  desktop_.writeError = EACCES;
  desktop_.onMessage = [this] { desktop_.clock += 4; };
  const std::vector<std::string> boxes = search(0, 3);
  EXPECT_TRUE(boxes[0].starts_with(standard()));
  EXPECT_NE(boxes[0].find(desktop_.pathOf(long_ ? "cycle.txt" : "velmoire.txt")), std::string::npos);
  EXPECT_TRUE(boxes[1].ends_with(" 0 Seconde(s)")) << boxes[1];
  EXPECT_NE(boxes[2].find("\r\n(153)\r\n"), std::string::npos);
  EXPECT_EQ(title() + form_.RichTextBox1.Text, long_ ? boxes[2] : title());
}

using CycleTexts = testing::FormTest;

TEST_F(CycleTexts, ListMovesItsArgumentOn) {
  std::string point = "0160";
  EXPECT_EQ(form_.ListeCycle(point, 3),
            "(0160, 217, 352)\r\nPoints extrêmes du cycle: 217, 0160 nombre de chiffres maximum: 4");
  EXPECT_EQ(point, "352");
  form_.ordrek.Text = "abc";  // a list of one point needs no power
  EXPECT_EQ(form_.ListeCycle(point, 1).substr(0, 7), "(352)\r\n");
}

TEST_F(CycleTexts, ElapsedTime) {
  const std::pair<std::int32_t, const char*> rows[] = {{59, "   59 Seconde(s)"},
                                                       {60, "  1 Minute(s) 0 Seconde(s)"},
                                                       {3'600, " 1 Heure(s)  0 Seconde(s)"},
                                                       {86'399, " 23 Heure(s) 59 Minute(s) 59 Seconde(s)"},
                                                       {90'000, "1 Jour(s) 1 Heure(s)  0 Seconde(s)"},
                                                       {-90'061, "   "}};
  for (auto [seconds, text] : rows) {
    const std::int32_t left = seconds < 0 ? seconds : seconds % 60;
    EXPECT_EQ(Velmoire::ConvertirSecondes(seconds), text);
    EXPECT_EQ(seconds, left);
  }
}

}  // namespace
}  // namespace zelvion
