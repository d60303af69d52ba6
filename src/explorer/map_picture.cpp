#include <QPainterPath>
#include <algorithm>
#include <functional>
#include <utility>

#include "explorer/french.h"
#include "explorer/pictures.h"

namespace zelvion {
namespace {

QPointF at(const pages::Place& place) { return {place.x, place.y}; }

class MapPicture : public Picture {
 public:
  MapPicture(std::shared_ptr<const Power> power, std::shared_ptr<const Path> path)
      : power_(std::move(power)), path_(std::move(path)), map_(*power_->map), points_(map_.nodes.size()) {
    for (const pages::MapTree& tree : map_.trees) {
      const auto& points = power_->facts.cycles[tree.cycle].points();
      for (std::size_t i = 0; i < tree.ring.size(); ++i) points_[tree.ring[i]] = &points[i];
    }
    for (std::size_t i = 0; i < map_.nodes.size(); ++i) {
      if (map_.spots[i].steps > 0) addBranch(branches_, i);
    }
    if (!path_) return;
    const auto isOnMap = [&](const Decimal& number) { return number.digits() <= digits(); };
    const auto first = std::ranges::find_if(path_->iterates, isOnMap);
    if (first == path_->iterates.end()) return;
    std::string wanted = first->padded(digits());
    std::ranges::sort(wanted, std::greater());
    start_ = std::ranges::lower_bound(map_.nodes, wanted, {}, &atlas::MapNode::digits) - map_.nodes.begin();
  }

  QString title() const override { return french("Carte de la puissance %1").arg(power_->facts.k); }
  QString description() const override {
    QString text = french(
                       "Les %1 multiensembles de %2 chiffres et où chacun mène : autour de chacun des %3 "
                       "cycles, l'arbre de ce qui y mène, un cercle par pas.")
                       .arg(grouped(map_.nodes.size()))
                       .arg(digits())
                       .arg(power_->facts.cycles.size());
    if (path_) text += " " + path_->sentence(false) + ".";
    return text;
  }
  QSizeF ownSize() const override { return {map_.width, map_.height}; }

  void paint(QPainter& painter, QSizeF, const Inks& inks, double zoom) const override {
    painter.setBrush(Qt::NoBrush);
    for (const pages::MapTree& tree : map_.trees) {
      painter.setPen(QPen(inks.ring, 2));
      if (tree.ringRadius > 0) painter.drawEllipse(at(tree.ringCentre), tree.ringRadius, tree.ringRadius);
    }
    painter.setPen(QPen(inks.tree, 0.6));
    for (const QPainterPath& branch : branches_) painter.drawPath(branch);
    painter.setPen(Qt::NoPen);
    for (std::size_t i = 0; i < map_.nodes.size(); ++i) {
      const bool isRing = map_.spots[i].steps == 0;
      painter.setBrush(!isRing ? inks.tree : isFixed(i) ? inks.fixed : inks.ring);
      painter.drawEllipse(at(map_.spots[i].at), isRing ? 3.5 : 1, isRing ? 3.5 : 1);
    }
    painter.setBrush(inks.ring);
    for (const pages::MapTree& tree : map_.trees) {
      for (const pages::Arrow& arrow : tree.arrows) drawArrow(painter, arrow);
    }
    if (start_ >= 0) drawPath(painter, inks);
    for (const pages::MapTree& tree : map_.trees) {
      for (const pages::Label& label : tree.points) drawLabel(painter, inks, zoom, label);
      if (!tree.share.text.empty()) drawLabel(painter, inks, zoom, tree.share);
    }
    if (zoom > 2.5) nameNodes(painter, inks, zoom);
  }

  int marks() const override { return static_cast<int>(map_.nodes.size()); }
  QPointF placeOf(int mark, QSizeF) const override {
    return at(map_.spots[static_cast<std::size_t>(mark)].at);
  }
  int firstMark() const override { return start_ < 0 ? 0 : static_cast<int>(start_); }
  QString nameOf(int mark) const override {
    const auto node = static_cast<std::size_t>(mark);
    const std::string& text = map_.nodes[node].digits;
    const QString cycle = cycleName(power_->facts.cycles[map_.trees[map_.spots[node].tree].cycle]);
    const std::size_t count = arrangements(text);
    QString name = french("Les chiffres %1 : ").arg(QString::fromStdString(text));
    if (count == 1) {
      name += numberOf(mark);
    } else {
      name += french("%1 nombres, de %2 à %3")
                  .arg(grouped(count), grouped(leastOf(text)), grouped(Decimal::parse(text)));
    }
    if (points_[node] == nullptr) return name + french(", à %1 pas du ").arg(stepsFrom(node)) + cycle;
    const QString there = isFixed(node) ? "le point fixe" : "sur le " + cycle;
    if (count == 1) return name + ", " + there;
    return name +
           french(", dont %1, %2 ; les autres à %3 pas").arg(numberOf(mark), there).arg(stepsFrom(node));
  }
  /// The point of the cycle, or the least number.
  QString numberOf(int mark) const override {
    const auto node = static_cast<std::size_t>(mark);
    if (points_[node] != nullptr) return QString::fromStdString(points_[node]->text());
    return QString::fromStdString(leastOf(map_.nodes[node].digits).text());
  }

