#include "explorer/export.h"

#include <QBuffer>
#include <QImage>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <algorithm>
#include <cerrno>
#include <system_error>

#include "engine/text/reason.h"
#include "explorer/french.h"
#include "explorer/picture.h"
#include "explorer/power.h"
#include "widgets/fonts.h"

namespace zelvion {
namespace {

constexpr double kHead = 44;  // for the title
constexpr QSizeF kChartSize = {900, 520};

/// The size of the picture on paper, with its title.
QSizeF sizeOnPaper(const Picture& picture) {
  const QSizeF own = picture.ownSize();
  return (own.isEmpty() ? kChartSize : own) + QSizeF(0, kHead);
}

/// Draws the picture with its title into its size on paper.
void draw(QPainter& painter, const Picture& picture) {
  constexpr double kAllLabels = 2;  // the zoom at which a picture shows the labels of its cycles
  const QSizeF size = sizeOnPaper(picture);
  const Inks inks = Inks::forPaper();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(QRectF({}, size), inks.ground);
  painter.setPen(inks.text);
  painter.setFont(screenFont(18));
  painter.drawText(QRectF(0, 6, size.width(), kHead - 6), Qt::AlignCenter, picture.title());
  painter.setFont(screenFont(12));
  painter.translate(0, kHead);
  picture.paint(painter, size - QSizeF(0, kHead), inks, kAllLabels);
}

}  // namespace

QByteArray pictureBytes(const Picture& picture, const QString& format) {
  constexpr double kGreatestSide = 4000;
  const QSizeF size = sizeOnPaper(picture);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  if (format == "svg") {
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setViewBox(QRectF({}, size));
    svg.setSize(size.toSize());
    svg.setTitle(picture.title());
    svg.setDescription(picture.description());
    QPainter painter(&svg);
    draw(painter, picture);
  } else if (format == "pdf") {
    QPdfWriter pdf(&buffer);
    pdf.setTitle(picture.title());
    pdf.setPageSize(QPageSize(size * 0.75, QPageSize::Point, {}, QPageSize::ExactMatch));  // a pixel each
    pdf.setPageMargins({});
    QPainter painter(&pdf);
    painter.scale(pdf.width() / size.width(), pdf.height() / size.height());
    draw(painter, picture);
  } else {
    const double scale = std::min(2.0, kGreatestSide / std::max(size.width(), size.height()));
    QImage image((size * scale).toSize(), QImage::Format_RGB32);
    QPainter painter(&image);
    painter.scale(scale, scale);
    draw(painter, picture);
    painter.end();
    image.setText("Title", picture.title());
    image.setText("Description", picture.description());
    image.save(&buffer, "PNG");
  }
  return buffer.data();
}

QByteArray listBytes(const Power& power) {
  std::string csv = "k,cycle,ordre,plus_petit,plus_grand";
  if (power.isCounted()) csv += ",chiffres,nombres,pas_max,depuis,sous,pas";
  const auto add = [&csv](const std::string& text) { csv.append(",").append(text); };
  const auto addList = [&csv](const std::vector<Decimal>& numbers) {
    for (const Decimal& number : numbers)
      csv.append(&number == numbers.data() ? "," : " ").append(number.text());
  };
  for (std::size_t i = 0; i < power.facts.cycles.size(); ++i) {
    const atlas::Cycle& cycle = power.facts.cycles[i];
    csv.append("\n").append(std::to_string(power.facts.k));
    add(std::to_string(i + 1));
    add(std::to_string(cycle.order()));
    add(cycle.least().text());
    add(cycle.greatest().text());
    if (!power.isCounted()) continue;
    add(std::to_string(power.facts.basins.digits));
    if (const atlas::Basin* basin = power.basins[i]) {
      add(basin->below.back().text());
      add(std::to_string(basin->longestTail()));
      add(basin->farthest().text());
      addList(basin->below);
      addList(basin->tails);
    } else {
      csv += ",0,,,,";
    }
  }
  return QByteArray::fromStdString(csv + "\n");
}

QString writeFile(const QString& name, const QByteArray& bytes) {
  errno = 0;
  QSaveFile file(name);
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) return {};
  const int error = errno != 0 ? errno : EIO;
  return french("Le fichier « %1 » n'a pas pu être écrit : %2. S'il y en avait un, il est resté comme avant.")
      .arg(name, french(text::reasonOf({error, std::generic_category()})));
}

void printPicture(const Picture& picture, QWidget* parent) {
  QPrinter printer;
  printer.setDocName(picture.title());
  const QSizeF size = sizeOnPaper(picture);
  printer.setPageOrientation(size.width() > size.height() ? QPageLayout::Landscape : QPageLayout::Portrait);
  QPrintDialog dialog(&printer, parent);
  if (dialog.exec() != QDialog::Accepted) return;
  QPainter painter(&printer);
  const QSizeF page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
  const double scale = std::min(page.width() / size.width(), page.height() / size.height());
  painter.translate((page.width() - scale * size.width()) / 2, 0);
  painter.scale(scale, scale);
  draw(painter, picture);
}

}  // namespace zelvion
