#include "form/shell/site.h"

namespace zelvion {

void openAddress(Desktop& desktop, const std::string& address) {
  if (desktop.openPage(address)) return;
  desktop.message("La page " + address +
                      " n’a pas pu être ouverte\u00a0: le programme xdg-open, qui lance le navigateur, est "
                      "introuvable ou ne démarre pas.",
                  Buttons::Ok, std::string(kApplicationTitle));
}

void openPage(Desktop& desktop, std::string_view page) {
  openAddress(desktop, std::string(ZELVION_SITE).append(page));
}

}  // namespace zelvion
