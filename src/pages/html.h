#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>

#include "pages/facts.h"

// Pieces of HTML. Texts are French ones that typeset() has yet to go through, with markup where they want it.
namespace zelvion::pages {

/// A page with this navigation above and a line below that says how to cite it.
std::string page(const std::string& title, const std::string& navigation, const std::string& body);

/// Links to the front page, to the powers beside the one at `place` if that is given, to the proof and to
/// the table across powers.
std::string navigation(std::span<const AtlasFacts> powers, std::size_t place);
std::string navigation();

std::string paragraph(const std::string& text, const std::string& attributes = "");
std::string heading(const std::string& text);
std::string figure(const std::string& picture, const std::string& caption);

std::string cell(const std::string& text, const std::string& attributes = "");
/// The first cell of a row, which names it.
std::string rowName(const std::string& text);
/// A number in groups, in a column of numbers.
std::string numberCell(const std::string& digits);
/// A table, in a box that scrolls where it is too wide; `label` says what it is to those who do not see it.
std::string table(const std::string& label, std::initializer_list<const char*> names,
                  const std::string& rows);

/// "k3", with which the names of a power's files begin.
std::string nameOf(std::int32_t k);
std::string linkTo(std::int32_t k, const std::string& text);

}  // namespace zelvion::pages
