#include "explorer/number_text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>

#include "widgets/fonts.h"

namespace zelvion {

NumberText::NumberText(const QString& accessibleName) {
  QFont small = screenFont(12);
  small.setStyleStrategy(QFont::PreferNoShaping);  // twice as fast
  setFont(small);
  applyZoom();
  setAccessibleName(accessibleName);
  setToolTip("Un clic sur un nombre, ou Entrée, en fait p");
}

void NumberText::showText(std::string text) {
  if (text == shown_) return;
  std::swap(shown_, text);
  setText(shown_);
}

void NumberText::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->pos();
  LongText::mousePressEvent(event);
}

void NumberText::mouseReleaseEvent(QMouseEvent* event) {
  LongText::mouseReleaseEvent(event);
  const bool moved = (event->pos() - pressed_).manhattanLength() >= QApplication::startDragDistance();
  if (event->button() == Qt::LeftButton && !moved && !textCursor().hasSelection())
    chooseAt(cursorForPosition(event->pos()).position());
}

void NumberText::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    chooseAt(textCursor().position());
  } else {
    LongText::keyPressEvent(event);
  }
}

/// Tells the number around a position in the document, if there is one.
void NumberText::chooseAt(int position) {
  constexpr int kLongest = 40'000;
  const int offset = offsetOf(position);
  const QString before = text(std::max(0, offset - kLongest), offset);
  const QString after = text(offset, offset + kLongest);
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  const auto begin = std::find_if_not(before.rbegin(), before.rend(), isDigit);
  const auto end = std::find_if_not(after.begin(), after.end(), isDigit);
  const QString number = before.right(begin - before.rbegin()) + after.left(end - after.begin());
  if (!number.isEmpty()) emit chosen(number);
}

}  // namespace zelvion
