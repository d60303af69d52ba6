#pragma once

#include <string>

#include "pages/map_layout.h"

// Pieces of SVG.
namespace zelvion::pages {

/// "12.5 40"
std::string svgPlace(const Place& place);
/// The beginning of a picture of this size, with its title and description, which are French texts, and its
/// attributes: it is an image, or a group if there are links in it.
std::string svgBegin(double width, double height, const std::string& title, const std::string& description,
                     const std::string& attributes = "role=\"img\"");
std::string svgCircle(const Place& centre, double radius, const std::string& style);
/// An arrowhead of this length with its middle at the arrow's place.
std::string svgArrow(const Arrow& arrow, double length, const std::string& style);
/// A text with the middle of its box where the label says; `style` has its colours.
std::string svgLabel(const Label& label, const std::string& style);

}  // namespace zelvion::pages
