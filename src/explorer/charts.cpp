#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <utility>

#include "explorer/french.h"
#include "explorer/pictures.h"

namespace zelvion {
namespace {

/// The part of a chart in which values are drawn, and what stands around it.
class ChartArea {
 public:
  explicit ChartArea(QSizeF size) : area_(QRectF({}, size).adjusted(82, 30, -16, -44)) {}

  const QRectF& rect() const { return area_; }
  double x(double part) const { return area_.left() + part * area_.width(); }
  double y(double part) const { return area_.top() + part * area_.height(); }
  QPointF at(const pages::Place& place) const { return {x(place.x), y(place.y)}; }

  void drawAxes(QPainter& painter, const Inks& inks, const std::vector<pages::Tick>& across,
                const std::vector<pages::Tick>& values, const QString& title) const {
    for (const pages::Tick& tick : values) {
      painter.setPen(inks.line);
      painter.drawLine(QPointF(area_.left(), y(tick.at)), QPointF(area_.right(), y(tick.at)));
      painter.setPen(inks.text);
      painter.drawText(QRectF(0, y(tick.at) - 10, area_.left() - 6, 20), Qt::AlignRight | Qt::AlignVCenter,
                       QString::fromStdString(tick.text));
    }
    double free = -1e9;  // where a text does not touch the one before
    for (const pages::Tick& tick : across) {
      const QString text = QString::fromStdString(tick.text);
      const double half = QFontMetricsF(painter.font()).horizontalAdvance(text) / 2;
      if (x(tick.at) - half < free) continue;
      painter.drawText(QRectF(x(tick.at) - half - 2, area_.bottom() + 4, 2 * half + 4, 18), Qt::AlignCenter,
                       text);
      free = x(tick.at) + half + 8;
    }
    painter.drawText(QRectF(area_.left(), area_.bottom() + 22, area_.width(), 20), Qt::AlignCenter, title);
  }

 private:
  QRectF area_;
};

class PathPicture : public Picture {
 public:
  PathPicture(std::shared_ptr<const Path> path, bool logarithmic)
      : path_(std::move(path)),
        logarithmic_(logarithmic),
        chart_(logarithmic ? path_->logarithmic : path_->linear) {}

  QString title() const override {
    return french("Le chemin de %1, k = %2").arg(shownNumber(path_->p, false)).arg(path_->k);
  }
  QString description() const override {
    return path_->sentence(false) +
           french(
               ". La valeur de chaque itéré au-dessus de son pas, %1 ; trait plein et ronds avant le "
               "cycle, tirets et carrés sur le cycle.")
               .arg(unit());
  }

  void paint(QPainter& painter, QSizeF size, const Inks& inks, double) const override {
    const ChartArea area(size);
    area.drawAxes(painter, inks, chart_.steps, chart_.values, french("pas (valeurs %1)").arg(unit()));
    const auto& values = chart_.path;
    const std::size_t tail = std::min(path_->tail, values.size() - 1);
    drawLegend(painter, inks, size);
    // As many marks as can be told apart.
    const bool apart = static_cast<double>(values.size()) * 6 < area.rect().width();
    drawRun(painter, area, {inks.ring, 1.5}, 0, path_->order == 0 ? values.size() - 1 : tail, apart, false);
    if (path_->order == 0) return;
    QPen dashes(inks.fixed, 2, Qt::CustomDashLine);
    dashes.setDashPattern({3, 2});
    drawRun(painter, area, dashes, tail, values.size() - 1, apart, true);
    painter.setPen(QPen(inks.grey, 1, Qt::DotLine));
    const double start = area.at(values[tail].at).x();
    painter.drawLine(QPointF(start, area.rect().top()), QPointF(start, area.rect().bottom()));
  }

  int marks() const override { return static_cast<int>(chart_.path.size()); }
  QPointF placeOf(int mark, QSizeF size) const override { return ChartArea(size).at(valueOf(mark).at); }
  int nearest(QPointF point, QSizeF size, double) const override {
    const QRectF area = ChartArea(size).rect();
    if (!area.adjusted(-8, -20, 8, 20).contains(point)) return -1;
    const double part = (point.x() - area.left()) / area.width();
    return std::clamp(static_cast<int>(std::lround(part * (marks() - 1))), 0, marks() - 1);
  }
  QString nameOf(int mark) const override {
    QString name =
        french("Pas %1 : %2")
            .arg(grouped(static_cast<std::size_t>(mark)), shownNumber(numberOf(mark).toStdString(), false));
    if (valueOf(mark).isOnCycle) name += ", sur le cycle";
    if (valueOf(mark).isBeyond) name += french(", au-delà de l'axe");
    return name;
  }
  QString numberOf(int mark) const override {
    return QString::fromStdString(path_->iterates[static_cast<std::size_t>(mark)].text());
  }

 private:
  const pages::PathChart::Value& valueOf(int mark) const {
    return chart_.path[static_cast<std::size_t>(mark)];
  }
  QString unit() const {
    return logarithmic_ ? QString("en échelle logarithmique")
                        : "en parts de " + QString::fromStdString(pages::powerOfTenText(path_->digits));
  }

