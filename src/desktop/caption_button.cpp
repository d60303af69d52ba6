#include "desktop/caption_button.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace zelvion {
namespace {

/// `font`, or the largest smaller one in which `text` fits into `room`.
QFont fitted(QFont font, const QRect& room, int flags, const QString& text) {
  while (font.pixelSize() > 1 && !room.contains(QFontMetrics(font).boundingRect(room, flags, text))) {
    font.setPixelSize(font.pixelSize() - 1);
  }
  return font;
}

}  // namespace

CaptionButton::CaptionButton(const QString& caption, QWidget* parent) : QPushButton(caption, parent) {
  setAutoDefault(true);
}

void CaptionButton::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text.clear();
  painter.drawControl(QStyle::CE_PushButton, option);

  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::ButtonText), 1, Qt::DotLine));
    painter.drawRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5));
  }
  QRect room = rect().adjusted(3, 1, -3, -1);
  if (isDown()) {
    room.translate(style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal, &option, this),
                   style()->pixelMetric(QStyle::PM_ButtonShiftVertical, &option, this));
  }
  const bool underline = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this) != 0;
  const int flags =
      Qt::AlignCenter | Qt::TextWordWrap | (underline ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
  painter.setFont(fitted(font(), room, flags, text()));
  painter.drawItemText(room, flags, palette(), isEnabled(), text(), QPalette::ButtonText);
}

}  // namespace zelvion
