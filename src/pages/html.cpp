#include "pages/html.h"

#include "pages/embedded/embedded.h"
#include "pages/typography.h"

namespace zelvion::pages {
namespace {

std::string link(const std::string& file, const std::string& text) {
  return "<a href=\"" + file + "\">" + typeset(text) + "</a>";
}

std::string navigationWith(const std::string& neighbours) {
  return "<nav aria-label=\"Atlas\">" + link("index.html", "Toutes les puissances") + neighbours +
         link("preuve.html", "La preuve") + link("puissances.html", "D'une puissance à l'autre") + "</nav>\n";
}

}  // namespace

std::string page(const std::string& title, const std::string& navigation, const std::string& body) {
  const std::string whole = title == "Atlas des cycles" ? title : title + " – Atlas des cycles";
  return "<!DOCTYPE html>\n<html lang=\"fr\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width\">\n<meta name=\"generator\" "
         "content=\"velmoire " ZELVION_VERSION "\">\n<title>" +
         typeset(whole) + "</title>\n<style>\n" + embedded::kColours + embedded::kStyle +
         "</style>\n</head>\n<body>\n" + navigation + "<main>\n" + body + "</main>\n<footer>" +
         paragraph(
             "Pour citer cette page : <cite>Atlas des cycles</cite>, « " + title +
             " », zelvion " ZELVION_VERSION
             ". Un lecteur qui ne veut pas croire le programme a <a href=\"verifier.py\">verifier.py</a>, "
             "qui refait ces comptes sans lui.") +
         "</footer>\n</body>\n</html>\n";
}

std::string navigation() { return navigationWith(""); }

std::string navigation(std::span<const AtlasFacts> powers, std::size_t place) {
  std::string neighbours;
  if (place > 0) neighbours += linkTo(powers[place - 1].k, "← k = " + std::to_string(powers[place - 1].k));
  if (place + 1 < powers.size())
    neighbours += linkTo(powers[place + 1].k, "k = " + std::to_string(powers[place + 1].k) + " →");
  return navigationWith(neighbours);
}

std::string paragraph(const std::string& text, const std::string& attributes) {
  return "<p" + attributes + ">" + typeset(text) + "</p>\n";
}

std::string heading(const std::string& text) { return "<h2>" + typeset(text) + "</h2>\n"; }

std::string figure(const std::string& picture, const std::string& caption) {
  return "<figure>" + picture + "<figcaption>" + typeset(caption) + "</figcaption></figure>\n";
}

std::string cell(const std::string& text, const std::string& attributes) {
  return "<td" + attributes + ">" + text + "</td>";
}

std::string rowName(const std::string& text) { return "<th scope=\"row\">" + text + "</th>"; }

std::string numberCell(const std::string& digits) { return cell(groupedDigits(digits), " class=\"nombre\""); }

std::string table(const std::string& label, std::initializer_list<const char*> names,
                  const std::string& rows) {
  std::string head;
  for (const char* name : names) head += "<th scope=\"col\">" + typeset(name) + "</th>";
  return "<div class=\"defile\" role=\"region\" tabindex=\"0\" aria-label=\"" + typeset(label) +
         "\"><table><thead><tr>" + head + "</tr></thead><tbody>\n" + rows + "</tbody></table></div>\n";
}

std::string nameOf(std::int32_t k) { return "k" + std::to_string(k); }

std::string linkTo(std::int32_t k, const std::string& text) {
  return "<a href=\"" + nameOf(k) + ".html\">" + text + "</a>";
}

}  // namespace zelvion::pages
