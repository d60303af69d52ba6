#include "command/atlas_pictures.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "command/typography.h"

namespace zelvion::command {

const char* const kAtlasColours =
    R"(:root{color-scheme:light dark;--fond:#fcfcf9;--encre:#1d1d1b;--gris:#63635d;--trait:#d8d8d0;--anneau:#1f5fae;--aire:#cfe0f4;--fixe:#b4430b;--arbre:#5f7f8f}
@media(prefers-color-scheme:dark){:root{--fond:#16181a;--encre:#ebebe6;--gris:#a7a79f;--trait:#3b3e41;--anneau:#8cb8f5;--aire:#26394f;--fixe:#ffab73;--arbre:#7f9dad}}
@media print{:root{color-scheme:light;--fond:#fff;--encre:#000;--gris:#444;--trait:#bbb;--anneau:#1f5fae;--aire:#cfe0f4;--fixe:#b4430b;--arbre:#5f7f8f}}
svg text{fill:var(--encre);font-family:"Liberation Sans",Arial,sans-serif}
)";

namespace {

using std::numbers::pi;

std::string number(double value) { return decimalText(value); }

std::string svgBegin(double width, double height, const std::string& title, const std::string& description,
                     const std::string& attributes = "") {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + number(width) + " " + number(height) +
         "\" width=\"" + number(width) + "\" height=\"" + number(height) + "\" role=\"img\"" + attributes +
         "><title>" + typeset(title) + "</title><desc>" + typeset(description) + "</desc>";
}

std::string circle(double x, double y, double radius, const std::string& style) {
  return "<circle cx=\"" + number(x) + "\" cy=\"" + number(y) + "\" r=\"" + decimalText(radius, 2) +
         "\" style=\"" + style + "\"/>";
}

std::string line(double x1, double y1, double x2, double y2) {
  return "<path d=\"M" + number(x1) + " " + number(y1) + "L" + number(x2) + " " + number(y2) +
         "\" style=\"stroke:var(--trait);fill:none\"/>";
}

std::string label(double x, double y, const std::string& text, const std::string& anchor = "middle",
                  const std::string& more = "") {
  return "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" text-anchor=\"" + anchor + "\"" + more + ">" +
         text + "</text>";
}

/// A round number of at least `value`: 1, 2 or 5 times a power of ten.
double roundAbove(double value) {
  if (value <= 0) return 1;
  const double unit = std::pow(10, std::floor(std::log10(value)));
  for (const double times : {1.0, 2.0, 5.0}) {
    if (times * unit >= value * (1 - 1e-12)) return times * unit;
  }
  return 10 * unit;
}

/// The frame of a chart, drawn by its own units.
struct Chart {
  double width = 0, height = 0;
  double left = 88, right = 12, top = 12, bottom = 52;
  double mostX = 1, mostY = 1;

  double x(double value) const { return left + value / mostX * (width - left - right); }
  double y(double value) const { return height - bottom - value / mostY * (height - top - bottom); }

  /// Lines at round values, up to the one that no value passes; sets mostY to that.
  std::string axisY(double greatest, const std::function<std::string(double)>& text) {
    const double step = roundAbove(greatest / 5);
    const int lines = std::max(1, static_cast<int>(std::ceil(greatest / step - 1e-9)));
    mostY = lines * step;
    std::string svg;
    for (int i = 0; i <= lines; ++i) {
      svg += line(left, y(i * step), width - right, y(i * step)) +
             label(left - 6, y(i * step) + 4, text(i * step), "end");
    }
    return svg;
  }
  std::string axisX(const std::string& title) const {
    std::string svg;
    const double step = std::max(1.0, roundAbove(mostX / 8));
    for (int i = 0; i * step <= mostX; ++i) {
      const double value = i * step;
      svg += label(x(value), height - bottom + 18, groupedDigits(decimalText(value, 0)));
    }
    return svg + label((left + width - right) / 2, height - 6, typeset(title));
  }
};

}  // namespace

std::string ringPicture(const AtlasFacts& facts, const atlas::Cycle& cycle) {
  constexpr double kSize = 140;
  constexpr double kDisc = 66;
  constexpr double kRing = 60;
  std::size_t longest = 1;
  for (const atlas::Cycle& other : facts.cycles) longest = std::max(longest, other.order());
  const double share = facts.share(facts.basinOf(cycle));
  const double order = static_cast<double>(cycle.order());
  const std::string name = cycle.isFixedPoint() ? "Point fixe " + cycle.least().text()
                                                : "Cycle d'ordre " + std::to_string(cycle.order()) +
                                                      " depuis " + cycle.least().text();
  std::string svg =
      svgBegin(kSize, kSize, name,
               "Un disque pour " + percentText(share) + " des nombres" +
                   (cycle.isFixedPoint() ? ", un point en son centre."
                                         : ", un anneau de " + std::to_string(cycle.order()) + " points."));
  svg += circle(kSize / 2, kSize / 2, kDisc * std::sqrt(share / facts.largestShare()), "fill:var(--aire)");
  if (cycle.isFixedPoint()) return svg + circle(kSize / 2, kSize / 2, 3, "fill:var(--fixe)") + "</svg>";

  const double radius = std::max(4.0, kRing * order / static_cast<double>(longest));
  const bool pointsFit = 2 * pi * radius / order >= 4.5;
  svg += circle(kSize / 2, kSize / 2, radius,
                "fill:none;stroke:var(--anneau);stroke-width:" + std::string(pointsFit ? "1" : "2.5"));
  for (std::size_t i = 0; pointsFit && i < cycle.order(); ++i) {
    const double angle = 2 * pi * static_cast<double>(i) / order - pi / 2;
    svg += circle(kSize / 2 + radius * std::cos(angle), kSize / 2 + radius * std::sin(angle), 2,
                  "fill:var(--anneau)");
  }
  return svg + "</svg>";
}

std::string tailsPicture(const AtlasFacts& facts, std::span<const Decimal> numbers) {
  std::vector<double> shares;
  for (const Decimal& count : numbers) shares.push_back(shareOf(count, facts.basins.digits));
  Chart chart{.width = 720, .height = 280, .mostX = static_cast<double>(shares.size())};
  std::string svg = svgBegin(chart.width, chart.height, "Combien de pas avant le cycle",
                             "Pour chaque nombre de pas, de 0 à " + std::to_string(shares.size() - 1) +
                                 ", la part des nombres qui en font autant avant d'être sur leur cycle.",
                             " class=\"large\"");
  svg += chart.axisY(*std::ranges::max_element(shares), percentText);
  svg += chart.axisX("pas avant le cycle");
  svg += "<path d=\"M" + number(chart.x(0)) + " " + number(chart.y(0));
  for (std::size_t i = 0; i < shares.size(); ++i) {
    svg += "V" + number(chart.y(shares[i])) + "H" + number(chart.x(static_cast<double>(i + 1)));
  }
  return svg + "V" + number(chart.y(0)) + "Z\" style=\"fill:var(--anneau)\"/></svg>";
}

std::string descentPicture(const AtlasFacts& facts, std::span<const Decimal> iterates) {
  std::vector<double> values;
  for (const Decimal& value : iterates) values.push_back(shareOf(value, facts.rangeDigits));
  Chart chart{
      .width = 720, .height = 240, .mostX = static_cast<double>(std::max<std::size_t>(values.size() - 1, 1))};
  std::string svg =
      svgBegin(chart.width, chart.height, "La descente de " + iterates.front().text(),
               "La valeur de chaque itéré, du nombre lui-même au premier point de son cycle, en parts de " +
                   powerOfTenText(facts.rangeDigits) + ".",
               " class=\"large\"");
  svg += chart.axisY(*std::ranges::max_element(values), [](double value) {
    std::string text = decimalText(value, 6);
    std::ranges::replace(text, '.', ',');
    return text;
  });
  svg += chart.axisX("pas");
  // Where a line would only be a tangle there are points.
  constexpr std::size_t kMostSegments = 300;
  const bool asPoints = values.size() > kMostSegments;
  std::string path;
  for (std::size_t i = 0; i < values.size(); ++i) {
    path += asPoints || i == 0 ? "M" : "L";
    path += number(chart.x(static_cast<double>(i))) + " " + number(chart.y(values[i]));
    if (asPoints) path += "h0";
  }
  svg +=
      "<path d=\"" + path +
      "\" style=\"fill:none;stroke:var(--anneau);stroke-linejoin:round;stroke-linecap:round;stroke-width:" +
      (asPoints ? "2" : "1.2") + "\"/>";
  return svg +
         circle(chart.x(static_cast<double>(values.size() - 1)), chart.y(values.back()), 4,
                "fill:var(--fixe)") +
         "</svg>";
}

std::string barsPicture(const std::string& title, const std::string& description, std::int32_t first,
                        std::span<const double> values, const std::string& unit) {
  const auto count = static_cast<double>(values.size());
  Chart chart{.width = 360, .height = 220, .left = 56, .right = 8, .mostX = count};
  std::string svg = svgBegin(chart.width, chart.height, title, description);
  svg += chart.axisY(*std::ranges::max_element(values), [&](double value) {
    std::string text = decimalText(value, 2);
    std::ranges::replace(text, '.', ',');
    return (text.find(',') == std::string::npos ? groupedDigits(text) : text) + unit;
  });
  std::string path;
  const double step = std::max(1.0, roundAbove(count / 10));
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double place = static_cast<double>(i);
    path += "M" + number(chart.x(place + 0.15)) + " " + number(chart.y(0)) + "V" +
            number(chart.y(values[i])) + "H" + number(chart.x(place + 0.85)) + "V" + number(chart.y(0)) + "Z";
    const std::int32_t k = first + static_cast<std::int32_t>(i);
    if (i == 0 || std::fmod(k, step) == 0) {
      svg += label(chart.x(place + 0.5), chart.height - chart.bottom + 18, std::to_string(k));
    }
  }
  return svg + "<path d=\"" + path + "\" style=\"fill:var(--anneau)\"/>" +
         label((chart.left + chart.width - chart.right) / 2, chart.height - 6, "puissance k") + "</svg>";
}

}  // namespace zelvion::command
