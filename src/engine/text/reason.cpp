#include "engine/text/reason.h"

#include <array>
#include <cerrno>

namespace zelvion::text {
namespace {

struct Reason {
  int error;
  const char* text;
};

constexpr std::array<Reason, 28> kReasons = {{
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
    {EFBIG, "le fichier est trop grand"},
    {EOVERFLOW, "le fichier est trop grand"},
    {EIO, "le disque ne répond pas correctement"},
    {ETIMEDOUT, "le disque ne répond pas à temps"},
    {ENODEV, "le disque n’est plus là"},
    {ENOMEDIUM, "le disque n’est plus là"},
    {ESTALE, "le disque du réseau n’est plus là"},
    {EUCLEAN, "le disque est endommagé"},
    {ENOKEY, "son dossier est chiffré et n’est pas déverrouillé"},
    {EBADF, "le flux est fermé"},
    {ENOMEM, "la mémoire ne suffit pas"},
    {ENFILE, "trop de fichiers sont ouverts"},
    {EMFILE, "trop de fichiers sont ouverts"},
    {ENAMETOOLONG, "son chemin est trop long"},
    {ELOOP, "son chemin passe par des liens qui tournent en rond"},
    {EAGAIN, "le fichier est occupé"},
    {EBUSY, "le fichier est occupé"},
    {ETXTBSY, "le fichier est occupé"},
}};

}  // namespace

std::string reasonOf(const std::error_code& error) {
  for (const Reason& reason : kReasons) {
    if (reason.error == error.value()) return reason.text;
  }
  return "erreur " + std::to_string(error.value()) + " du système";
}

}  // namespace zelvion::text
