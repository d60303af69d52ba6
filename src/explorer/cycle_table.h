#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "explorer/power.h"

namespace zelvion {

/// The cycles of a power, one a row; what is not counted is left blank.
class CycleTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kRank, kOrder, kLeast, kGreatest, kShare, kCount, kLongest, kFarthest, kColumns };
  /// The sort key of a cell: a text that sorts as the number does.
  static constexpr int kSortRole = Qt::UserRole;
  /// The digits of the cell, for those whose number can be followed; else nothing.
  static constexpr int kNumberRole = Qt::UserRole + 1;

  using QAbstractTableModel::QAbstractTableModel;

  /// Null for none.
  void setPower(std::shared_ptr<const Power> power);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString digits(std::size_t row, int column) const;

  std::shared_ptr<const Power> power_;
};

}  // namespace zelvion
