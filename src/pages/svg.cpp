#include "pages/svg.h"

#include "pages/typography.h"

namespace zelvion::pages {
namespace {

// Moves and turns what follows.
std::string transformOf(const Place& place, double turn) {
  const std::string rotation = turn == 0 ? "" : " rotate(" + decimalText(turn) + ")";
  return " transform=\"translate(" + svgPlace(place) + ")" + rotation + "\"";
}

}  // namespace

std::string svgPlace(const Place& place) { return decimalText(place.x) + " " + decimalText(place.y); }

std::string svgBegin(double width, double height, const std::string& title, const std::string& description,
                     const std::string& attributes) {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + decimalText(width) + " " +
         decimalText(height) + "\" width=\"" + decimalText(width) + "\" height=\"" + decimalText(height) +
         "\" " + attributes + "><title>" + typeset(title) + "</title><desc>" + typeset(description) +
         "</desc>";
}

std::string svgCircle(const Place& centre, double radius, const std::string& style) {
  return "<circle cx=\"" + decimalText(centre.x) + "\" cy=\"" + decimalText(centre.y) + "\" r=\"" +
         decimalText(radius, 2) + "\" style=\"" + style + "\"/>";
}

std::string svgArrow(const Arrow& arrow, double length, const std::string& style) {
  const std::string back = decimalText(-length / 2);
  const std::string half = decimalText(length / 2);
  return "<path d=\"M" + half + " 0L" + back + " " + back + "V" + half + "Z\"" +
         transformOf(arrow.at, arrow.turn) + " style=\"" + style + "\"/>";
}

std::string svgLabel(const Label& label, const std::string& style) {
  return "<text" + transformOf(label.middle, label.turn) + " dy=\".35em\" text-anchor=\"middle\" style=\"" +
         style + "\">" + label.text + "</text>";
}

}  // namespace zelvion::pages
