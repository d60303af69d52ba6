#include <QApplication>

#include "platform/qt/application.h"
#include "platform/qt/qt_desktop.h"
#include "shell/velmoire.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  zelvion::prepare();
  zelvion::QtDesktop desktop;
  zelvion::Velmoire velmoire(desktop);
  return desktop.run(velmoire);
}
