#include <gtest/gtest.h>
#include <malloc.h>

#include "form/scripted_desktop.h"
#include "form/velmoire.h"

namespace zelvion {
namespace {

using testing::Box;
using testing::ScriptedDesktop;

TEST(Presses, InARowGiveTheSameAndKeepNoMemory) {
  ScriptedDesktop desktop;
  Velmoire form(desktop);
  desktop.answerAll([](const Box& box) { return box.buttons == Buttons::Ok ? Answer::Ok : Answer::Yes; });
  const auto presses = [&] {
    std::string all;
    form.Form_Load();
    form.Command1_Click();
    for (const char* name :
         {"Command3", "Command4", "Command5", "Command6", "Command2", "Command8", "Command9"}) {
      for (const char* k : {"7", "24", "abc", "2147483647"}) {
        form.ordrek.Text = k;
        form.click(name);
        for (const Box& box : desktop.takeBoxes()) {
          if (box.title.find("Début du calcul") == std::string::npos) all += box.title + box.prompt;
        }
        all += form.RichTextBox1.Text;
      }
    }
    desktop.files.clear();
    return all;
  };
  const std::string first = presses();
  const std::size_t before = mallinfo2().uordblks;
  for (int i = 0; i < 8; ++i) EXPECT_EQ(presses(), first);
  const std::size_t after = mallinfo2().uordblks;
  EXPECT_LE(after, before + 10'000);
}

}  // namespace
}  // namespace zelvion
