#include "desktop/qt_desktop.h"

#include <unistd.h>

#include <QApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDir>
#include <QLocale>
#include <QMenuBar>
#include <QProcess>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>

#include "desktop/form_view.h"
#include "desktop/message_box.h"
#include "desktop/wait_cursor.h"
#include "engine/text/refusal.h"
#include "files/files.h"

namespace zelvion {
namespace {

/// A browser that runs longer than this has opened the page, whatever it says at its end.
constexpr std::chrono::seconds kBrowserStart{5};

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

QtDesktop::QtDesktop() = default;
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
    menuHeight = bar->sizeHint().height();
  }
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

void QtDesktop::unload(Form& form) {
  for (FormView* view : views_) {
    if (&view->form() == &form) view->window()->close();
  }
}

void QtDesktop::pushAll() {
  for (FormView* view : views_) view->push();
}

QWidget* QtDesktop::topWindow() const {
  return views_.empty() ? nullptr : views_.back()->window();
}

Answer QtDesktop::message(std::string_view prompt, Buttons buttons, const std::string& title) {
  pushAll();
  const UserTurn turn;
  MessageBox box(QString::fromUtf8(prompt), buttons, QString::fromStdString(title), topWindow());
  const Answer answer = [&] {
    const QScopedValueRollback<bool> open(boxOpen_, true);
    return box.ask();
  }();
  QTimer::singleShot(0, &lifetime_, [this] { reportFailedPages(); });
  return answer;
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

void QtDesktop::append(const std::string& name, const std::string& text) {
  appendWhole(pathOf(name), text);
}

std::string QtDesktop::read(const std::string& name) {
  return readWhole(pathOf(name));
}

void QtDesktop::openPage(const std::string& address) {
  const QString page = QString::fromStdString(address);
  // The process object is let go on purpose where the browser outlives the program: its destructor would end
  // the browser.
  auto* browser = new QProcess;
  browser->setStandardInputFile(QProcess::nullDevice());
  browser->setStandardOutputFile(QProcess::nullDevice());
  browser->setStandardErrorFile(QProcess::nullDevice());
  browser->setChildProcessModifier([] { ::setsid(); });
  browser->start("xdg-open", {page});
  if (!browser->waitForStarted()) {
    delete browser;
    throw Refusal("Impossible d’ouvrir la page " + address +
                  " : le programme xdg-open est introuvable ou ne démarre pas.");
  }
  QObject::connect(browser, &QProcess::finished, browser, &QObject::deleteLater);
  QObject::connect(browser, &QProcess::finished, &lifetime_,
                   [this, page, start = QDeadlineTimer(kBrowserStart)](int exitCode) {
                     if (exitCode == 0 || start.hasExpired()) return;
                     failedPages_.append(page);
                     reportFailedPages();
                   });
}

/// Tells the user of the pages that could not be opened, once no other box is open.
void QtDesktop::reportFailedPages() {
  if (boxOpen_ || failedPages_.isEmpty()) return;
  const QString page = failedPages_.takeFirst();
  message("La page n'a pas pu être ouverte dans un navigateur :\r\n" + page.toStdString(), Buttons::Ok,
          "zelvion");
}

Twips QtDesktop::screen() {
  const QSize size = QGuiApplication::primaryScreen()->availableSize();
  return {size.width() * kTwipsPerPixel, size.height() * kTwipsPerPixel};
}

}  // namespace zelvion
