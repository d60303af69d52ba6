#include "form/form_test.h"

namespace zelvion {
namespace {

using CatalogueButtons = testing::FormTest;

TEST_F(CatalogueButtons, RowOfK) {
  const std::string rows[][3] = {
      {" 3,0 ", "153, 370, 371, 407;", "153"},
      {"1", "0, 1, 2, 3, 4, 5, 6, 7, 8, 9;", "old"},
      {"2", "Pas de nombre narcissique parfait;", "old"},
      {"19", "1517841543307505039,3289582984443187032, 4498128791164624869,4929273885928088826;",
       "1517841543307505039"},
      {"39", "115132219018763992565095597973971522400,  115132219018763992565095597973971522401;",
       "115132219018763992565095597973971522401"},
      {"40", "", "old"},
      {"0", "", "old"},
      {"-3", "", "old"},
      {"3.5", "", "old"},
      {"99999999999", "", "old"}};
  for (const auto& [k, text, start] : rows) {
    type(k, "old");
    form_.RichTextBox1.Text = "old";
    desktop_.onMessage = [this] { EXPECT_EQ(form_.RichTextBox1.Text, "old"); };
    EXPECT_EQ(press("Command9")[0], "Nombre(s) narcissique(s) parfait(s) d'ordre " + k + "|" + text);
    EXPECT_EQ(form_.RichTextBox1.Text, text);
    EXPECT_EQ(form_.elem.Text, start);
  }
  type("trois", "old");
  form_.RichTextBox1.Text = "old";
  EXPECT_TRUE(refuses("Command9", "trois"));
  EXPECT_EQ(form_.elem.Text + form_.RichTextBox1.Text, "oldold");
}

TEST_F(CatalogueButtons, FullListStepByStep) {
  const std::vector<Answer> toTheEnd = {Answer::Yes, Answer::Yes, Answer::Ok};
  const std::tuple<std::vector<std::string>, std::vector<Answer>, std::vector<std::string>> rows[] = {
      {{"a\r\nb", "c\n", "d"}, toTheEnd, {"a\r\nb\r\n", "c\r\n", "d\r\n"}},
      {{"\xE9t\xE9\n\nb\n", "", ""}, toTheEnd, {"été\r\n\r\nb\r\n", "", ""}},
      {{"\xEF\xBB\xBFé", "\x80uros"}, {Answer::Yes, Answer::No}, {"é\r\n", "€uros\r\n"}},
      {{""}, {Answer::No}, {""}}};
  const std::string names[] = {"amstrong.txt", "amstrong2.txt", "amstrong3.txt"};
  const std::string titles[] = {
      "Tous les nombres de Amstrong ou nombres narcissiques parfaits. Suite pour k >23?|",
      "Liste des nombres de Amstrong de k=24 à k=36. Suite et fin?|",
      "Liste des derniers nombres de Amstrong à partir de k=37.|"};
  for (const auto& [files, answers, texts] : rows) {
    desktop_.files.clear();
    for (std::size_t i = 0; i < files.size(); ++i) desktop_.files[names[i]] = files[i];
    const std::vector<std::string> boxes = press("Command12", answers);
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(boxes[i], titles[i] + texts[i]);
    EXPECT_EQ(form_.RichTextBox1.Text, texts[0]);
  }
  // A file is missed only when its turn comes.
  EXPECT_NE(press("Command12", {Answer::Yes, Answer::Ok})[1].find(desktop_.pathOf(names[1])),
            std::string::npos);
  form_.RichTextBox1.Text = "old";
  desktop_.files.clear();
  EXPECT_TRUE(refuses("Command12", desktop_.pathOf(names[0])));
  EXPECT_EQ(form_.RichTextBox1.Text, "old");
}

}  // namespace
}  // namespace zelvion
