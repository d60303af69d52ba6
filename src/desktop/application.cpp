#include "desktop/application.h"

#include <QAccessible>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string>

#include "desktop/accessible_long_text.h"
#include "desktop/field_style.h"
#include "desktop/fonts.h"

namespace zelvion {
namespace {

/// What the toolkit says while it looks for a screen, which it does in English; it then ends the program with
/// an abort.
void sayWithoutScreen(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type == QtFatalMsg) {
    const std::string display = qEnvironmentVariable("DISPLAY").toStdString();
    std::cerr << "zelvion ne peut pas ouvrir sa fenêtre\u00a0: "
              << (display.empty() ? "il n’y a pas d’écran (DISPLAY est vide)."
                                  : "l’écran «\u00a0" + display + "\u00a0» (DISPLAY) ne répond pas.")
              << std::endl;
    std::_Exit(EXIT_FAILURE);
  }
  if (!QByteArray(context.category).startsWith("qt.qpa.")) std::cerr << text.toStdString() << '\n';
}

}  // namespace

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (...) {
    tellException();
    return true;
  }
}

void GuardedApplication::tellException() noexcept {
  bool memory = false;
  try {
    throw;
  } catch (const std::bad_alloc&) {
    memory = true;
  } catch (...) {
    memory = false;
  }
  try {
    if (auto* application = qobject_cast<GuardedApplication*>(qApp)) emit application->failed(memory);
  } catch (...) {
    return;  // without the memory for a signal there is nothing to tell it with
  }
}

Application::Application(int argc, char** argv) : arguments_(1) {
  if (argc > 1) {
    std::cerr << std::string("zelvion n’accepte pas d’arguments\u00a0: «\u00a0") + argv[1] +
                     "\u00a0» et ce qui suit est sans effet.\n";
  }
  const QtMessageHandler usual = qInstallMessageHandler(sayWithoutScreen);
  toolkit_.emplace(arguments_, argv);
  qInstallMessageHandler(usual);
  prepare();
}

void prepare() {
  std::signal(SIGXFSZ, SIG_IGN);  // a file at its limit is an error like a full disk
  QApplication::setApplicationName("zelvion");
  QApplication::setDesktopFileName("example.tolque.zelvion");
  QApplication::setStyle(new FieldStyle);
  QApplication::setFont(screenFont(Font{}));
  QIcon icon;
  for (const QString& name : QDir(":/icons").entryList()) icon.addFile(":/icons/" + name);
  QApplication::setWindowIcon(icon);

  auto* french = new QTranslator(qApp);
  if (french->load("qtbase_fr", ":/i18n") ||
      french->load("qtbase_fr", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(french);
  }
  QAccessible::installFactory(accessibleLongText);
}

}  // namespace zelvion
