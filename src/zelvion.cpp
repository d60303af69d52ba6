#include "desktop/application.h"
#include "desktop/qt_desktop.h"
#include "form/velmoire.h"

int main(int argc, char** argv) {
  const zelvion::Application application(argc, argv);
  zelvion::QtDesktop desktop;
  zelvion::Velmoire velmoire(desktop);
  return desktop.run(velmoire);
}
