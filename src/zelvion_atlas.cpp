#include "explorer/window.h"
#include "widgets/application.h"

int main(int argc, char** argv) {
  const zelvion::Application application(argc, argv, "zelvion-atlas");
  zelvion::AtlasWindow window;
  window.show();
  return QApplication::exec();
}
