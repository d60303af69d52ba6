#include "pages/pictures.h"

#include <algorithm>
#include <cmath>

#include "pages/chart.h"
#include "pages/svg.h"
#include "pages/typography.h"

namespace zelvion::pages {

namespace {

// The frame of a chart as large as this, with room for the texts of its axes.
Frame frameOf(double width, double height, double left, double right) {
  return {left, 12, width - right, height - 58};
}

std::string textAt(const Place& place, const std::string& anchor, const std::string& down,
                   const std::string& text) {
  return "<text x=\"" + decimalText(place.x) + "\" y=\"" + decimalText(place.y) + "\" dy=\"" + down +
         "\" text-anchor=\"" + anchor + "\">" + text + "</text>";
}

// Both axes: a line across the frame for each value, and the title of the steps below.
std::string axes(const Frame& frame, const std::vector<Tick>& across, const std::vector<Tick>& values,
                 const std::string& title) {
  std::string svg;
  std::string lines;
  for (const Tick& tick : values) {
    lines += "M" + svgPlace({frame.left, tick.at}) + "H" + decimalText(frame.right);
    svg += textAt({frame.left - 6, tick.at}, "end", ".35em", tick.text);
  }
  for (const Tick& tick : across) svg += textAt({tick.at, frame.bottom}, "middle", "1.3em", tick.text);
  return "<path d=\"" + lines + "\" style=\"stroke:var(--trait);fill:none\"/>" + svg +
         textAt({(frame.left + frame.right) / 2, frame.bottom + 52}, "middle", "0", typeset(title));
}

}  // namespace

std::string ringPicture(const std::string& title, const std::string& description, const RingFacts& facts) {
  constexpr double kSize = 140;
  const bool isFixed = facts.order == 1;
  const RingLayout ring = ringLayout(kSize, facts.order, facts.longest, facts.share, facts.largestShare);
  // As high as it needs to be, so that small ones leave no empty squares.
  const double half = std::min(kSize / 2, std::ceil(std::max({ring.disc, ring.ring, kSize / 10})) + 6);
  std::string svg = svgBegin(kSize, 2 * half, title, description) + "<g transform=\"translate(0 " +
                    decimalText(half - kSize / 2) + ")\">" +
                    svgCircle(ring.centre, ring.disc, "fill:var(--aire);stroke:var(--arbre)");
  if (!isFixed) {
    svg += svgCircle(ring.centre, ring.ring,
                     std::string("fill:none;stroke:var(--anneau);stroke-width:") +
                         (ring.points.empty() ? "2.5" : "1")) +
           svgArrow(ring.arrow, 7, "fill:var(--anneau)");
  }
  for (const Place& point : ring.points) {
    svg += isFixed ? svgCircle(point, 3, "fill:var(--fixe)") : svgCircle(point, 2, "fill:var(--anneau)");
  }
  return svg + "</g></svg>";
}

std::string tailsPicture(const AtlasFacts& facts, std::span<const Decimal> numbers) {
  constexpr double kWidth = 720, kHeight = 280;
  const Frame frame = frameOf(kWidth, kHeight, 88, 12);
  const BarChart chart = tailsChart(numbers, facts.basins.digits, frame);
  const std::string svg =
      svgBegin(kWidth, kHeight, "Combien de pas avant le cycle",
               "Pour chaque nombre de pas, de 0 à " + groupedDigits(std::to_string(numbers.size() - 1)) +
                   ", la part des nombres qui en font autant avant d'être sur leur cycle.",
               "role=\"img\" class=\"large\"") +
      axes(frame, chart.numbers, chart.values, "pas avant le cycle") + "<path d=\"M" +
      svgPlace({frame.left, frame.bottom});
  // The bars touch: together they are one shape.
  std::string path;
  for (const BarChart::Bar& bar : chart.bars)
    path += "V" + decimalText(bar.top) + "H" + decimalText(bar.right);
  return svg + path + "V" + decimalText(frame.bottom) + "Z\" style=\"fill:var(--anneau)\"/></svg>";
}

std::string descentPicture(const AtlasFacts& facts, std::span<const Decimal> iterates) {
  constexpr double kWidth = 720, kHeight = 240;
  const Frame frame = frameOf(kWidth, kHeight, 88, 12);
  const PathChart chart = pathChart(iterates, iterates.size() - 1, facts.rangeDigits, Scale::kLinear, frame);
  // Where a line would only be a tangle there are points.
  constexpr std::size_t kMostSegments = 300;
  const bool asPoints = chart.path.size() > kMostSegments;
  std::string path;
  for (const PathChart::Value& value : chart.path) {
    path += (asPoints || path.empty() ? "M" : "L") + svgPlace(value.at);
    if (asPoints) path += "h0";
  }
  return svgBegin(
             kWidth, kHeight, "La descente de " + groupedDigits(iterates.front().text()),
             "La valeur de chaque itéré, du nombre lui-même au premier point de son cycle, en parts de " +
                 powerOfTenText(facts.rangeDigits) + ".",
             "role=\"img\" class=\"large\"") +
         axes(frame, chart.steps, chart.values, "pas") + "<path d=\"" + path +
         "\" "
         "style=\"fill:none;stroke:var(--anneau);stroke-linejoin:round;stroke-linecap:round;stroke-width:" +
         (asPoints ? "2" : "1.2") + "\"/>" + svgCircle(chart.path.back().at, 4, "fill:var(--fixe)") +
         "</svg>";
}

std::string barsPicture(const std::string& title, const std::string& description, std::int32_t first,
                        std::span<const double> values, std::string (*textOf)(double)) {
  constexpr double kWidth = 360, kHeight = 220;
  const Frame frame = frameOf(kWidth, kHeight, 56, 8);
  const BarChart chart = barChart(values, static_cast<std::size_t>(first), frame, textOf, 0.3);
  std::string svg = svgBegin(kWidth, kHeight, title, description, "role=\"group\"") +
                    axes(frame, chart.numbers, chart.values, "puissance k");
  for (std::size_t i = 0; i < values.size(); ++i) {
    const BarChart::Bar& bar = chart.bars[i];
    const std::int32_t k = first + static_cast<std::int32_t>(i);
    // What can be pressed is as high as the frame. The keyboard has the same links in the table.
    svg += "<a href=\"k" + std::to_string(k) + ".html\" tabindex=\"-1\" aria-label=\"" +
           typeset("k = " + std::to_string(k) + " : " + textOf(values[i])) +
           "\"><path class=\"barre\" d=\"M" + svgPlace({bar.left, frame.bottom}) + "V" +
           decimalText(bar.top) + "H" + decimalText(bar.right) + "V" + decimalText(frame.bottom) +
           "Z\"/><path d=\"M" + svgPlace({bar.left, frame.top}) + "H" + decimalText(bar.right) + "V" +
           decimalText(frame.bottom) + "H" + decimalText(bar.left) + "Z\" fill-opacity=\"0\"/></a>";
  }
  return svg + "</svg>";
}

}  // namespace zelvion::pages
