#include "desktop/qt_desktop.h"
#include "form/shell/velmoire.h"
#include "widgets/application.h"

int main(int argc, char** argv) {
  const zelvion::Application application(argc, argv, "zelvion");
  zelvion::QtDesktop desktop;
  zelvion::Velmoire velmoire(desktop);
  return desktop.run(velmoire);
}
