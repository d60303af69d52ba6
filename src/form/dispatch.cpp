#include "form/dispatch.h"

#include <cerrno>
#include <new>
#include <system_error>

#include "engine/text/refusal.h"

namespace zelvion {
namespace {

struct Reason {
  int error;
  const char* text;
};

constexpr std::array<Reason, 15> kReasons = {{
    {EACCES, "l’accès est refusé"},
    {EPERM, "l’opération n’est pas permise"},
    {EROFS, "le disque est en lecture seule"},
    {ENOENT, "le fichier ou son dossier n’existe pas"},
    {ENOTDIR, "son chemin ne mène pas à un dossier"},
    {EISDIR, "c’est un dossier"},
    {EINVAL, "ce n’est pas un fichier ordinaire"},
    {ENXIO, "ce n’est pas un fichier ordinaire"},
    {ENOSPC, "le disque est plein"},
    {EDQUOT, "le quota du disque est atteint"},
    {EFBIG, "le fichier serait trop grand"},
    {EIO, "le disque ne répond pas correctement"},
    {EMFILE, "trop de fichiers sont ouverts"},
    {ENAMETOOLONG, "son chemin est trop long"},
    {ETXTBSY, "le fichier est occupé"},
}};

}  // namespace

std::string reasonOf(const std::error_code& error) {
  for (const Reason& reason : kReasons) {
    if (reason.error == error.value()) return reason.text;
  }
  return "erreur " + std::to_string(error.value()) + " du système";
}

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
    // Without the memory for a message box there is nothing left to say it with; the window stays usable.
    return;
  }
}

}  // namespace zelvion
