#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "command/atlas_work.h"
#include "command/subcommands.h"
#include "engine/atlas/range.h"
#include "engine/atlas/silhouette_map.h"
#include "engine/text/reason.h"
#include "pages/pages.h"
#include "pages/pictures.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

constexpr std::array kOptions = {
    Option{'k', "puissance", "K", "la puissance, ou plusieurs comme 1..20, aussi bien que sans -k"},
    Option{'o', "dossier", "DOSSIER", "où écrire les pages (par défaut, atlas)"},
    Option{0, "image", "FICHIER", "n'écrit que la carte d'une puissance de 2 à 5, en SVG"},
    kDigitsOption,
    kMemoryOption,
    kResumeOption,
    kThreadsOption,
    kHelpOption,
    kHelpAlias};

[[noreturn]] void fail(const std::string& what, const std::filesystem::path& path,
                       const std::error_code& error) {
  throw std::runtime_error("Impossible " + what + " « " + path.string() + " » : " + text::reasonOf(error) +
                           ".");
}

void writeFile(const std::filesystem::path& path, const std::string& text) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) fail("d'écrire le fichier", path, {errno == 0 ? EIO : errno, std::generic_category()});
}

int run(const Arguments& arguments, Output& output, Environment& environment) {
  const IntegerRange powers =
      powersOf(arguments, "La puissance",
               "Il faut une puissance, par exemple 3, ou un intervalle comme 1..20.", atlas::kMaxPower);
  AtlasWork work(arguments, environment, powers, true);
  const auto image = arguments.value("image");
  if (image && (powers.first != powers.last || powers.first < 2 || powers.first > atlas::kMaxMapPower)) {
    throw WrongCall("Une carte se dessine pour une seule puissance, de 2 à 5.");
  }
  // Reports an unusable folder before the work, which may be long.
  const std::filesystem::path folder(std::string(arguments.value("dossier").value_or("atlas")));
  std::error_code error;
  if (!image) std::filesystem::create_directories(folder, error);
  if (error) fail("de créer le dossier", folder, error);
  if (!image && ::access(folder.c_str(), W_OK | X_OK) != 0)
    fail("d'écrire dans le dossier", folder, {errno, std::generic_category()});
  std::vector<pages::AtlasFacts> facts;
  for (std::int32_t k = powers.first; k <= powers.last; ++k) {
    auto found = findFacts(k, work, environment);
    if (!found) break;
    facts.push_back(std::move(*found));
  }
  if (image && !facts.empty()) {
    writeFile(std::string(*image), pages::mapPicture(facts.front()));
  } else if (!facts.empty()) {
    const auto pages = pages::atlasPages(facts);
    for (const auto& [name, text] : pages) writeFile(folder / name, text);
    output << pages::typeset(pages::counted(pages.size(), "fichier") + " dans « " + folder.string() +
                             " » : ouvrez ")
           << (folder / "index.html").string() << ".\n";
  }
  const std::int32_t next = powers.first + static_cast<std::int32_t>(facts.size());
  if (next > powers.last) return kSuccess;
  return tellInterrupted(next, work.resumption.has_value(), environment);
}

}  // namespace

constinit const Subcommand kAtlas = {
    "atlas",
    "[K]",
    "des pages avec des images : tous les cycles d'une puissance, ou de plusieurs",
    "Écrit dans un dossier des pages qu'un navigateur montre sans rien d'autre : une vue d'ensemble, et pour "
    "chaque puissance ses cycles, combien de nombres y finissent, le plus long chemin, et pour k = 2 à 5 la "
    "carte de toutes les silhouettes. Avec elles, la preuve que rien ne manque, les records jusqu'à k = 60 "
    "et un "
    "vérificateur en Python, qui refait les comptes sans velmoire.",
    "$ velmoire atlas 1..3 -o atlas\n19 fichiers dans « atlas » : ouvrez atlas/index.html.\n",
    kOptions,
    {},
    false,
    run};

}  // namespace zelvion::command
