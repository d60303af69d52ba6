#pragma once

#include <QMainWindow>
#include <QTimer>
#include <memory>

#include "explorer/computation.h"
#include "explorer/cycle_table.h"
#include "explorer/path.h"
#include "explorer/power.h"

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QSplitter;
class QTableView;
class QTabWidget;

namespace zelvion {

class NumberEdit;
class NumberText;
class Picture;
class PictureView;
class PowerBox;

/// The window of the atlas: the cycles of a power, and where a number goes.
class AtlasWindow : public QMainWindow {
  Q_OBJECT

 public:
  AtlasWindow();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  // The window.
  QWidget* makeBoxes();
  QWidget* makeList();
  QWidget* makeCycle();
  QWidget* makeTabs();
  void makeMenu();
  void connectAll();

  // Requests and results.
  void askPower();
  void showPower(std::shared_ptr<const Power> power);
  void count();
  void askPath();
  void showPath(std::shared_ptr<const Path> path);
  void interrupt();
  void showStanding();
  void chooseCycle();
  void showPictures();
  void readOut(const QString& name);
  void follow(const QString& digits);
  void recover(bool memory);
  void tell(const QString& sentence);

  // Exports.
  const PictureView* viewInUse() const;
  void savePicture();
  void saveList();
  void print();
  void save(const QString& name, const QByteArray& bytes);

  PowerBox* k_ = nullptr;
  NumberEdit* p_ = nullptr;
  QLabel* complaint_ = nullptr;  ///< beside the boxes
  QLabel* where_ = nullptr;      ///< where p goes
  QLabel* proof_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QPushButton* stop_ = nullptr;
  QPushButton* start_ = nullptr;
  QTableView* table_ = nullptr;
  CycleTable* cycles_ = nullptr;
  QSortFilterProxyModel* sorted_ = nullptr;
  PictureView* ring_ = nullptr;
  QLabel* facts_ = nullptr;
  NumberText* points_ = nullptr;
  QTabWidget* tabs_ = nullptr;
  PictureView* map_ = nullptr;
  PictureView* path_ = nullptr;
  QCheckBox* logarithmic_ = nullptr;
  NumberText* iterates_ = nullptr;
  PictureView* tails_ = nullptr;
  QLabel* readout_ = nullptr;  ///< what the pointer or the keys are at

  std::shared_ptr<const Power> power_;  ///< null as long as it is not known
  std::shared_ptr<const Path> known_;   ///< the path of p, likewise
  bool isCounting_ = false;             ///< not listing, that is, if anything runs
  KeptPowers kept_;
  QTimer standing_;
  Computation listing_;    ///< works on the power
  Computation following_;  ///< works on the path
};

}  // namespace zelvion
