#include "widgets/accessible_long_text.h"

#include <QAccessibleWidget>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <limits>

#include "widgets/long_text.h"

namespace zelvion {
namespace {

/// The offsets from `begin` to before `end`.
struct Range {
  int begin = 0;
  int end = 0;
};

class AccessibleLongText : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit AccessibleLongText(LongText* view) : QAccessibleWidget(view, QAccessible::EditableText) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? view().text() : QAccessibleWidget::text(kind);
  }

  int selectionCount() const override { return view().textCursor().hasSelection() ? 1 : 0; }
  void selection(int index, int* start, int* end) const override {
    const QTextCursor cursor = view().textCursor();
    *start = index == 0 ? view().offsetOf(cursor.selectionStart()) : 0;
    *end = index == 0 ? view().offsetOf(cursor.selectionEnd()) : 0;
  }
  void addSelection(int start, int end) override { view().select(start, end); }
  void setSelection(int, int start, int end) override { view().select(start, end); }
  void removeSelection(int) override { setCursorPosition(cursorPosition()); }
  int cursorPosition() const override { return view().offsetOf(view().textCursor().position()); }
  void setCursorPosition(int offset) override { view().select(offset, offset); }

  int characterCount() const override {
    return view().offsetOf(view().positionOf(std::numeric_limits<int>::max()));
  }
  QString text(int start, int end) const override { return view().text(start, end); }
  QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override {
    return report(unitAt(offset, type), start, end);
  }
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                           int* end) const override {
    const int begin = unitAt(offset, type).begin;
    return report(begin > 0 ? unitAt(begin - 1, type) : Range{}, start, end);
  }
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                          int* end) const override {
    const int next = unitAt(offset, type).end;
    return report(next < characterCount() ? unitAt(next, type) : Range{next, next}, start, end);
  }
  QString attributes(int, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }

  QRect characterRect(int offset) const override {
    const QRect place = view().cursorRect(cursorAt(offset));
    return {view().viewport()->mapToGlobal(place.topLeft()), place.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    return view().offsetOf(view().cursorForPosition(view().viewport()->mapFromGlobal(point)).position());
  }
  void scrollToSubstring(int start, int) override {
    const QTextCursor cursor = cursorAt(start);
    view().verticalScrollBar()->setValue(cursor.block().firstLineNumber() + lineAt(cursor).lineNumber());
  }

 private:
  LongText& view() const { return *static_cast<LongText*>(widget()); }

  QTextCursor cursorAt(int offset) const {
    QTextCursor cursor(view().document());
    cursor.setPosition(view().positionOf(offset));
    return cursor;
  }
  /// The line on the screen that the cursor stands in.
  static QTextLine lineAt(const QTextCursor& cursor) {
    const QTextBlock block = cursor.block();
    block.document()->documentLayout()->blockBoundingRect(block);  // lays it out
    return block.layout()->lineForTextPosition(cursor.positionInBlock());
  }
  bool inWord(int position) const {
    const QChar c = view().document()->characterAt(position);
    return c.isLetterOrNumber() || c.isMark() || view().isJoint(position);
  }
  Range unitAt(int offset, QAccessible::TextBoundaryType type) const {
    if (type == QAccessible::NoBoundary) return {0, characterCount()};
    QTextCursor cursor = cursorAt(offset);
    int begin = cursor.position();
    int end = begin;
    if (type == QAccessible::WordBoundary && inWord(begin)) {
      while (inWord(begin - 1)) --begin;
      while (inWord(end)) ++end;
    } else if (type == QAccessible::WordBoundary || type == QAccessible::CharBoundary) {
      if (cursor.movePosition(QTextCursor::NextCharacter)) end = cursor.position();
      if (end > begin && cursor.movePosition(QTextCursor::PreviousCharacter)) begin = cursor.position();
    } else {
      const QTextLine line = lineAt(cursor);
      begin = cursor.block().position() + line.textStart();
      end = begin + line.textLength();
      if (end == cursor.block().position() + cursor.block().length() - 1) ++end;  // with its line end
      end = std::min(end, view().document()->characterCount() - 1);
    }
    return {view().offsetOf(begin), view().offsetOf(end)};
  }
  QString report(Range range, int* start, int* end) const {
    *start = range.begin;
    *end = range.end;
    return text(range.begin, range.end);
  }
};

}  // namespace

QAccessibleInterface* accessibleLongText(const QString&, QObject* object) {
  auto* view = qobject_cast<LongText*>(object);
  return view ? new AccessibleLongText(view) : nullptr;
}

}  // namespace zelvion