 private:
  std::size_t digits() const { return map_.nodes[0].digits.size(); }
  bool isFixed(std::size_t node) const { return map_.trees[map_.spots[node].tree].ring.size() == 1; }

  void addBranch(std::vector<QPainterPath>& branches, std::size_t node) const {
    const pages::MapSpot& spot = map_.spots[node];
    branches.emplace_back(at(spot.at))
        .cubicTo(at(spot.bend), at(spot.nextBend), at(map_.spots[map_.nodes[node].next].at));
  }

  /// The least number with these digits, which descend.
  static Decimal leastOf(const std::string& digits) {
    return Decimal::parse(std::string(digits.rbegin(), digits.rend()));
  }
  /// How many numbers have these digits.
  static std::size_t arrangements(const std::string& digits) {
    std::size_t count = 1;
    std::size_t run = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
      run = i > 0 && digits[i] == digits[i - 1] ? run + 1 : 1;
      count = count * (i + 1) / run;
    }
    return count;
  }

  /// How many steps the numbers of a multiset take that are not on the cycle.
  std::size_t stepsFrom(std::size_t node) const {
    for (std::size_t steps = 1;; ++steps) {
      const atlas::MapNode& here = map_.nodes[node];
      if (const Decimal* point = points_[here.next]) return *point == here.image ? steps : steps + 1;
      node = here.next;
    }
  }

  static void drawArrow(QPainter& painter, const pages::Arrow& arrow) {
    painter.save();
    painter.translate(at(arrow.at));
    painter.rotate(arrow.turn);
    painter.drawPolygon(QPolygonF({{4.5, 0}, {-4.5, -4}, {-4.5, 4}}));
    painter.restore();
  }

  void drawPath(QPainter& painter, const Inks& inks) const {
    std::vector<QPainterPath> way;
    auto node = static_cast<std::size_t>(start_);
    painter.setPen(QPen(inks.text, 1.5));
    painter.setBrush(inks.fixed);
    for (; map_.spots[node].steps > 0; node = map_.nodes[node].next) addBranch(way, node);
    const pages::MapTree& tree = map_.trees[map_.spots[node].tree];
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(inks.fixed, 3));
    for (const QPainterPath& branch : way) painter.drawPath(branch);
    if (tree.ringRadius > 0) {
      painter.setPen(QPen(inks.fixed, 3, Qt::DashLine));
      painter.drawEllipse(at(tree.ringCentre), tree.ringRadius, tree.ringRadius);
    }
    painter.setPen(QPen(inks.text, 1));
    painter.setBrush(inks.fixed);
    for (const QPainterPath& branch : way) painter.drawEllipse(branch.pointAtPercent(0), 3.5, 3.5);
    painter.drawRect(QRectF(at(map_.spots[node].at) - QPointF(4.5, 4.5), QSizeF(9, 9)));
  }

  static void drawLabel(QPainter& painter, const Inks& inks, double zoom, const pages::Label& label) {
    if (label.height * zoom < kReadableText * 0.7) return;
    drawHaloed(painter, inks, at(label.middle), QString::fromStdString(label.text), label.height * 0.75,
               label.turn);
  }

  /// Names the multisets in sight as far as no name lies on another one.
  void nameNodes(QPainter& painter, const Inks& inks, double zoom) const {
    const QRectF sight = painter.transform().inverted().mapRect(
        QRectF(0, 0, painter.device()->width(), painter.device()->height()));
    const QSizeF room(kReadableText * 0.62 * static_cast<double>(digits()) / zoom,
                      1.2 * kReadableText / zoom);
    std::vector<QRectF> taken;
    for (std::size_t i = 0; i < map_.nodes.size() && taken.size() < 250; ++i) {
      const QPointF place = at(map_.spots[i].at);
      if (map_.spots[i].steps == 0 || !sight.contains(place)) continue;
      const QRectF box(place + QPointF(-room.width() / 2, 3 / zoom + 1), room);
      if (std::ranges::any_of(taken, [&](const QRectF& other) { return other.intersects(box); })) continue;
      taken.push_back(box);
      drawHaloed(painter, inks, box.center(), QString::fromStdString(map_.nodes[i].digits),
                 0.72 * room.height());
    }
  }

  std::shared_ptr<const Power> power_;
  std::shared_ptr<const Path> path_;
  const pages::MapLayout& map_;
  std::vector<const Decimal*> points_;  ///< of the cycle with the digits of a node; null off the rings
  std::vector<QPainterPath> branches_;
  std::ptrdiff_t start_ = -1;  ///< the node where the path enters the map
};

}  // namespace

std::shared_ptr<const Picture> mapPicture(std::shared_ptr<const Power> power,
                                          std::shared_ptr<const Path> path) {
  if (!power->map) return ringsPicture(std::move(power), path);
  return std::make_shared<MapPicture>(std::move(power), std::move(path));
}

}  // namespace zelvion
