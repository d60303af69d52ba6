#include "form/site.h"

#include <string>

namespace zelvion {

void openPage(Desktop& desktop, std::string_view page) {
  const std::string address = std::string(ZELVION_SITE).append(page);
  if (desktop.openPage(address)) return;
  desktop.message("La page " + address +
                      " n’a pas pu être ouverte\u00a0: le programme xdg-open, qui lance le navigateur, est "
                      "introuvable ou "
                      "ne démarre pas.",
                  Buttons::Ok, std::string(kApplicationTitle));
}

}  // namespace zelvion
