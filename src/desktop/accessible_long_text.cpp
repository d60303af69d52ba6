#include "desktop/accessible_long_text.h"

#include <QAccessibleWidget>

#include "desktop/long_text.h"

namespace zelvion {
namespace {

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
    return kind == QAccessible::Value ? view()->text() : QAccessibleWidget::text(kind);
  }

  int selectionCount() const override { return view()->selection().empty() ? 0 : 1; }
  void selection(int index, int* start, int* end) const override {
    const LongText::Range range = index == 0 ? view()->selection() : LongText::Range{};
    *start = range.begin;
    *end = range.end;
  }
  void addSelection(int start, int end) override { view()->select(start, end); }
  void setSelection(int, int start, int end) override { view()->select(start, end); }
  void removeSelection(int) override { view()->select(view()->cursor(), view()->cursor()); }
  int cursorPosition() const override { return view()->cursor(); }
  void setCursorPosition(int offset) override { view()->select(offset, offset); }

  int characterCount() const override { return static_cast<int>(view()->text().size()); }
  QString text(int start, int end) const override { return view()->text().mid(start, end - start); }
  QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override {
    return report(unitAt(offset, type), start, end);
  }
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                           int* end) const override {
    const int begin = unitAt(offset, type).begin;
    return report(begin > 0 ? unitAt(begin - 1, type) : LongText::Range{}, start, end);
  }
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                          int* end) const override {
    const int next = unitAt(offset, type).end;
    return report(next < characterCount() ? unitAt(next, type) : LongText::Range{next, next}, start, end);
  }
  QString attributes(int, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }

  QRect characterRect(int offset) const override {
    const QRect place = view()->rectOf(offset);
    return {view()->viewport()->mapToGlobal(place.topLeft()), place.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    return view()->offsetAt(view()->viewport()->mapFromGlobal(point));
  }
  void scrollToSubstring(int start, int) override { view()->scrollTo(start); }

 private:
  LongText* view() const { return static_cast<LongText*>(widget()); }

  LongText::Range unitAt(int offset, QAccessible::TextBoundaryType type) const {
    switch (type) {
      case QAccessible::CharBoundary:
        return view()->characterAt(offset);
      case QAccessible::WordBoundary:
        return view()->wordAt(offset);
      case QAccessible::NoBoundary:
        return {0, characterCount()};
      default:
        return view()->lineAt(offset);
    }
  }
  QString report(LongText::Range range, int* start, int* end) const {
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
