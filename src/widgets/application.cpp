#include "widgets/application.h"

#include <QAccessible>
#include <QDir>
#include <QIcon>
#include <QTranslator>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string>

#include "widgets/accessible_long_text.h"
#include "widgets/field_style.h"
#include "widgets/fonts.h"

namespace zelvion {
namespace {

const char* programName = "";

/// What the toolkit says while it looks for a screen, which it does in English; it then ends the program with
/// an abort.
void sayWithoutScreen(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type == QtFatalMsg) {
    const std::string display = qEnvironmentVariable("DISPLAY").toStdString();
    std::cerr << programName << " ne peut pas ouvrir sa fenêtre\u00a0: "
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

Application::Application(int argc, char** argv, const char* name) : arguments_(1) {
  programName = name;
  if (argc > 1) {
    std::cerr << name + std::string(" n’accepte pas d’arguments\u00a0: «\u00a0") + argv[1] +
                     "\u00a0» et ce qui suit est sans effet.\n";
  }
  const QtMessageHandler usual = qInstallMessageHandler(sayWithoutScreen);
  toolkit_.emplace(arguments_, argv);
  qInstallMessageHandler(usual);
  prepare(name);
}

void prepare(const char* name) {
  std::signal(SIGXFSZ, SIG_IGN);    // a file at its limit is an error like a full disk
  std::setlocale(LC_NUMERIC, "C");  // the toolkit sets that of the system, in which C reads no decimal point
  QApplication::setApplicationName(name);
  QApplication::setDesktopFileName(QString("example.tolque.") + name);
  QApplication::setStyle(new FieldStyle);
  QApplication::setFont(screenFont(11));
  QIcon icon;
  const QDir icons(QString(":/icons/") + name);
  for (const QString& file : icons.entryList()) icon.addFile(icons.filePath(file));
  QApplication::setWindowIcon(icon);

  auto* french = new QTranslator(qApp);
  if (french->load("qtbase_fr", ":/i18n")) QApplication::installTranslator(french);
  QAccessible::installFactory(accessibleLongText);
}

}  // namespace zelvion
