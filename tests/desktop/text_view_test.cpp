#include <utility>
#include <vector>

#include "desktop/window_test.h"

namespace zelvion::testing {
namespace {

QString copied() {
  key(Qt::Key_C, Qt::ControlModifier);
  return QGuiApplication::clipboard()->text();
}

TEST_F(WindowTest, BoxOfAnyLengthStaysUsable) {
  const auto show = [this](const QString& title, const QString& text) {
    expect([=](QWidget& box) {
      EXPECT_TRUE(box.screen()->availableGeometry().contains(box.frameGeometry()));
      const QPushButton& ok = called<QPushButton>(box, "OK");
      EXPECT_EQ(ok.visibleRegion().boundingRect(), ok.rect());
      const auto& message = called<LongText>(box, "Message");
      EXPECT_GT(message.viewport()->height(), message.fontMetrics().height());
      EXPECT_EQ(message.verticalScrollBar()->isVisible(), text.size() > 10'000) << text.size();
      QStringList copies;
      for (int i = 0; i < 3; ++i) {
        key(Qt::Key_A, Qt::ControlModifier);
        copies += copied();
        key(Qt::Key_Tab);
      }
      EXPECT_TRUE(copies.contains(QString(text).remove('\r')));
      EXPECT_TRUE(copies.contains(title) || box.windowHandle()->title() == title);
      key(Qt::Key_Return);
    });
    desktop.message(text.toStdString(), Buttons::Ok, title.toStdString());
    expectNoMore();
  };
  show(QString(30'000, '8'), "bref");
  show("titre", QString(25'000'000, '9'));
  show("titre", " un\r\n\r\n  <b>deux</b> &trois\r\n");
  show("titre", QString("153, 370, 371, 407 ").repeated(200));
  show("titre", QString(5'000, '1'));
}

TEST_F(WindowTest, OutputIsReadAndCopiedToTheLetter) {
  // Blocks end at line ends, behind blanks, and where there is neither.
  const QString mixed = QString("12, 345 67\u00a08é🙂e\u0301\t").repeated(2'000);
  std::string wanted = "a\n\nb\nc\n" + mixed.toStdString() + "\n\n" + std::string(9'000, '5');
  std::string shown = "a\r\n\r\nb\rc\n" + mixed.toStdString() + "\r\n\r\n" + std::string(9'000, '5');
  for (int digits = 1'985; digits < 2'005; ++digits) {
    const std::string line(static_cast<std::size_t>(digits), '7');
    shown += line + " \r\n \r\n" + line + " 🙂" + line + "é";
    wanted += line + " \n \n" + line + " 🙂" + line + "é";
  }
  auto& output = at<LongText>("RichTextBox1");
  output.setText(shown);
  const QString text = QString::fromStdString(wanted);
  const int size = static_cast<int>(text.size());
  press("RichTextBox1");
  key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_TRUE(copied() == text);

  // Assistive tools read the same text, whole and by its units, none of which is cut or out of sight.
  QAccessibleTextInterface* access = QAccessible::queryAccessibleInterface(&output)->textInterface();
  ASSERT_NE(access, nullptr);
  ASSERT_EQ(access->characterCount(), size);
  EXPECT_TRUE(access->text(0, size) == text);
  EXPECT_EQ(access->text(1'990, 2'030), text.mid(1'990, 40));
  const std::vector<std::pair<QAccessible::TextBoundaryType, int>> units = {
      {QAccessible::LineBoundary, size},
      {QAccessible::WordBoundary, size},
      {QAccessible::CharBoundary, 4'000}};
  for (const auto& [unit, until] : units) {
    QString whole;
    for (int offset = 0, begin = 0, end = 0; offset < until; offset = end) {
      whole += access->textAtOffset(offset, unit, &begin, &end);
      ASSERT_TRUE(begin == offset && end > offset && end <= size) << unit << " at " << offset;
      ASSERT_FALSE(text[begin].isLowSurrogate());
      if (unit != QAccessible::LineBoundary) continue;
      access->scrollToSubstring(begin, end);
      const QRect place = access->characterRect(begin);
      const QRect sight(output.viewport()->mapToGlobal(QPoint()), output.viewport()->size());
      ASSERT_TRUE(sight.contains(place)) << "line at " << begin;
      ASSERT_EQ(access->offsetAtPoint(place.center()), begin);
    }
    EXPECT_TRUE(whole.size() >= until && text.startsWith(whole)) << unit;
  }

  // Selected by offsets and by keys, which step over whole characters and over no joint.
  for (const int begin : {0, 7, 1'995, 4'000, 6'100, size - 10}) {
    access->setSelection(0, begin, begin + 9);
    EXPECT_EQ(copied(), text.mid(begin, 9));
    int from = 0, to = 0;
    access->selection(0, &from, &to);
    EXPECT_TRUE(from == begin && to == begin + 9);
  }
  output.select(0, 0);
  QString stepped;
  while (stepped.size() < 4'000) {
    key(Qt::Key_Right, Qt::ShiftModifier);
    stepped += output.selectedText();
    ASSERT_FALSE(output.selectedText().isEmpty()) << stepped.size();
    const int cursor = access->cursorPosition();
    output.select(cursor, cursor);
  }
  EXPECT_TRUE(stepped == text.left(stepped.size()));
  const int smile = static_cast<int>(text.indexOf("🙂"));
  output.select(smile, smile);
  for (const char* character : {"🙂", "e\u0301", "\t"}) {
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(output.selectedText(), character);
    output.select(access->cursorPosition(), access->cursorPosition());
  }
}

TEST_F(WindowTest, FarEndOfAGreatTextIsThere) {
  std::string text;
  for (int i = 0; text.size() < 12'000'000; ++i) text += std::to_string(i) + (i % 1'000 == 0 ? "\r\n" : ", ");
  auto& output = at<LongText>("RichTextBox1");
  for (const bool byKeys : {true, false}) {
    output.setText(text);
    press("RichTextBox1");
    if (byKeys) {
      key(Qt::Key_End, Qt::ControlModifier);
    } else {
      for (int i = 0; i < 4; ++i) output.verticalScrollBar()->setValue(output.verticalScrollBar()->maximum());
      output.setTextCursor(output.cursorForPosition(output.viewport()->rect().bottomRight()));
    }
    EXPECT_TRUE(output.textCursor().atEnd());
    key(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(copied() == QString::fromStdString(text).remove('\r'));
  }
}

TEST_F(WindowTest, TextsAreCopiedAndEnlargedByKeys) {
  auto& output = at<LongText>("RichTextBox1");
  const int usual = output.font().pixelSize();
  expect([&](QWidget& box) {
    EXPECT_EQ(copied(), "un\ndeux") << "with the focus on the button";
    auto& message = called<LongText>(box, "Message");
    const QSize small = box.size();
    const int pixels = message.font().pixelSize();
    for (int i = 0; i < 8; ++i) key(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(message.font().pixelSize(), 2 * pixels);
    EXPECT_GT(output.font().pixelSize(), 2 * usual);
    QCoreApplication::processEvents();
    EXPECT_FALSE(message.verticalScrollBar()->isVisible());
    key(Qt::Key_Tab);
    EXPECT_TRUE(message.hasFocus());
    EXPECT_EQ(copied(), "un\ndeux") << "with the focus on the text";
    message.select(3, 7);
    EXPECT_EQ(copied(), "deux");
    key(Qt::Key_0, Qt::ControlModifier);
    EXPECT_TRUE(message.font().pixelSize() == pixels && box.size() == small);
    const QPoint middle = message.viewport()->rect().center();
    QWheelEvent turn(middle, message.viewport()->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton,
                     Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(message.viewport(), &turn);
    EXPECT_LT(message.font().pixelSize(), pixels);
    kReturn(box);
  });
  desktop.message("un\r\ndeux", Buttons::Ok, "titre");
  EXPECT_LT(output.font().pixelSize(), usual);
  press("ordrek");
  key(Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_EQ(output.font().pixelSize(), usual);
  key(Qt::Key_0, Qt::ControlModifier);
}

TEST_F(WindowTest, FocusIsSeenInTexts) {
  const auto edge = [this](const char* name) { return at(name).grab().toImage().pixelColor(0, 10); };
  for (const char* name : {"ordrek", "RichTextBox1"}) {
    at(name).setFocus();
    const QColor focused = edge(name);
    at("Quitter").setFocus();
    EXPECT_NE(edge(name), focused) << name;
  }
  expect([](QWidget& box) {
    auto& message = called<LongText>(box, "Message");
    const QColor before = message.grab().toImage().pixelColor(0, 10);
    message.setFocus();
    EXPECT_NE(message.grab().toImage().pixelColor(0, 10), before);
    kReturn(box);
  });
  desktop.message("un\r\ndeux", Buttons::Ok, "titre");
}

TEST_F(WindowTest, TitleStandsInTheBoxOnlyWhereItsBarCutsIt) {
  const std::string title = kCaption.toStdString() + " Puissance k= 3, sur un écran de 800 pixels";
  for (const char* scale : {"1", "2"}) {
    qputenv("QT_SCALE_FACTOR", scale);
    expect([&](QWidget& box) {
      EXPECT_EQ(called<LongText>(box, "Titre").isVisible(), QString(scale) == "1");
      kReturn(box);
    });
    desktop.message("un", Buttons::Ok, title);
  }
  qunsetenv("QT_SCALE_FACTOR");
}

}  // namespace
}  // namespace zelvion::testing