  void drawLegend(QPainter& painter, const Inks& inks, QSizeF size) const {
    painter.setPen(inks.text);
    painter.drawText(QRectF(8, 4, size.width() - 8, 20), Qt::AlignLeft | Qt::AlignVCenter,
                     french("— ● vers le cycle    - - ■ sur le cycle"));
  }

  /// The values from one to another, as a line with marks. Of more than there are pixels, each column of
  /// pixels has a line from the least to the greatest.
  void drawRun(QPainter& painter, const ChartArea& area, const QPen& pen, std::size_t from, std::size_t to,
               bool withMarks, bool squares) const {
    QPolygonF line;
    const bool dense = static_cast<double>(chart_.path.size()) > 2 * area.rect().width();
    for (std::size_t i = from; i <= to;) {
      const QPointF point = area.at(chart_.path[i].at);
      if (!dense) {
        line += point;
        ++i;
        continue;
      }
      double low = point.y(), high = point.y();
      for (; i <= to; ++i) {
        const QPointF next = area.at(chart_.path[i].at);
        if (next.x() >= point.x() + 1) break;
        low = std::min(low, next.y());
        high = std::max(high, next.y());
      }
      line += {point.x(), low};
      line += {point.x(), high};
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(dense ? QPen(pen.color(), 1) : pen);
    painter.drawPolyline(line);
    if (!withMarks) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(pen.color());
    for (const QPointF& point : line) {
      if (squares) {
        painter.drawRect(QRectF(point - QPointF(4, 4), QSizeF(8, 8)));
      } else {
        painter.drawEllipse(point, 3.5, 3.5);
      }
    }
  }

  std::shared_ptr<const Path> path_;
  bool logarithmic_;
  const pages::PathChart& chart_;
};

class TailsPicture : public Picture {
 public:
  explicit TailsPicture(std::shared_ptr<const Power> power) : power_(std::move(power)) {}

  QString title() const override { return french("La longueur des chemins, k = %1").arg(power_->facts.k); }
  QString description() const override {
    const auto most = std::ranges::max_element(power_->tails) - power_->tails.begin();
    return french(
               "Pour chaque nombre de pas, de 0 à %1, la part des nombres qui en font autant avant leur "
               "cycle. Le plus souvent : %2.")
        .arg(grouped(power_->tails.size() - 1), nameOf(static_cast<int>(most)));
  }

  void paint(QPainter& painter, QSizeF size, const Inks& inks, double) const override {
    const ChartArea area(size);
    const pages::BarChart& chart = power_->tailsChart;
    area.drawAxes(painter, inks, chart.numbers, chart.values, "pas avant le cycle");
    QPolygonF shape;
    shape += area.rect().bottomLeft();
    for (const pages::BarChart::Bar& bar : chart.bars) {
      shape += area.at({bar.left, bar.top});
      shape += area.at({bar.right, bar.top});
    }
    shape += area.rect().bottomRight();
    painter.setPen(Qt::NoPen);
    painter.setBrush(inks.ring);
    painter.drawPolygon(shape);
  }

  int marks() const override { return static_cast<int>(power_->tails.size()); }
  QPointF placeOf(int mark, QSizeF size) const override {
    const pages::BarChart::Bar& bar = power_->tailsChart.bars[static_cast<std::size_t>(mark)];
    return ChartArea(size).at({(bar.left + bar.right) / 2, bar.top});
  }
  int nearest(QPointF point, QSizeF size, double) const override {
    const QRectF area = ChartArea(size).rect();
    if (!area.contains(point)) return -1;
    return std::min(static_cast<int>((point.x() - area.left()) / area.width() * marks()), marks() - 1);
  }
  QString nameOf(int mark) const override {
    const auto tail = static_cast<std::size_t>(mark);
    const double share = pages::shareOf(power_->tails[tail], power_->facts.basins.digits);
    return french("%1 pas : %2 nombres, soit %3 ; le plus petit est %4")
        .arg(grouped(tail), grouped(power_->tails[tail]), QString::fromStdString(pages::percentText(share)),
             numberOf(mark));
  }
  QString numberOf(int mark) const override {
    return QString::fromStdString(power_->leastByTail[static_cast<std::size_t>(mark)].text());
  }

 private:
  std::shared_ptr<const Power> power_;
};

}  // namespace

std::shared_ptr<const Picture> pathPicture(std::shared_ptr<const Path> path, bool logarithmic) {
  return std::make_shared<PathPicture>(std::move(path), logarithmic);
}
std::shared_ptr<const Picture> tailsPicture(std::shared_ptr<const Power> power) {
  return std::make_shared<TailsPicture>(std::move(power));
}

QString cycleName(const atlas::Cycle& cycle) {
  const QString least = shownNumber(cycle.least().text(), false);
  if (cycle.isFixedPoint()) return "point fixe " + least;
  return french("cycle d'ordre %1 qui passe par %2").arg(grouped(cycle.order()), least);
}

}  // namespace zelvion
