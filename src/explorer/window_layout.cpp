#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include "explorer/french.h"
#include "explorer/number_text.h"
#include "explorer/picture_view.h"
#include "explorer/power_box.h"
#include "explorer/window.h"
#include "widgets/application.h"
#include "widgets/fonts.h"
#include "widgets/number_edit.h"
#include "widgets/open_page.h"

namespace zelvion {
namespace {

/// A line of text in which numbers may be links.
QLabel* makeLabel(const QString& accessibleName) {
  auto* label = new QLabel;
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse |
                                 Qt::LinksAccessibleByKeyboard);
  label->setAccessibleName(accessibleName);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
  return label;
}

PictureView* makeView(const QString& accessibleName) {
  auto* view = new PictureView;
  view->setAccessibleName(accessibleName);
  return view;
}

QSplitter* makeSplitter(Qt::Orientation orientation, QWidget* first, QWidget* second, QList<int> sizes) {
  auto* splitter = new QSplitter(orientation);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(first);
  splitter->addWidget(second);
  splitter->setSizes(sizes);
  splitter->setStretchFactor(0, 1);
  splitter->setStretchFactor(1, sizes[1] < sizes[0] ? 0 : 2);
  return splitter;
}

}  // namespace

AtlasWindow::AtlasWindow() {
  setWindowTitle("Atlas des cycles");
  setObjectName("atlas");
  auto* centre = new QWidget;
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(8, 6, 8, 8);
  layout->addWidget(makeBoxes());
  layout->addWidget(complaint_ = makeLabel("Refus"));
  layout->addWidget(where_ = makeLabel("Où va p"));
  complaint_->hide();
  QFont large = screenFont(15);
  large.setBold(true);
  where_->setFont(large);
  QWidget* list = makeSplitter(Qt::Vertical, makeList(), makeCycle(), {260, 200});
  layout->addWidget(makeSplitter(Qt::Horizontal, list, makeTabs(), {400, 400}), 1);
  setCentralWidget(centre);
  makeMenu();
  connectAll();
  resize(screen()->availableSize().boundedTo({1180, 780}) * 0.95);
  k_->setFocus();
  k_->setValue(3);
  p_->setPlainText("789");
}

QWidget* AtlasWindow::makeBoxes() {
  auto* boxes = new QWidget;
  auto* row = new QHBoxLayout(boxes);
  row->setContentsMargins({});
  k_ = new PowerBox;
  k_->setFixedHeight(28);
  p_ = new NumberEdit(nullptr);
  p_->setAccessibleName("Nombre p");
  p_->setFixedHeight(44);
  p_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  p_->installEventFilter(this);
  for (const auto& [caption, box] :
       std::initializer_list<std::pair<const char*, QWidget*>>{{"Puissance &k", k_}, {"Nombre &p", p_}}) {
    auto* label = new QLabel(caption);
    label->setBuddy(box);
    row->addWidget(label);
    row->addWidget(box, box == p_ ? 1 : 0);
    box->setFont(screenFont(14));
  }
  return boxes;
}

