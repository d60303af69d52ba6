#include "desktop/qt_desktop.h"

#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QLocale>
#include <QMenuBar>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/form_view.h"
#include "desktop/message_box.h"
#include "files/files.h"
#include "form/shell/site.h"
#include "widgets/application.h"
#include "widgets/long_text.h"
#include "widgets/open_page.h"
#include "widgets/wait_cursor.h"

namespace zelvion {
namespace {

/// A time format without its time zone: the letters "t" outside quotes, and brackets left empty.
QString withoutZone(const QString& format) {
  QString result;
  bool quoted = false;
  for (const QChar c : format) {
    if (c == u'\'') quoted = !quoted;
    if (quoted || c != u't') result += c;
  }
  return result.remove("()").trimmed();
}

}  // namespace

QtDesktop::QtDesktop() {
  // Queued: a box cannot open within a paint.
  if (auto* application = qobject_cast<GuardedApplication*>(qApp)) {
    QObject::connect(
        application, &GuardedApplication::failed, &lifetime_, [this](bool memory) { recover(memory); },
        Qt::QueuedConnection);
  }
}
QtDesktop::~QtDesktop() = default;

void QtDesktop::show(Form& form) {
  mainWindow_ = std::make_unique<QMainWindow>();
  auto* view = new FormView(form, mainWindow_.get());
  mainWindow_->setCentralWidget(view);
  int menuHeight = 0;
  if (!form.table().menu.empty()) {
    QMenuBar* bar = mainWindow_->menuBar();
    bar->setNativeMenuBar(false);
    view->addMenuTo(*bar);
    QObject::connect(new QShortcut(Qt::Key_F10, bar), &QShortcut::activated, bar,
                     [bar] { bar->setActiveAction(bar->actions().constFirst()); });
    menuHeight = bar->sizeHint().height();
  }
  QObject::connect(new QShortcut(Qt::Key_F1, mainWindow_.get()), &QShortcut::activated, &lifetime_,
                   [this] { openManual(); });
  view->fitWindow(menuHeight);
  views_.push_back(view);
  mainWindow_->show();
}

int QtDesktop::run(Form& form) {
  show(form);
  const int result = QApplication::exec();
  views_.clear();
  mainWindow_.reset();
  return result;
}

void QtDesktop::showModal(Form& form) {
  pushAll();
  const UserTurn turn;
  QDialog dialog(topWindow());
  auto* view = new FormView(form, &dialog);
  auto* layout = new QVBoxLayout(&dialog);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(view);
  view->fitWindow(0);
  dialog.setWindowModality(Qt::ApplicationModal);
  views_.push_back(view);
  const auto closed = qScopeGuard([this] { views_.pop_back(); });
  dialog.exec();
}

void QtDesktop::select(std::string_view control, std::size_t place) {
  views_.back()->select(control, static_cast<int>(place));
}

void QtDesktop::unload(Form& form) {
  for (FormView* view : views_) {
    if (&view->form() == &form) view->window()->close();
  }
}

void QtDesktop::pushAll() {
  for (FormView* view : views_) view->push();
}

QWidget* QtDesktop::topWindow() const { return views_.empty() ? nullptr : views_.back()->window(); }

Answer QtDesktop::message(std::string_view prompt, Buttons buttons, const std::string& title) {
  pushAll();
  const UserTurn turn;
  MessageBox box(prompt, buttons, title, topWindow());
  return box.ask();
}

void QtDesktop::openManual() {
  const std::string address = manualAddress();
  if (!address.empty()) return openAddress(*this, address);
  message("Le mode d’emploi, mode-d-emploi.html, n’est ni dans le dossier «\u00a0" + pathOf("docs") +
              "\u00a0», ni dans le dossier «\u00a0/usr/share/doc/zelvion\u00a0».",
          Buttons::Ok, std::string(kApplicationTitle));
}

/// Reports in one box, however many events failed, what went wrong outside the handlers of a form. Frees what
/// may have taken the memory first.
void QtDesktop::recover(bool memory) {
  if (recovering_ || views_.empty()) return;
  const QScopedValueRollback<bool> recovering(recovering_, true);
  try {
    if (memory) {
      for (FormView* view : views_) view->letGo();
      for (QWidget* widget : QApplication::allWidgets()) {
        auto* text = qobject_cast<LongText*>(widget);
        if (text && text->isLarge()) text->setText(kTooLittleMemory);
      }
    }
    message(memory ? kTooLittleMemory : "Une erreur imprévue s’est produite. La fenêtre reste utilisable.",
            Buttons::Ok, "zelvion");
  } catch (...) {
    return;  // there is no memory for a box
  }
}

Moment QtDesktop::now() {
  const QDateTime moment = QDateTime::currentDateTime();
  const QLocale locale = QLocale::system();
  const QString timeFormat = withoutZone(locale.timeFormat(QLocale::LongFormat));
  return {locale.toString(moment.date(), QLocale::ShortFormat).toStdString(),
          locale.toString(moment.time(), timeFormat).toStdString(), moment.toSecsSinceEpoch()};
}

std::string QtDesktop::pathOf(const std::string& name) {
  return QDir(QCoreApplication::applicationDirPath()).filePath(QString::fromStdString(name)).toStdString();
}

void QtDesktop::append(const std::string& name, const std::string& text) { appendWhole(pathOf(name), text); }

void QtDesktop::sync(const std::string& name) { syncFile(pathOf(name)); }

std::string QtDesktop::read(const std::string& name) { return readWhole(pathOf(name)); }

bool QtDesktop::openPage(const std::string& address) { return zelvion::openPage(address); }

Twips QtDesktop::screen() {
  const QSize size = QGuiApplication::primaryScreen()->size();
  return {size.width() * kTwipsPerPixel, size.height() * kTwipsPerPixel};
}

}  // namespace zelvion
