#include <utility>

#include "engine/text/utf8.h"
#include "engine/transform/orbit.h"
#include "form/shell/velmoire.h"

namespace zelvion {
namespace {

// The first `count` iterates, each after a blank.
std::string iterates(const std::string& kText, const std::string& start, int count) {
  DigitPower power(kText);
  Orbit orbit(power, start);
  std::string list;
  for (int i = 0; i < count; ++i) {
    orbit.advance();
    list += ' ';
    orbit.appendTo(list);
  }
  return list;
}

}  // namespace

std::string Velmoire::sommepuis(const std::string& ent) {
  DigitPower power(ordrek.Text);
  Orbit orbit(power, ent);
  orbit.advance();
  return orbit.text();
}

void Velmoire::Command10_Click() {
  const std::string image = sommepuis(entier.Text);
  if (entier.Text == image) inform("point fixe = " + image, "Transformations velmoires, k = " + ordrek.Text);
  entier.Text = image;
}

void Velmoire::Command6_Click() {
  std::string before = std::exchange(RichTextBox1.Text, "Je calcule ...");
  std::string start = entier.Text;
  if (start.empty()) {
    inform("Choisissez un nombre à étudier! Je choisis 789 par exemple!", standardTitle());
    start = "789";
  }
  try {
    RichTextBox1.Text = iterates(ordrek.Text, start, 1'000);
  } catch (...) {
    RichTextBox1.Text = std::move(before);
    throw;
  }
}

void Velmoire::Command2_Click() { itinerary(100, "ITINERAIRE (ordre 100) du point  "); }

void Velmoire::Command7_Click() { itinerary(50, "ITINERAIRE (ordre 50) du point  "); }

void Velmoire::itinerary(int limit, const std::string& heading) {
  static const std::string kFixed = " est un point fixe (ce qui rend inutile la poursuite de l'itération)";
  const std::string lineEnd(text::kLineEnd);
  const std::string& start = elem.Text;
  std::string list = heading + start + ": " + lineEnd + lineEnd;

  DigitPower power(ordrek.Text);
  Orbit orbit(power, start);
  orbit.advance();
  std::string current = orbit.text();
  if (current == start) {
    inform(list + start + kFixed, standardTitle());
    return;
  }
  std::string largest = Maxi(start, current);
  list += "(" + current;
  for (int listed = 1;;) {
    if (current == start) {
      list += ")";
      break;
    }
    orbit.advance();
    std::string next = orbit.text();
    largest = Maxi(largest, next);
    if (next == current) {
      list += ")" + lineEnd + current + kFixed;
      break;
    }
    list += ", " + next;
    current = std::move(next);
    if (++listed == limit) {
      list += "...)";
      break;
    }
  }
  inform("VALEUR MAXIMALE ATTEINTE = " + largest + lineEnd + lineEnd + list, standardTitle());
}

}  // namespace zelvion
