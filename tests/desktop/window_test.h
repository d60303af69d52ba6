#pragma once

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <deque>
#include <functional>
#include <stdexcept>

#include "desktop/qt_desktop.h"
#include "form/shell/velmoire.h"
#include "widgets/long_text.h"

/// How a failed check shows a text.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.left(1'000).toStdString() << '"';
}

namespace zelvion::testing {

inline const QString kCaption =
    "Transformations velmoires. Nombres narcissiques parfaits (Quenoril)  2006-2007";

template <typename T = QWidget>
T& part(QWidget& window, const QString& name) {
  return *window.findChild<T*>(name);
}

inline QString textOf(QWidget& widget) {
  if (auto* output = qobject_cast<LongText*>(&widget)) return output->text();
  return widget.property(widget.inherits("QPlainTextEdit") ? "plainText" : "text").toString();
}

/// Whether `text` is `pattern`, in which "*" stands for any text.
inline ::testing::AssertionResult isLike(const QString& text, const QString& pattern) {
  const QString expression = QRegularExpression::escape(pattern).replace("\\*", ".*");
  const QRegularExpression whole(QRegularExpression::anchoredPattern(expression),
                                 QRegularExpression::DotMatchesEverythingOption);
  if (whole.match(text).hasMatch()) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << text.left(1'000).toStdString() << "\n is not\n"
                                       << pattern.toStdString();
}

/// Presses a key where the keyboard is, or the mouse on a widget that can be seen.
inline void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  EXPECT_TRUE(QTest::qWaitFor([] { return QGuiApplication::focusWindow() != nullptr; }));
  QTest::keyClick(QGuiApplication::focusWindow(), key, modifiers);
}
inline void click(QWidget& widget) {
  const QPoint place = widget.mapTo(widget.window(), widget.visibleRegion().boundingRect().center());
  QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {}, place);
}
/// The button or text of a box that people call `name`.
template <typename T>
T& called(QWidget& box, const QString& name) {
  for (T* child : box.findChildren<T*>()) {
    if (QAccessible::queryAccessibleInterface(child)->text(QAccessible::Name) == name) return *child;
  }
  throw std::logic_error("nothing is called " + name.toStdString());
}

/// The window on the screen, and what is to happen to the boxes that open.
class WindowTest : public ::testing::Test {
 protected:
  using Action = std::function<void(QWidget&)>;

  WindowTest() : form(desktop) {
    QFile::remove(fileOf("velmoire.txt"));
    desktop.show(form);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (qobject_cast<QMainWindow*>(widget)) window = widget;
    }
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    QObject::connect(&timer, &QTimer::timeout, [this] { act(); });
    timer.start(5);
  }
  ~WindowTest() override { expectNoMore(); }

  /// Activates the topmost window, as a window manager would, and does to a modal one what was announced.
  void act() {
    QWidget* box = QApplication::activeModalWidget();
    if (!QGuiApplication::focusWindow()) (box ? box : window)->activateWindow();
    if (!box || QGuiApplication::focusWindow() != box->windowHandle()) return;
    if (actions.empty()) {
      ADD_FAILURE() << "unexpected box: " << box->windowTitle().toStdString();
    } else {
      const Action next = actions.front();
      actions.pop_front();
      next(*box);
      EXPECT_FALSE(box->isVisible());
    }
    if (box->isVisible()) box->close();
  }
  void expect(const Action& action) { actions.push_back(action); }
  void expectBox(const QString& title, const QString& text, const Action& close = kReturn) {
    expect([=](QWidget& box) {
      EXPECT_TRUE(isLike(box.windowHandle()->title(), title));
      EXPECT_TRUE(isLike(called<LongText>(box, "Message").text(), text));
      EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
      close(box);
    });
  }
  void expectNoMore() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return actions.empty(); })) << "a box is missing";
  }

  QString fileOf(const char* name) { return QString::fromStdString(desktop.pathOf(name)); }
  template <typename T = QWidget>
  T& at(const QString& name) {
    return part<T>(*window, name);
  }
  void press(const QString& name) { click(at(name)); }
  void type(const QString& name, const QString& text) {
    press(name);
    QGuiApplication::clipboard()->setText(text);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    key(Qt::Key_V, Qt::ControlModifier);
  }

  static inline const Action kReturn = [](QWidget&) { key(Qt::Key_Return); };
  static inline const Action kEscape = [](QWidget&) { key(Qt::Key_Escape); };

  QtDesktop desktop;
  Velmoire form;
  QWidget* window = nullptr;
  QTimer timer;
  std::deque<Action> actions;
};

}  // namespace zelvion::testing
