#include "explorer/path.h"

#include "engine/atlas/range.h"
#include "engine/cycles/known_cycles.h"
#include "explorer/french.h"
#include "explorer/picture.h"
#include "pages/typography.h"

namespace zelvion {

std::shared_ptr<const Path> pathOf(std::int32_t k, const std::string& p, Progress& progress) {
  Path path;
  path.k = k;
  path.p = p;
  path.iterates = {Decimal::parse(p)};
  path.digits = atlas::rangeDigits(k);
  Transformation transformation(k);
  KnownCycles cycles(transformation);
  const auto fall = cycles.find(p, kMostSteps, progress.stop);
  std::size_t steps = 1'000;  // enough to see where it goes
  if (fall) {
    path.tail = static_cast<std::size_t>(fall->tail);
    path.order = fall->cycle->order();
    path.least = fall->cycle->least;
    steps = path.tail + (path.order == 1 ? 0 : path.order);
  }
  Silhouette silhouette = silhouetteOf(p);
  path.list = "0  " + p;
  for (std::size_t step = 1; step <= steps; ++step) {
    if (progress.stop) return nullptr;
    Decimal iterate;
    silhouette = transformation.apply(silhouette, iterate);
    path.list.append("\n").append(std::to_string(step)).append("  ");
    iterate.appendTo(path.list);
    path.iterates.push_back(std::move(iterate));
  }
  const std::size_t tail = fall ? path.tail : path.iterates.size();
  path.linear = pages::pathChart(path.iterates, tail, path.digits, pages::Scale::kLinear, kUnitSquare);
  path.logarithmic =
      pages::pathChart(path.iterates, tail, path.digits, pages::Scale::kLogarithmic, kUnitSquare);
  return std::make_shared<const Path>(std::move(path));
}

QString Path::sentence(bool linked) const {
  const QString start = shownNumber(p, linked);
  if (order == 0) return french("%1 : pas encore de retour en %2 pas.").arg(start, grouped(kMostSteps));
  const QString cycle = order == 1 ? french("le point fixe %1").arg(shownNumber(least.text(), linked))
                                   : french("le cycle d’ordre %1 qui passe par %2")
                                         .arg(grouped(order), shownNumber(least.text(), linked));
  if (tail == 0) return french("%1 : déjà sur %2").arg(start, cycle);
  return french("%1 : %2 pas, puis %3").arg(start, grouped(tail), cycle);
}

QString shownNumber(const std::string& digits, bool linked) {
  constexpr std::size_t kLong = 60;
  constexpr std::size_t kShown = 18;
  QString shown = QString::fromStdString(digits);
  if (digits.size() > kLong) {
    shown =
        french("%1…%2 (%3 chiffres)").arg(shown.left(kShown), shown.right(kShown), grouped(digits.size()));
  }
  if (!linked) return shown;
  return QString("<a href=\"%1\">%2</a>").arg(QString::fromStdString(digits), shown);
}

}  // namespace zelvion
