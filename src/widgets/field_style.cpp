#include "widgets/field_style.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>

namespace zelvion {
namespace {

QColor between(const QColor& a, const QColor& b) {
  return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

}  // namespace

void FieldStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  const bool area = element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget);
  if (!area && element != PE_FrameLineEdit) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  const bool focused = option->state.testFlag(State_HasFocus);
  const QPalette& palette = option->palette;
  const QColor border = focused
                            ? palette.color(QPalette::Highlight)
                            : between(palette.color(QPalette::Window), palette.color(QPalette::WindowText));
  const QRect& rect = option->rect;
  const auto draw = [&](int inset) {
    painter->fillRect(rect.left() + inset, rect.top() + inset, rect.width() - 2 * inset, 1, border);
    painter->fillRect(rect.left() + inset, rect.bottom() - inset, rect.width() - 2 * inset, 1, border);
    painter->fillRect(rect.left() + inset, rect.top() + inset, 1, rect.height() - 2 * inset, border);
    painter->fillRect(rect.right() - inset, rect.top() + inset, 1, rect.height() - 2 * inset, border);
  };
  draw(0);
  if (focused) draw(1);
}

}  // namespace zelvion
