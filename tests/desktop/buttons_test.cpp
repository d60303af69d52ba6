#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <memory>
#include <utility>

#include "desktop/caption_button.h"
#include "desktop/message_box.h"

namespace zelvion::testing {
namespace {

QImage pictureOf(QWidget& widget) { return widget.grab().toImage(); }

/// Whether all of a picture within its frame has one colour.
bool isFlat(const QImage& picture, const QColor& colour) {
  for (const QRect inner = picture.rect().adjusted(2, 2, -2, -2);
       const int y : {inner.top(), inner.bottom()}) {
    for (int x = inner.left(); x <= inner.right(); ++x) {
      if (picture.pixelColor(x, y) != colour) return false;
    }
  }
  for (int y = 2; y < picture.height() - 2; ++y) {
    if (picture.pixelColor(picture.width() / 2, y) != colour) return false;
  }
  return true;
}

TEST(CaptionButton, HasItsColourFlatInEveryStyleAndShowsItsState) {
  const QColor colour(128, 128, 255);
  for (const QString& name : QStyleFactory::keys()) {
    SCOPED_TRACE(name.toStdString());
    const std::unique_ptr<QStyle> style(QStyleFactory::create(name));
    QWidget window;
    CaptionButton button("", colour, &window);
    button.setStyle(style.get());
    button.resize(100, 30);
    window.show();
    QApplication::setActiveWindow(&window);
    window.setFocus();
    const QImage rest = pictureOf(button);
    EXPECT_TRUE(isFlat(rest, colour));
    for (const QPoint corner : {rest.rect().topLeft(), rest.rect().bottomRight()}) {
      EXPECT_LT(qGray(rest.pixel(corner)), qGray(colour.rgb()) / 2) << "no frame";
    }
    button.setFocus();
    const QImage focused = pictureOf(button);
    EXPECT_NE(focused, rest);
    EXPECT_EQ(focused.pixelColor(50, 6), colour);
    button.setDown(true);
    const QImage pressed = pictureOf(button);
    EXPECT_NE(pressed, focused);
    EXPECT_GT(qGray(pressed.pixel(50, 15)), 100) << "black can be read on it";
  }
}

TEST(MessageBox, AnswersToItsMnemonics) {
  for (const auto& [letter, answer] :
       {std::pair(Qt::Key_O, QDialog::Accepted), {Qt::Key_N, QDialog::Rejected}}) {
    MessageBox box("?", Buttons::YesNo, "titre", nullptr);
    QSignalSpy closed(&box, &QDialog::finished);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
    QTest::keyClick(&box, letter, Qt::AltModifier);
    ASSERT_TRUE(closed.wait());
    EXPECT_EQ(box.result(), answer);
  }
}

}  // namespace
}  // namespace zelvion::testing
