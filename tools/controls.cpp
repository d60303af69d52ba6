// Names the controls of the main window that take the focus, a line each, in tab order: for scripts that go
// through them by keyboard.

#include <iostream>

#include "form/shell/forms.h"

int main() {
  using zelvion::Kind;
  for (const zelvion::Control& control : zelvion::kMainForm.controls) {
    const bool focused =
        control.kind != Kind::Label && control.kind != Kind::CentredLabel && control.kind != Kind::Rule;
    if (focused) std::cout << control.name << '\n';
  }
}
