#include <algorithm>
#include <new>
#include <utility>

#include "engine/text/number.h"
#include "engine/text/utf8.h"
#include "engine/transform/orbit.h"
#include "form/catalogue/catalogue_rows.h"
#include "form/shell/velmoire.h"

namespace zelvion {

void Velmoire::Command9_Click() {
  const double k = text::toDouble(ordrek.Text, kPowerName);
  const auto* row =
      std::find_if(kCatalogue.begin(), kCatalogue.end(), [&](const CatalogueRow& r) { return r.order == k; });
  std::string shown;
  if (row != kCatalogue.end()) {
    shown = row->text;
    if (!row->start.empty()) elem.Text = row->start;
  }
  inform(shown, "Nombre(s) narcissique(s) parfait(s) d'ordre " + ordrek.Text);
  RichTextBox1.Text = shown;
}

void Velmoire::Command12_Click() {
  const char* file = nullptr;
  const auto list = [&](const char* name) {
    file = name;
    const std::string data = readText(name);
    std::string lines;
    lines.reserve(data.size());
    for (std::string_view rest = data; !rest.empty();)
      lines.append(text::takeLine(rest)).append(text::kLineEnd);
    return lines;
  };
  try {
    std::string first = list("amstrong.txt");
    const bool more =
        ask(first, "Tous les nombres de Amstrong ou nombres narcissiques parfaits. Suite pour k >23?");
    RichTextBox1.Text = std::move(first);
    if (!more) return;
    if (!ask(list("amstrong2.txt"), "Liste des nombres de Amstrong de k=24 à k=36. Suite et fin?")) return;
    inform(list("amstrong3.txt"), "Liste des derniers nombres de Amstrong à partir de k=37.");
  } catch (const std::bad_alloc&) {
    refuseData(file, kTooLarge);
  }
}

}  // namespace zelvion
