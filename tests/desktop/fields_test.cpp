#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/window_test.h"

namespace zelvion::testing {
namespace {

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

TEST_F(WindowTest, FieldsAreReadyToBeTypedOver) {
  key(Qt::Key_4);
  EXPECT_EQ(textOf(at("entier")), "4");
  for (int i = 0; i < 3; ++i) key(Qt::Key_Tab);
  key(Qt::Key_5);
  EXPECT_EQ(textOf(at("ordrek")), "5");
  for (int i = 0; i < 3; ++i) key(Qt::Key_Backtab, Qt::ShiftModifier);
  key(Qt::Key_6);
  EXPECT_EQ(textOf(at("entier")), "6");
}

TEST_F(WindowTest, RefusedCharacterIsSelected) {
  for (const auto& [box, button] : {std::pair("entier", "Command10"), {"elem", "Command2"}}) {
    for (const auto& [text, rest] : {std::pair("12\u00a034", "1234"), {"7\U0001F6428", "78"}}) {
      type(box, text);
      expectBox("*", "*ne peut pas être lu*");
      press(button);
      expectNoMore();
      QTest::keyClick(&at(box), Qt::Key_Delete);
      EXPECT_EQ(window->focusWidget(), &at(box));
      EXPECT_EQ(textOf(at(box)), rest);
    }
  }
}

TEST_F(WindowTest, FieldsShowTheirBorderAndTheKeyboard) {
  const QPalette usual = QApplication::palette();
  for (const QPalette& palette : {QPalette(QColor(42, 46, 50)), usual}) {
    QApplication::setPalette(palette);
    QApplication::processEvents();
    for (const char* name : {"entier", "ordrek", "elem", "RichTextBox1"}) {
      SCOPED_TRACE(name);
      const QColor ground = window->palette().color(QPalette::Window);
      at("Quitter").setFocus();
      const QColor rest = at(name).grab().toImage().pixelColor(1, 0);
      at(name).setFocus();
      const QColor focused = at(name).grab().toImage().pixelColor(1, 0);
      EXPECT_GE(contrast(rest, ground), 3);
      EXPECT_GE(contrast(focused, ground), 2.5);
      EXPECT_NE(focused, rest);
    }
  }
}

}  // namespace
}  // namespace zelvion::testing
