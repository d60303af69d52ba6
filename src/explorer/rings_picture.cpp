#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

#include "explorer/french.h"
#include "explorer/pictures.h"

namespace zelvion {
namespace {

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

std::shared_ptr<const Picture> ringsPicture(std::shared_ptr<const Power> power,
                                            const std::shared_ptr<const Path>& path) {
  return std::make_shared<RingsPicture>(std::move(power), path);
}

}  // namespace zelvion
