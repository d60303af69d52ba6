#include <QApplication>

#include "desktop/application.h"
#include "desktop/qt_desktop.h"
#include "form/velmoire.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  zelvion::prepare();
  zelvion::QtDesktop desktop;
  zelvion::Velmoire velmoire(desktop);
  return desktop.run(velmoire);
}
