#include "explorer/picture_view.h"

#include <QAccessible>
#include <QApplication>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "widgets/long_text.h"

namespace zelvion {
namespace {

constexpr double kZoomStep = 1.25;
constexpr double kGreatestZoom = 60;
constexpr double kReach = 14;  // pixels from the pointer to the nearest mark

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  grabGesture(Qt::PinchGesture);
}

void PictureView::setPicture(std::shared_ptr<const Picture> picture, const QString& text) {
  const QSizeF before = isZoomed() ? picture_->ownSize() : QSizeF();
  picture_ = std::move(picture);
  text_ = text;
  if (!isZoomed() || picture_->ownSize() != before) {
    zoom_ = 1;
    if (isZoomed()) middle_ = {picture_->ownSize().width() / 2, picture_->ownSize().height() / 2};
  }
  setAccessibleDescription(picture_ ? picture_->title() + ". " + picture_->description() : text);
  name(-1);
  redraw();
}

QSizeF PictureView::extent() const { return isZoomed() ? picture_->ownSize() : QSizeF(size()); }

double PictureView::scale() const {
  if (!isZoomed()) return 1;
  return zoom_ * std::min(width() / extent().width(), height() / extent().height());
}

QPointF PictureView::origin() const {
  return isZoomed() ? QPointF(width() / 2.0, height() / 2.0) - middle_ * scale() : QPointF();
}

void PictureView::redraw() {
  drawn_ = {};
  update();
}

/// Zooms around `point`, which stays where it is.
void PictureView::zoomAt(QPointF point, double factor) {
  if (!isZoomed()) return;
  const QPointF kept = inPicture(point);
  zoom_ = std::clamp(zoom_ * factor, 1.0, kGreatestZoom);
  middle_ = kept - (point - QPointF(width() / 2.0, height() / 2.0)) / scale();
  moveBy({});
}

/// Moves the picture by so many pixels, as long as some of it stays in the middle.
void PictureView::moveBy(QPointF way) {
  if (!isZoomed()) return;
  middle_ -= way / scale();
  middle_ = {std::clamp(middle_.x(), 0.0, extent().width()), std::clamp(middle_.y(), 0.0, extent().height())};
  redraw();
}

void PictureView::name(int mark) {
  if (mark == mark_) return;
  mark_ = mark;
  update();
  emit named(mark < 0 ? QString() : picture_->nameOf(mark));
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Inks inks = Inks::of(palette());
  if (drawn_.isNull()) {
    drawn_ = QPixmap(size() * devicePixelRatioF());
    drawn_.setDevicePixelRatio(devicePixelRatioF());
    drawn_.fill(inks.ground);
    QPainter artist(&drawn_);
    artist.setRenderHint(QPainter::Antialiasing);
    artist.setFont(font());
    artist.setPen(inks.grey);
    if (picture_) {
      artist.translate(origin());
      artist.scale(scale(), scale());
      picture_->paint(artist, extent(), inks, scale());
    } else {
      artist.drawText(rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap, text_);
    }
  }
  painter.drawPixmap(0, 0, drawn_);
  painter.setRenderHint(QPainter::Antialiasing);
  if (mark_ >= 0) {
    painter.setPen(QPen(inks.text, 2));
    painter.drawEllipse(origin() + picture_->placeOf(mark_, extent()) * scale(), 6, 6);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(hasFocus() ? palette().color(QPalette::Highlight) : inks.line, hasFocus() ? 4 : 1));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PictureView::resizeEvent(QResizeEvent*) { redraw(); }

void PictureView::changeEvent(QEvent* event) {
  redraw();
  QWidget::changeEvent(event);
}

bool PictureView::event(QEvent* event) {
  if (event->type() == QEvent::Gesture) {
    if (const auto* pinch =
            static_cast<QPinchGesture*>(static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture))) {
      zoomAt(mapFromGlobal(pinch->centerPoint()), pinch->scaleFactor());
      return true;
    }
  }
  if (event->type() == QEvent::NativeGesture) {
    const auto* gesture = static_cast<QNativeGestureEvent*>(event);
    if (gesture->gestureType() == Qt::ZoomNativeGesture) zoomAt(gesture->position(), 1 + gesture->value());
  }
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  return QWidget::event(event);
}

void PictureView::wheelEvent(QWheelEvent* event) {
  if (!isZoomed()) return event->ignore();
  zoomAt(event->position(),
         std::pow(kZoomStep, event->angleDelta().y() / double{QWheelEvent::DefaultDeltasPerStep}));
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  pressed_ = dragged_ = event->position();
  isDragged_ = false;
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) {
    const QPointF way = event->position() - pressed_;
    isDragged_ = isDragged_ || way.manhattanLength() >= QApplication::startDragDistance();
    if (isDragged_) moveBy(event->position() - std::exchange(dragged_, event->position()));
    return;
  }
  if (picture_) name(picture_->nearest(inPicture(event->position()), extent(), kReach / scale()));
}

void PictureView::mouseReleaseEvent(QMouseEvent* event) {
  if (!picture_ || isDragged_ || event->button() != Qt::LeftButton) return;
  const int mark = picture_->nearest(inPicture(event->position()), extent(), kReach / scale());
  name(mark);
  if (mark >= 0 && !picture_->numberOf(mark).isEmpty()) emit chosen(picture_->numberOf(mark));
}

void PictureView::leaveEvent(QEvent*) { name(-1); }

void PictureView::keyPressEvent(QKeyEvent* event) {
  if (LongText::zooms(*event)) return;
  if (!picture_ || picture_->marks() == 0) return QWidget::keyPressEvent(event);
  const QPointF centre = rect().center();
  const int last = picture_->marks() - 1;
  const auto go = [&](int step) {
    name(mark_ < 0 ? picture_->firstMark() : std::clamp(mark_ + step, 0, last));
    // What is named is in sight.
    const QPointF place = origin() + picture_->placeOf(mark_, extent()) * scale();
    if (isZoomed() && !rect().contains(place.toPoint())) moveBy(centre - place);
    QAccessibleEvent told(this, QAccessible::DescriptionChanged);
    setAccessibleDescription(picture_->nameOf(mark_) + ". " + picture_->title() + ". " +
                             picture_->description());
    QAccessible::updateAccessibility(&told);
  };
  const bool moves = isZoomed();
  constexpr double kWay = 60;
  switch (event->key()) {
    case Qt::Key_Left:
      return moves ? moveBy({kWay, 0}) : go(-1);
    case Qt::Key_Right:
      return moves ? moveBy({-kWay, 0}) : go(1);
    case Qt::Key_Up:
      return moves ? moveBy({0, kWay}) : go(-1);
    case Qt::Key_Down:
      return moves ? moveBy({0, -kWay}) : go(1);
    case Qt::Key_PageUp:
      return go(moves ? -1 : -std::max(1, last / 10));
    case Qt::Key_PageDown:
      return go(moves ? 1 : std::max(1, last / 10));
    case Qt::Key_Home:
      return go(moves ? picture_->firstMark() - std::max(mark_, 0) : -last);
    case Qt::Key_End:
      return go(last);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return zoomAt(centre, kZoomStep);
    case Qt::Key_Minus:
      return zoomAt(centre, 1 / kZoomStep);
    case Qt::Key_0:
      return zoomAt(centre, 1e-6);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (mark_ >= 0 && !picture_->numberOf(mark_).isEmpty()) emit chosen(picture_->numberOf(mark_));
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace zelvion
