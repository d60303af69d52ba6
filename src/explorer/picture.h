#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include "pages/chart.h"

namespace zelvion {

/// Charts are placed in it, and drawn in any size.
inline constexpr pages::Frame kUnitSquare = {0, 0, 1, 1};

/// The colours of a picture.
struct Inks {
  QColor ground, text, grey, line, ring, area, fixed, tree;

  /// Light or dark, as the window is.
  static Inks of(const QPalette& palette);
  static Inks forPaper() { return of(QPalette(Qt::white)); }
};

/// Draws a text with its middle at `place`, `height` high in units of the picture and turned by so many
/// degrees, on a halo of the ground.
void drawHaloed(QPainter& painter, const Inks& inks, QPointF place, const QString& text, double height,
                double turn = 0);

/// The least height of a text that can be read, in pixels.
inline constexpr double kReadableText = 10;

/// A picture of what is known, a value that does not change. It has marks, each of which has a place and a
/// name: what the pointer or the keys can reach.
class Picture {
 public:
  virtual ~Picture() = default;

  virtual QString title() const = 0;
  /// The facts that the picture shows, in sentences.
  virtual QString description() const = 0;
  /// The size in which it is drawn, to be zoomed in; an empty one for a chart, which fills any size.
  virtual QSizeF ownSize() const { return {}; }
  /// Draws it into `size` from the origin on. `zoom` is how many pixels a unit has on the screen.
  virtual void paint(QPainter& painter, QSizeF size, const Inks& inks, double zoom) const = 0;

  virtual int marks() const = 0;
  virtual QPointF placeOf(int mark, QSizeF size) const = 0;
  /// The mark that the pointer means; -1 if it is near none. `reach` is how far it can be off.
  virtual int nearest(QPointF point, QSizeF size, double reach) const;
  /// Where the keys begin.
  virtual int firstMark() const { return 0; }
  virtual QString nameOf(int mark) const = 0;
  /// The digits of the number that the mark stands for; empty if it stands for none.
  virtual QString numberOf(int mark) const = 0;
};

}  // namespace zelvion
