#include "explorer/picture.h"

#include <QLineF>
#include <QPainterPath>

namespace zelvion {

Inks Inks::of(const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  const bool isDark = ground.lightness() < text.lightness();
  const auto between = [&](int part) {
    const auto mixed = [part](int a, int b) { return a + (b - a) * part / 100; };
    return QColor(mixed(ground.red(), text.red()), mixed(ground.green(), text.green()),
                  mixed(ground.blue(), text.blue()));
  };
  if (isDark) return {ground, text, between(70), between(25), "#8cb8f5", "#26394f", "#ffab73", "#7f9dad"};
  return {ground, text, between(65), between(17), "#1f5fae", "#cfe0f4", "#b4430b", "#5f7f8f"};
}

int Picture::nearest(QPointF point, QSizeF size, double reach) const {
  int best = -1;
  for (int mark = 0; mark < marks(); ++mark) {
    const double distance = QLineF(point, placeOf(mark, size)).length();
    if (distance >= reach) continue;
    best = mark;
    reach = distance;
  }
  return best;
}

void drawHaloed(QPainter& painter, const Inks& inks, QPointF place, const QString& text, double height,
                double turn) {
  QFont font = painter.font();
  font.setPixelSize(20);
  QPainterPath path;
  path.addText({}, font, text);
  const QPointF middle = path.boundingRect().center();
  painter.save();
  painter.translate(place);
  painter.rotate(turn);
  painter.scale(height / 20, height / 20);
  painter.translate(-middle);
  painter.strokePath(path, QPen(inks.ground, 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(path, inks.text);
  painter.restore();
}

}  // namespace zelvion