QWidget* AtlasWindow::makeList() {
  auto* list = new QWidget;
  auto* layout = new QVBoxLayout(list);
  layout->setContentsMargins({});
  layout->addWidget(proof_ = makeLabel("Ce qui est prouvé"));
  auto* work = new QHBoxLayout;
  work->addWidget(progress_ = new QProgressBar, 1);
  work->addWidget(stop_ = new QPushButton("&Interrompre"));
  work->addWidget(start_ = new QPushButton, 1);
  progress_->setAccessibleName("Avancement");
  progress_->setMaximum(1'000);
  stop_->setToolTip("Échap");
  layout->addLayout(work);

  cycles_ = new CycleTable(this);
  sorted_ = new QSortFilterProxyModel(this);
  sorted_->setSourceModel(cycles_);
  sorted_->setSortRole(CycleTable::kSortRole);
  layout->addWidget(table_ = new QTableView, 1);
  table_->setAccessibleName("Liste des cycles");
  table_->setModel(sorted_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setTabKeyNavigation(false);
  table_->setAlternatingRowColors(true);
  table_->setWordWrap(false);
  table_->setTextElideMode(Qt::ElideMiddle);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
  table_->horizontalHeader()->setHighlightSections(false);
  table_->setSortingEnabled(true);
  table_->sortByColumn(CycleTable::kRank, Qt::AscendingOrder);
  table_->installEventFilter(this);
  return list;
}

QWidget* AtlasWindow::makeCycle() {
  auto* texts = new QWidget;
  auto* column = new QVBoxLayout(texts);
  column->setContentsMargins({});
  column->addWidget(facts_ = makeLabel("Le cycle choisi"));
  column->addWidget(points_ = new NumberText("Points du cycle"), 1);
  return makeSplitter(Qt::Horizontal, ring_ = makeView("Anneau du cycle"), texts, {170, 230});
}

QWidget* AtlasWindow::makeTabs() {
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins({});
  column->addWidget(tabs_ = new QTabWidget, 1);
  column->addWidget(readout_ = makeLabel("Ce que montre le pointeur"));
  readout_->setMinimumHeight(2 * readout_->fontMetrics().lineSpacing());

  auto* path = new QWidget;
  auto* layout = new QVBoxLayout(path);
  layout->setContentsMargins({});
  layout->addWidget(logarithmic_ = new QCheckBox("É&chelle logarithmique"));
  layout->addWidget(makeSplitter(Qt::Horizontal, path_ = makeView("Chemin de p"),
                                 iterates_ = new NumberText("Itérés de p"), {420, 150}),
                    1);
  tabs_->addTab(map_ = makeView("Carte"), "C&arte");
  tabs_->addTab(path, "Che&min");
  tabs_->addTab(tails_ = makeView("Longueur des chemins"), "&Longueurs");
  return right;
}

void AtlasWindow::makeMenu() {
  menuBar()->setNativeMenuBar(false);
  const auto add = [this](QMenu* menu, const QString& caption, const QKeySequence& keys, const auto& action) {
    menu->addAction(caption, keys, this, action);
  };
  QMenu* file = menuBar()->addMenu("&Fichier");
  add(file, "Enregistrer l’&image…", QKeySequence::Save, [this] { savePicture(); });
  add(file, "Enregistrer la &liste…", QKeySequence("Ctrl+Shift+S"), [this] { saveList(); });
  add(file, "Im&primer l’image…", QKeySequence::Print, [this] { print(); });
  file->addSeparator();
  add(file, "&Quitter", QKeySequence("Ctrl+Q"), [this] { close(); });
  QMenu* help = menuBar()->addMenu("&Aide");
  add(help, "&Mode d’emploi", QKeySequence::HelpContents, [this] {
    const std::string manual = manualAddress();
    if (manual.empty() || !openPage(manual)) tell(french("Le mode d'emploi n'a pas pu être ouvert."));
  });
}

void AtlasWindow::connectAll() {
  connect(k_, &QSpinBox::valueChanged, this, [this] {
    askPower();
    askPath();
  });
  connect(k_, &PowerBox::refused, this, &AtlasWindow::tell);
  connect(p_, &QPlainTextEdit::textChanged, this, &AtlasWindow::askPath);
  connect(stop_, &QPushButton::clicked, this, &AtlasWindow::interrupt);
  connect(start_, &QPushButton::clicked, this, [this] { power_ ? count() : askPower(); });
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &AtlasWindow::interrupt);
  connect(&standing_, &QTimer::timeout, this, &AtlasWindow::showStanding);
  connect(&listing_, &Computation::failed, this, [this](const QString& sentence) {
    interrupt();
    proof_->setText(sentence);
  });
  connect(&following_, &Computation::failed, where_, &QLabel::setText);
  connect(tabs_, &QTabWidget::currentChanged, this, [this] { readOut({}); });
  connect(logarithmic_, &QCheckBox::toggled, this, &AtlasWindow::showPictures);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &AtlasWindow::chooseCycle);
  for (const auto pressed : {&QTableView::clicked, &QTableView::activated}) {
    connect(table_, pressed, this, [this](const QModelIndex& index) {
      if (const QVariant number = index.data(CycleTable::kNumberRole); number.isValid())
        follow(number.toString());
    });
  }
  for (QLabel* label : {where_, facts_}) connect(label, &QLabel::linkActivated, this, &AtlasWindow::follow);
  for (NumberText* text : {points_, iterates_})
    connect(text, &NumberText::chosen, this, &AtlasWindow::follow);
  for (PictureView* view : {ring_, map_, path_, tails_}) {
    connect(view, &PictureView::chosen, this, &AtlasWindow::follow);
    connect(view, &PictureView::named, this, &AtlasWindow::readOut);
  }
  // Queued, since the failed event is still being handled.
  if (auto* application = qobject_cast<GuardedApplication*>(qApp)) {
    connect(application, &GuardedApplication::failed, this, &AtlasWindow::recover, Qt::QueuedConnection);
  }
}

}  // namespace zelvion
