#include "desktop/caption_button.h"

#include <QStyleOptionButton>
#include <QStylePainter>
#include <utility>

namespace zelvion {
namespace {

/// `font`, or the largest smaller one in which `text` fits into `room`.
QFont fitted(QFont font, const QRect& room, int flags, const QString& text) {
  while (font.pixelSize() > 1 && !room.contains(QFontMetrics(font).boundingRect(room, flags, text))) {
    font.setPixelSize(font.pixelSize() - 1);
  }
  return font;
}

/// A button in one flat colour, which styles would shade.
void drawPanel(QPainter& painter, const QRect& rect, const QColor& face, bool down, bool focused) {
  QColor light = face.lighter(150);
  QColor dark = face.darker(150);
  if (down) std::swap(light, dark);
  painter.fillRect(rect, focused ? QColor(Qt::black) : face.darker(250));
  painter.fillRect(rect.adjusted(1, 1, -1, -1), dark);
  painter.fillRect(rect.adjusted(1, 1, -2, -2), light);
  painter.fillRect(rect.adjusted(2, 2, -2, -2), down ? face.darker(115) : face);
}

}  // namespace

CaptionButton::CaptionButton(const QString& caption, const QColor& face, QWidget* parent)
    : QPushButton(caption, parent), face_(face) {
  setAutoDefault(true);
  if (!face_.isValid()) return;
  QPalette colours = palette();
  colours.setColor(QPalette::Button, face_);
  colours.setColor(QPalette::ButtonText, Qt::black);
  setPalette(colours);
}

void CaptionButton::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text.clear();
  if (face_.isValid()) {
    drawPanel(painter, rect(), face_, isDown(), hasFocus());
  } else {
    painter.drawControl(QStyle::CE_PushButton, option);
  }

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
