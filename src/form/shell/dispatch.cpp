#include "form/shell/dispatch.h"

#include <new>

#include "engine/text/refusal.h"

namespace zelvion {
void reportFailure(Desktop& desktop, const std::function<std::string()>& title) noexcept {
  try {
    std::string sentence;
    try {
      throw;
    } catch (const std::bad_alloc&) {
      sentence =
          "La mémoire ne suffit pas pour ce calcul. Choisissez un nombre p ou une puissance k plus petits.";
    } catch (const Refusal& refusal) {
      sentence = refusal.what();
    } catch (...) {
      sentence = "Une erreur imprévue a arrêté le calcul.";
    }
    desktop.message(sentence, Buttons::Ok, title());
  } catch (...) {
    // There is no memory even for a message box; the window stays usable.
    return;
  }
}

}  // namespace zelvion
