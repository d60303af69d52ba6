#include "explorer/cycle_table.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <array>
#include <utility>

#include "explorer/french.h"

namespace zelvion {
namespace {

struct Heading {
  const char* text;
  const char* meaning;
};

constexpr std::array<Heading, CycleTable::kColumns> kHeadings = {{
    {"N°", "Le rang dans la liste : par ordre, puis par plus petit point"},
    {"Ordre", "Le nombre de points du cycle ; 1 pour un point fixe"},
    {"Plus petit", "Le plus petit point du cycle"},
    {"Plus grand", "Le plus grand point du cycle"},
    {"Part", "La part des nombres comptés qui y finissent"},
    {"Combien", "Combien de nombres y finissent"},
    {"Pas", "Le plus long chemin qui y mène, en pas"},
    {"Depuis", "Le plus petit nombre dont le chemin est aussi long"},
}};

bool isFollowed(int column) {
  return column == CycleTable::kLeast || column == CycleTable::kGreatest || column == CycleTable::kCount ||
         column == CycleTable::kFarthest;
}

}  // namespace

void CycleTable::setPower(std::shared_ptr<const Power> power) {
  beginResetModel();
  power_ = std::move(power);
  endResetModel();
}

int CycleTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !power_ ? 0 : static_cast<int>(power_->facts.cycles.size());
}

int CycleTable::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

/// The number of a cell, or nothing where there is none.
QString CycleTable::digits(std::size_t row, int column) const {
  const atlas::Cycle& cycle = power_->facts.cycles[row];
  const atlas::Basin* basin = power_->basins[row];
  switch (column) {
    case kRank:
      return QString::number(row + 1);
    case kOrder:
      return QString::number(cycle.order());
    case kLeast:
      return QString::fromStdString(cycle.least().text());
    case kGreatest:
      return QString::fromStdString(cycle.greatest().text());
    case kShare:
    case kCount:
      if (basin == nullptr) return power_->isCounted() ? "0" : "";
      return QString::fromStdString(basin->below.back().text());
    case kLongest:
      return basin ? QString::number(basin->longestTail()) : "";
    case kFarthest:
      return basin ? QString::fromStdString(basin->farthest().text()) : "";
    default:
      return {};
  }
}

QVariant CycleTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !power_) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const int column = index.column();
  const QString number = digits(row, column);
  switch (role) {
    case Qt::DisplayRole:
      if (number.isEmpty() && power_->isCounted()) return "–";
      if (column == kShare && !number.isEmpty())
        return QString::fromStdString(pages::percentText(power_->share(row)));
      return column == kLeast || column == kGreatest || column == kFarthest
                 ? number
                 : QString::fromStdString(pages::groupedDigits(number.toStdString()));
    case kSortRole:
      return number.rightJustified(kGreatestPower + 30, u'0');
    case kNumberRole:
      return isFollowed(column) && !number.isEmpty() ? QVariant(number) : QVariant();
    case Qt::ForegroundRole:
      return isFollowed(column) ? QVariant(QGuiApplication::palette().link()) : QVariant();
    case Qt::TextAlignmentRole:
      return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant CycleTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumns) return {};
  const Heading& heading = kHeadings[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return QString(heading.text);
  if (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole) return french(heading.meaning);
  return {};
}

}  // namespace zelvion
