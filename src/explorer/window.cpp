#include "explorer/window.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTabWidget>
#include <QTableView>
#include <algorithm>
#include <utility>

#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "explorer/export.h"
#include "explorer/french.h"
#include "explorer/number_text.h"
#include "explorer/picture_view.h"
#include "explorer/pictures.h"
#include "explorer/power_box.h"
#include "widgets/number_edit.h"

namespace zelvion {
namespace {

constexpr std::int32_t kLastCountedAtOnce = 20;
constexpr int kPatience = 100;  // milliseconds before old results are cleared

QString percent(double share) { return QString::fromStdString(pages::percentText(share)); }
QString duration(double seconds) { return QString::fromStdString(pages::durationText(seconds)); }

}  // namespace

/// Asks for the power in its box, and shows it at once if it is known.
void AtlasWindow::askPower() {
  const std::int32_t k = k_->value();
  listing_.stop();
  power_ = nullptr;
  if (auto known = kept_.find(k)) return showPower(std::move(known));
  isCounting_ = false;
  listing_.start([this, k](Progress& progress) -> Computation::Delivery {
    auto power = listedPower(k, progress);
    if (!power) return {};
    return [this, power] { showPower(power); };
  });
  standing_.start(kPatience);
}

/// Counts the numbers of the power that is shown.
void AtlasWindow::count() {
  isCounting_ = true;
  listing_.start([this, power = power_](Progress& progress) -> Computation::Delivery {
    auto counted = countedPower(*power, progress);
    if (!counted) return {};
    return [this, counted] { showPower(counted); };
  });
  standing_.start(kPatience);
  showStanding();
}

void AtlasWindow::showPower(std::shared_ptr<const Power> power) {
  power_ = std::move(power);
  kept_.keep(power_);
  QString proof = french(pages::proofText(power_->facts));
  if (power_->isCounted()) proof += " " + french(pages::countedText(power_->facts));
  proof_->setText(proof);
  cycles_->setPower(power_);
  table_->resizeColumnsToContents();
  for (int column = 0; column < CycleTable::kColumns; ++column) {
    constexpr int kWidest = 170;
    table_->setColumnWidth(column, std::min(table_->columnWidth(column) + 4, kWidest));
  }
  if (!power_->isCounted() && power_->facts.k <= kLastCountedAtOnce) count();
  showPictures();
  showStanding();
}

/// Asks for the path of the p in its box, or says what is wrong with it.
void AtlasWindow::askPath() {
  known_ = nullptr;
  following_.stop();
  try {
    const std::string typed = p_->typedText().trimmed().toStdString();
    text::requireLength(typed);
    const std::string p(text::digitsOf(typed));
    tell({});
    following_.start([this, k = k_->value(), p](Progress& progress) -> Computation::Delivery {
      auto path = pathOf(k, p, progress);
      if (!path) return {};
      return [this, path] { showPath(path); };
    });
    standing_.start(kPatience);
  } catch (const Refusal& refusal) {
    tell(french(refusal.what()));
    where_->clear();
    iterates_->showText({});
    showPictures();
  }
}

void AtlasWindow::showPath(std::shared_ptr<const Path> path) {
  known_ = std::move(path);
  where_->setText(inHtml(known_->sentence(true)));
  iterates_->showText(known_->list);
  showPictures();
}

/// Shows all pictures of what is known, and chooses the cycle of p.
void AtlasWindow::showPictures() {
  const QString none = listing_.isRunning() ? french("La puissance %1 se calcule…").arg(k_->value())
                                            : french("La puissance %1 n'est pas calculée.").arg(k_->value());
  map_->setPicture(power_ ? mapPicture(power_, known_) : nullptr, none);
  const bool counted = power_ && power_->isCounted();
  tails_->setPicture(counted ? tailsPicture(power_) : nullptr,
                     power_ ? french("Les nombres ne sont pas encore comptés.") : none);
  path_->setPicture(known_ ? pathPicture(known_, logarithmic_->isChecked()) : nullptr, {});
  if (power_ && known_ && known_->order > 0) {
    const auto row = static_cast<int>(power_->placeOf(known_->least));
    table_->setCurrentIndex(sorted_->mapFromSource(cycles_->index(row, CycleTable::kLeast)));
  }
  chooseCycle();
  readOut({});
}

/// Shows the cycle of the current row.
void AtlasWindow::chooseCycle() {
  const QModelIndex index = sorted_->mapToSource(table_->currentIndex());
  if (!power_ || !index.isValid()) {
    ring_->setPicture(nullptr, french("Choisissez un cycle."));
    facts_->clear();
    points_->showText({});
    return;
  }
  const auto place = static_cast<std::size_t>(index.row());
  const atlas::Cycle& cycle = power_->facts.cycles[place];
  ring_->setPicture(ringPicture(power_, place), {});
  QString facts = cycleName(cycle);
  facts.front() = facts.front().toUpper();
  if (const atlas::Basin* basin = power_->basins[place]) {
    facts += french(". Y finissent %1 des nombres sous %2. Le plus long chemin, %3 pas, part de ")
                 .arg(percent(power_->share(place)),
                      QString::fromStdString(pages::powerOfTenText(power_->facts.basins.digits)),
                      grouped(basin->longestTail())) +
             shownNumber(basin->farthest().text(), true);
  }
  facts_->setText(inHtml(facts + "."));
  std::string points;
  for (const Decimal& point : cycle.points()) {
    if (!points.empty()) points += '\n';
    point.appendTo(points);
  }
  points_->showText(std::move(points));
}

/// Cancels all computations; results stay.
void AtlasWindow::interrupt() {
  if (following_.isRunning()) where_->setText(french("Interrompu. Entrée dans la case de p recommence."));
  following_.stop();
  listing_.stop();
  if (!power_) proof_->setText(french("La liste des cycles pour k = %1 n'est pas connue.").arg(k_->value()));
  showPictures();
  showStanding();
}

/// Updates the progress, and the button for what can be computed next.
void AtlasWindow::showStanding() {
  const bool isRunning = listing_.isRunning();
  const bool isLong = isRunning && (isCounting_ || listing_.seconds() * 1'000 >= kPatience);
  if (following_.isRunning() && following_.seconds() * 1'000 >= kPatience)
    where_->setText(french("Le chemin de p se calcule…"));
  if (isLong && !power_ && cycles_->rowCount() > 0) {
    cycles_->setPower(nullptr);
    showPictures();
  }
  progress_->setVisible(isLong);
  stop_->setVisible(isLong);
  start_->setVisible(!isRunning && (!power_ || !power_->isCounted()));
  if (isLong) {
    const Progress& progress = listing_.progress();
    const double share =
        static_cast<double>(progress.done) / std::max(1.0, static_cast<double>(progress.pieces));
    QString text = isCounting_ ? french("Compte des nombres")
                               : french("Cycles trouvés : %1").arg(grouped(progress.found));
    text += " · " + percent(std::floor(share * 100) / 100);
    if (share > 0.01) text += " · reste " + duration(listing_.seconds() * (1 - share) / share);
    progress_->setValue(static_cast<int>(share * 1'000));
    progress_->setFormat(text);
    if (!power_) proof_->setText(french("Tous les cycles pour k = %1 se cherchent.").arg(k_->value()));
  }
  if (power_ && !power_->isCounted()) {
    const Effort effort = countingEffort(power_->facts.k);
    start_->setText(
        french("Compter les parts (environ %1, %2 Mo)").arg(duration(effort.seconds)).arg(effort.megabytes));
  } else {
    start_->setText(french("Chercher les cycles"));
  }
  if (!isRunning && !following_.isRunning()) standing_.stop();
}

/// Shows the name of the mark under the pointer or the keys, or else the picture's description.
void AtlasWindow::readOut(const QString& name) {
  const auto picture = viewInUse()->picture();
  readout_->setText(name.isEmpty() && picture ? picture->description() : name);
}

void AtlasWindow::follow(const QString& digits) {
  p_->setPlainText(digits);
  p_->moveCursor(QTextCursor::Start);
}

void AtlasWindow::tell(const QString& sentence) {
  complaint_->setText(sentence.toHtmlEscaped());
  complaint_->setVisible(!sentence.isEmpty());
}

/// Recovers from a failed event: frees what may have taken the memory.
void AtlasWindow::recover(bool memory) {
  if (memory) {
    kept_ = KeptPowers();
    iterates_->showText({});
    points_->showText({});
  }
  tell(french(memory ? "La mémoire ne suffit pas pour tout montrer. La fenêtre reste utilisable."
                     : "Une erreur imprévue s'est produite. La fenêtre reste utilisable."));
}

bool AtlasWindow::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QMainWindow::eventFilter(object, event);
  const auto* press = static_cast<QKeyEvent*>(event);
  if (object == p_ && (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter)) {
    askPath();
    return true;
  }
  if (object == table_ && press->matches(QKeySequence::Copy)) {
    const QModelIndex index = table_->currentIndex();
    const QVariant number = index.data(CycleTable::kNumberRole);
    QGuiApplication::clipboard()->setText((number.isValid() ? number : index.data()).toString());
    return true;
  }
  return QMainWindow::eventFilter(object, event);
}

const PictureView* AtlasWindow::viewInUse() const {
  if (ring_->hasFocus()) return ring_;
  const std::array<const PictureView*, 3> views = {map_, path_, tails_};
  return views[static_cast<std::size_t>(tabs_->currentIndex())];
}

void AtlasWindow::savePicture() {
  const auto picture = viewInUse()->picture();
  if (!picture) return tell(french("Il n'y a pas encore d'image à enregistrer."));
  QString chosen = "SVG (*.svg)";
  QString name = QFileDialog::getSaveFileName(this, french("Enregistrer l'image"),
                                              "atlas-k" + QString::number(k_->value()) + ".svg",
                                              "SVG (*.svg);;PDF (*.pdf);;PNG (*.png)", &chosen);
  if (name.isEmpty()) return;
  QString format = QFileInfo(name).suffix().toLower();
  if (format != "svg" && format != "pdf" && format != "png") {
    format = chosen.left(3).toLower();
    name += "." + format;
  }
  save(name, pictureBytes(*picture, format));
}

void AtlasWindow::saveList() {
  if (!power_) return tell(french("Il n'y a pas encore de liste à enregistrer."));
  const QString name =
      QFileDialog::getSaveFileName(this, french("Enregistrer la liste"),
                                   "cycles-k" + QString::number(k_->value()) + ".csv", "CSV (*.csv)");
  if (!name.isEmpty()) save(name, listBytes(*power_));
}

void AtlasWindow::save(const QString& name, const QByteArray& bytes) {
  const QString failure = writeFile(name, bytes);
  tell(failure.isEmpty() ? french("Enregistré : %1").arg(name) : failure);
}

void AtlasWindow::print() {
  if (const auto picture = viewInUse()->picture()) printPicture(*picture, this);
}

}  // namespace zelvion
