#include <QFontMetricsF>
#include <QLineF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>
#include <utility>

#include "explorer/french.h"
#include "explorer/pictures.h"

namespace zelvion {
namespace {

/// The ring of one cycle, as large as the picture, on a disc as large as its share.
class RingPicture : public Picture {
 public:
  RingPicture(std::shared_ptr<const Power> power, std::size_t cycle)
      : power_(std::move(power)),
        cycle_(power_->facts.cycles[cycle]),
        share_(power_->share(cycle)),
        ring_(pages::ringLayout(kSize, cycle_.order(), cycle_.order(), share_, power_->largestShare)) {}

  QString title() const override { return cycleName(cycle_); }
  QString description() const override {
    const QString ring =
        cycle_.isFixedPoint()
            ? QString("Le point fixe")
            : french(
                  "Les %1 points du cycle, à partir du plus petit, en haut, dans le sens des "
                  "aiguilles d'une montre")
                  .arg(grouped(cycle_.order()));
    if (!power_->isCounted()) return ring + ".";
    return ring + french(" ; la surface du disque est sa part : %1 des nombres.")
                      .arg(QString::fromStdString(pages::percentText(share_)));
  }

  void paint(QPainter& painter, QSizeF size, const Inks& inks, double) const override {
    const double side = std::min(size.width(), size.height()) / kSize;  // of a unit of the layout
    const QPointF centre = at(ring_.centre, size);
    painter.setPen(inks.tree);
    painter.setBrush(inks.area);
    painter.drawEllipse(centre, ring_.disc * side, ring_.disc * side);
    painter.setPen(QPen(inks.ring, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(centre, ring_.ring * side, ring_.ring * side);
    painter.setPen(Qt::NoPen);
    const bool fixed = cycle_.isFixedPoint();
    painter.setBrush(fixed ? inks.fixed : inks.ring);
    const auto order = static_cast<double>(cycle_.order());
    if (!fixed && 2 * std::numbers::pi * ring_.ring * side / order < 4.5) return;
    for (int i = 0; i < marks(); ++i) painter.drawEllipse(placeOf(i, size), fixed ? 5 : 3, fixed ? 5 : 3);
    drawNumbers(painter, size, inks);
  }

  int marks() const override { return static_cast<int>(cycle_.order()); }
  QPointF placeOf(int mark, QSizeF size) const override {
    const double angle = 2 * std::numbers::pi * mark / static_cast<double>(cycle_.order());
    return at({ring_.centre.x + ring_.ring * std::sin(angle), ring_.centre.y - ring_.ring * std::cos(angle)},
              size);
  }
  QString nameOf(int mark) const override {
    return french("Point %1 sur %2 : %3")
        .arg(grouped(static_cast<std::size_t>(mark) + 1), grouped(cycle_.order()), numberOf(mark));
  }
  QString numberOf(int mark) const override {
    return QString::fromStdString(cycle_.points()[static_cast<std::size_t>(mark)].text());
  }

 private:
  static constexpr double kSize = 200;  // of the layout

  // The points' numbers, where there is room for all of them inside the ring.
  void drawNumbers(QPainter& painter, QSizeF size, const Inks& inks) const {
    constexpr double kHeight = 12;
    const QPointF centre = at(ring_.centre, size);
    const QFontMetricsF metrics(painter.font());
    const double radius = QLineF(centre, placeOf(0, size)).length();
    const double widest = metrics.horizontalAdvance(QString::fromStdString(cycle_.greatest().text()));
    if (cycle_.isFixedPoint() || widest > 0.6 * radius || marks() * 2 * kHeight > 4 * radius) return;
    for (int i = 0; i < marks(); ++i) {
      const QPointF out = (placeOf(i, size) - centre) / radius;
      const QPointF room(widest / 2 + 8, kHeight);
      drawHaloed(painter, inks, placeOf(i, size) - QPointF(out.x() * room.x(), out.y() * room.y()),
                 numberOf(i), kHeight);
    }
  }

  QPointF at(const pages::Place& place, QSizeF size) const {
    const double side = std::min(size.width(), size.height());
    return {(size.width() - side) / 2 + place.x / kSize * side,
            (size.height() - side) / 2 + place.y / kSize * side};
  }

  std::shared_ptr<const Power> power_;
  const atlas::Cycle& cycle_;
  double share_;
  pages::RingLayout ring_;
};

/// The rings of all cycles in rows, the largest first.
class RingsPicture : public Picture {
 public:
  RingsPicture(std::shared_ptr<const Power> power, const std::shared_ptr<const Path>& path)
      : power_(std::move(power)), places_(power_->facts.cycles.size()) {
    std::vector<std::size_t> order(places_.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(order, std::greater(), [&](std::size_t cycle) { return sizeOf(cycle); });
    constexpr double kGap = 18;
    double x = kGap, y = kGap, row = 0;
    for (const std::size_t cycle : order) {
      const double side = 2 * radius(cycle);
      if (x + side + kGap > kWidth) {
        x = kGap;
        y += row + kGap;
        row = 0;
      }
      row = std::max(row, side);
      places_[cycle] = {x + side / 2, y + row / 2};
      x += side + kGap;
      height_ = y + row + kGap;
    }
    if (path && path->order > 0) chosen_ = power_->placeOf(path->least);
  }

  QString title() const override { return french("Les cycles de la puissance %1").arg(power_->facts.k); }
  QString description() const override {
    const QString size =
        power_->isCounted()
            ? "La surface de chaque disque est la part des nombres qui y finissent"
            : "La surface de chaque disque est le nombre de ses points, car les parts ne sont pas comptées";
    return size + french(
                      ", de la plus grande à la plus petite : %1 cycles. Pour cette puissance, la carte des "
                      "multiensembles aurait trop de points.")
                      .arg(grouped(places_.size()));
  }
  QSizeF ownSize() const override { return {kWidth, std::max(height_, 0.5 * kWidth)}; }

  void paint(QPainter& painter, QSizeF, const Inks& inks, double zoom) const override {
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const bool fixed = power_->facts.cycles[i].isFixedPoint();
      const double size = radius(i);
      painter.setPen(QPen(fixed ? inks.fixed : inks.ring, std::min(2.0, size / 3)));
      painter.setBrush(inks.area);
      painter.drawEllipse(places_[i], size, size);
      if (i == chosen_) {
        painter.setPen(QPen(inks.fixed, 2, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(places_[i], size + 5, size + 5);
      }
      painter.setPen(Qt::NoPen);
      painter.setBrush(inks.fixed);
      if (fixed) painter.drawEllipse(places_[i], std::min(3.0, size / 2), std::min(3.0, size / 2));
    }
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const std::string text = power_->facts.cycles[i].least().text();
      const double height = std::min(2.6 * radius(i) / static_cast<double>(text.size()), 16.0);
      if (height * zoom < 0.7 * kReadableText) continue;
      drawHaloed(painter, inks, places_[i] + QPointF(0, radius(i) > 12 ? 9 : 0), QString::fromStdString(text),
                 height);
    }
  }

  int marks() const override { return static_cast<int>(places_.size()); }
  QPointF placeOf(int mark, QSizeF) const override { return places_[static_cast<std::size_t>(mark)]; }
  int firstMark() const override { return chosen_ < places_.size() ? static_cast<int>(chosen_) : 0; }
  int nearest(QPointF point, QSizeF size, double reach) const override {
    for (std::size_t i = 0; i < places_.size(); ++i) {
      if (std::hypot(point.x() - places_[i].x(), point.y() - places_[i].y()) <= radius(i))
        return static_cast<int>(i);
    }
    return Picture::nearest(point, size, reach);
  }
  QString nameOf(int mark) const override {
    const auto cycle = static_cast<std::size_t>(mark);
    QString name = cycleName(power_->facts.cycles[cycle]);
    name.front() = name.front().toUpper();
    if (!power_->isCounted()) return name;
    return name +
           french(" : %1 des nombres").arg(QString::fromStdString(pages::percentText(power_->share(cycle))));
  }
  QString numberOf(int mark) const override {
    return QString::fromStdString(power_->facts.cycles[static_cast<std::size_t>(mark)].least().text());
  }

 private:
  static constexpr double kWidth = 1000;

  /// From 0 to 1, as an area.
  double sizeOf(std::size_t cycle) const {
    if (power_->isCounted()) return power_->share(cycle) / power_->largestShare;
    return static_cast<double>(power_->facts.cycles[cycle].order()) /
           static_cast<double>(power_->longestOrder);
  }
  double radius(std::size_t cycle) const { return std::max(4.0, 130 * std::sqrt(sizeOf(cycle))); }

  std::shared_ptr<const Power> power_;
  std::vector<QPointF> places_;
  double height_ = 0;
  std::size_t chosen_ = static_cast<std::size_t>(-1);  ///< where the path ends
};

}  // namespace

std::shared_ptr<const Picture> ringPicture(std::shared_ptr<const Power> power, std::size_t cycle) {
  return std::make_shared<RingPicture>(std::move(power), cycle);
}

std::shared_ptr<const Picture> ringsPicture(std::shared_ptr<const Power> power,
                                            const std::shared_ptr<const Path>& path) {
  return std::make_shared<RingsPicture>(std::move(power), path);
}

}  // namespace zelvion
