#include <algorithm>
#include <array>
#include <vector>

#include "engine/arith/decimal.h"
#include "engine/fixedpoints/multiset_walk.h"
#include "engine/text/number.h"
#include "engine/text/utf8.h"
#include "engine/transform/orbit.h"
#include "form/shell/velmoire.h"

namespace zelvion {
namespace {

// clang-format off
const std::string kMeaning =
    "La silhouette d'un nombre entier est la suite ordonnée du nombre de ses chiffres 9,8,..jusqu'à 1, les zéros éventuels n'étant pas pris en compte.";
// clang-format on

// "(", the counts of the digits from 9 down to `lowest`, and ")".
std::string counts(const std::string& ent, char lowest) {
  std::string text;
  for (char digit = '9'; digit >= lowest; --digit) {
    text += (text.empty() ? "(" : ", ") + std::to_string(Velmoire::NbchifK(ent, std::string(1, digit)));
  }
  return text + ")";
}

}  // namespace

std::int16_t Velmoire::NbchifK(const std::string& ent, const std::string& stN) {
  text::requireLength(ent);
  std::int16_t count = 0;
  for (std::string_view rest = ent; !rest.empty();) {
    const std::size_t size = text::firstCharacterSize(rest);
    if (rest.substr(0, size) == stN) ++count;
    rest.remove_prefix(size);
  }
  return count;
}

std::string Velmoire::Nbchif(const std::string& ent) { return counts(ent, '0'); }

std::string Velmoire::Sil(const std::string& ent) { return counts(ent, '1'); }

bool Velmoire::Test40et7x9(const std::string& ent) {
  return text::length(ent) == 40 && NbchifK(ent, "9") >= 7;
}

void Velmoire::Command8_Click() {
  const std::string& p = entier.Text;
  inform("Nombre de chiffres du p choisi = " + std::to_string(text::length(p)) + std::string(text::kLineEnd) +
             "Nombre de 9,8,7,6,5,4,3,2,1,0 dans p = " + Nbchif(p),
         standardTitle());
  if (Test40et7x9(p)) inform("entrée avec 40 chiffres dont au moins 7 fois 9");
}

void Velmoire::Command15_Click() {
  inform(kMeaning + std::string(text::kLineEnd) + "Sil(p) = " + Sil(entier.Text),
         "Transformations velmoires sur les entiers, k= " + ordrek.Text);
}

std::string Velmoire::Complete9(const std::string& ent1) {
  constexpr std::size_t kKept = 33;
  constexpr std::size_t kLongest = 32'767;
  text::requireLength(ent1, kLongest);
  const std::size_t length = text::length(ent1);
  if (length >= kKept) return std::string(text::prefix(ent1, kKept)) + "9999999";
  return ent1 + "9999999" + std::string(kKept - length, '3');
}

std::string Velmoire::Classenbre(const std::string& ent) {
  std::string sorted;
  for (char digit = '9'; digit >= '1'; --digit) {
    sorted.append(static_cast<std::size_t>(NbchifK(ent, std::string(1, digit))), digit);
  }
  return sorted;
}

std::string Velmoire::Listenbre() {
  std::string list = "1,2,3,4,5,6,7,8,9,11";
  std::int32_t added = 0;
  for (int i = 12; i <= 100; ++i) {
    const std::string number = std::to_string(i);
    if (NbchifK(number, "0") > 0) continue;
    ++added;
    list += "," + Classenbre(number);
  }
  inform(" en nombre : " + std::to_string(added));
  RichTextBox1.Text = list;
  Records records(*this, "Listenbre.txt");
  records.append(list + std::string(text::kLineEnd));
  records.sync();
  return list;
}

void Velmoire::Command13_Click() {
  const auto lastLine = [&](const std::string& file) {
    const std::string data = readText(file);
    std::string_view line;
    for (std::string_view rest = data; !rest.empty();) line = text::takeLine(rest);
    return std::string(line);
  };
  const std::string two = lastLine("Listenbre2.txt");
  const std::string three = lastLine("Listenbre3.txt");
  const std::string four = lastLine("Listenbre4.txt");
  const std::string lineEnd(text::kLineEnd);
  const std::string list = "1;2;3;4;5;6;7;8;9;" + two + lineEnd + three + lineEnd + four;
  inform(
      list,
      "Compter sous les Transformations velmoires de 1 à 9999 (suite et totalité dans la fenêtre d'édition)");
  RichTextBox1.Text = list;
}

std::int32_t Velmoire::Cpteboucle(const std::int16_t& m) {
  constexpr int kLast = 23;
  if (m == 1) return 10;  // the enumerator of one digit counts the 0 as well
  return m >= 2 && m <= kLast ? MultisetWalk::count(m) : 0;
}

void Velmoire::Command11_Click() {
  constexpr std::int16_t kFirstWithoutCount = 24;
  const double k = text::toDouble(ordrek.Text, kPowerName);
  const auto zeros = text::toInt16(k - 1);
  const auto m = text::toInt16(k);
  if (!zeros || !m) text::refuseRange(ordrek.Text, kPowerName, -32'767, 32'767);
  const std::string bound = "9" + std::string(static_cast<std::size_t>(std::max<int>(*zeros, 0)), '0');
  const std::string prompt =
      *m < kFirstWithoutCount ? std::to_string(Cpteboucle(*m)) + ", très inférieur à " + bound
                              : "Non fourni ici, mais tout à fait calculable! et très inférieur à " + bound;
  inform(prompt, "Nombre de silhouettes à " + ordrek.Text + " chiffres");
}

void Velmoire::Cpteboucle23() {
  constexpr int kLoops = 23;
  ordrek.Text = std::to_string(kLoops);
  // The nested loops of the enumerators, with all indices in one array.
  std::array<std::int16_t, kLoops> digits{};
  digits.fill(1);
  std::int32_t cases = 0;
  for (std::size_t moved = 0; moved != digits.size();) {
    ++cases;
    // Increment the innermost index that is below its outer neighbour, and reset those inside it to 1.
    for (moved = 0; moved < digits.size(); ++moved) {
      std::int16_t& digit = digits[digits.size() - 1 - moved];
      const std::int16_t bound =
          moved + 1 < digits.size() ? digits[digits.size() - 2 - moved] : std::int16_t{9};
      if (digit < bound) {
        ++digit;
        break;
      }
      digit = 1;
    }
  }
  inform("nombre de cas: " + std::to_string(cases), "Silhouettes d'ordre " + ordrek.Text);
  inform("pour 7= 0");
}

}  // namespace zelvion
