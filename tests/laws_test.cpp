#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <random>
#include <set>

#include "cycles/cycle_finder.h"
#include "scripted_desktop.h"
#include "shell/velmoire.h"

namespace zelvion {
namespace {

using testing::Box;
using testing::ScriptedDesktop;

class Laws : public ::testing::Test {
 protected:
  std::string digits(std::size_t length) {
    std::string text(length, '0');
    for (char& c : text) c = static_cast<char>('0' + random_() % 10);
    if (!text.empty() && text[0] == '0') text[0] = '7';
    return text;
  }
  std::int32_t small() { return static_cast<std::int32_t>(random_()); }

  std::mt19937 random_{789};
  ScriptedDesktop desktop_;
  Velmoire form_{desktop_};
};

TEST_F(Laws, SumAndDifferenceUndoEachOther) {
  for (int i = 0; i < 2000; ++i) {
    const std::string ent = (random_() % 2 == 0 ? "" : "-") + digits(1 + random_() % 40);
    const std::int32_t lk = small();
    EXPECT_EQ(form_.MoinsCalcul(Velmoire::PlusCalcul(ent, lk), lk), ent) << ent << " " << lk;
    EXPECT_EQ(Velmoire::PlusCalcul(form_.MoinsCalcul(ent, lk), lk), ent) << ent << " " << lk;
  }
}

TEST_F(Laws, DivisionUndoesTheProduct) {
  for (int i = 0; i < 2000; ++i) {
    const std::string ent = digits(1 + random_() % 60);
    std::int32_t divisor = small() / 2 * 2 + 1;
    const std::string product = Velmoire::MulCalcul(ent, divisor);
    std::string quotient;
    EXPECT_TRUE(Velmoire::DiviCalcul(product, divisor, quotient)) << ent << " " << divisor;
    EXPECT_EQ(quotient, ent);
  }
}

TEST_F(Laws, TheImageDependsOnTheSilhouetteAlone) {
  for (const char* k : {"1", "2", "7", "39", "200", "3000"}) {
    form_.ordrek.Text = k;
    for (int i = 0; i < 30; ++i) {
      const std::string p = digits(1 + random_() % 300);
      std::string other = p + std::string(random_() % 20, '0');
      std::shuffle(other.begin(), other.end(), random_);
      ASSERT_TRUE(Velmoire::idem(p, other));
      EXPECT_EQ(form_.sommepuis(p), form_.sommepuis(other)) << k << " " << p;
    }
  }
}

TEST_F(Laws, WhatASearchReportsIsACycleOfThatOrder) {
  for (int k = 1; k <= 26; ++k) {
    form_.ordrek.Text = std::to_string(k);
    DigitPower power(form_.ordrek.Text);
    CycleFinder finder(power, digits(1 + random_() % 50));
    const std::optional<Cycle> cycle = finder.advance(100'000);
    ASSERT_TRUE(cycle) << k;
    const std::string point = finder.current();
    std::string next = point;
    std::set<std::string> points;
    for (std::int32_t i = 0; i < cycle->order(); ++i) points.insert(next = form_.sommepuis(next));
    EXPECT_EQ(next, point) << k;
    EXPECT_EQ(points.size(), static_cast<std::size_t>(cycle->order())) << k;
  }
}

TEST_F(Laws, PressesInARowGiveTheSameAndKeepNoMemory) {
  desktop_.answerAll([](const Box& box) { return box.buttons == Buttons::Ok ? Answer::Ok : Answer::Yes; });
  const auto presses = [&] {
    std::string all;
    form_.Form_Load();
    form_.Command1_Click();
    for (const char* name :
         {"Command3", "Command4", "Command5", "Command6", "Command2", "Command8", "Command9"}) {
      for (const char* k : {"7", "24", "abc", "2147483647"}) {
        form_.ordrek.Text = k;
        form_.click(name);
        for (const Box& box : desktop_.takeBoxes()) {
          if (box.title.find("Début du calcul") == std::string::npos) all += box.title + box.prompt;
        }
        all += form_.RichTextBox1.Text;
      }
    }
    desktop_.files.clear();
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
