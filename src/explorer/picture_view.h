#pragma once

#include <QPixmap>
#include <QWidget>
#include <memory>

#include "explorer/picture.h"

namespace zelvion {

/// Shows a picture and names what the pointer or the keys are at. One that has a size of its own can be
/// zoomed with the wheel, a pinch, + and -, and moved by dragging and with the arrow keys.
class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  /// Null for none; `text` is then shown in its place. Where it has the size of the one before, the zoom
  /// stays.
  void setPicture(std::shared_ptr<const Picture> picture, const QString& text);
  const std::shared_ptr<const Picture>& picture() const { return picture_; }

  QSize minimumSizeHint() const override { return {160, 100}; }

 signals:
  /// What is under the pointer, in words; nothing if nothing is.
  void named(const QString& name);
  void chosen(const QString& digits);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool isZoomed() const { return picture_ && !picture_->ownSize().isEmpty(); }
  QSizeF extent() const;
  double scale() const;
  QPointF origin() const;
  QPointF inPicture(QPointF point) const { return (point - origin()) / scale(); }
  void zoomAt(QPointF point, double factor);
  void moveBy(QPointF way);
  void name(int mark);
  void redraw();

  std::shared_ptr<const Picture> picture_;
  QString text_;
  QPixmap drawn_;    ///< the picture as it stands, without the mark; null if it is to be drawn anew
  double zoom_ = 1;  ///< of one that just fits
  QPointF middle_;   ///< of what is seen, in the picture
  int mark_ = -1;    ///< the one that is named
  QPointF pressed_;  ///< where the mouse was pressed
  QPointF dragged_;  ///< where it was last
  bool isDragged_ = false;
};

}  // namespace zelvion
