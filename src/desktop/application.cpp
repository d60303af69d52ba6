#include "desktop/application.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>
#include <csignal>

#include "desktop/accessible_long_text.h"
#include "desktop/fonts.h"

namespace zelvion {

void prepare() {
  std::signal(SIGXFSZ, SIG_IGN);  // a file at its limit is an error like a full disk
  QApplication::setApplicationName("zelvion");
  QApplication::setDesktopFileName("example.tolque.zelvion");
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
