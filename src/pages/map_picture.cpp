#include "engine/atlas/silhouette_map.h"
#include "pages/embedded/embedded.h"
#include "pages/html.h"
#include "pages/map_layout.h"
#include "pages/pictures.h"
#include "pages/svg.h"
#include "pages/typography.h"

namespace zelvion::pages {
namespace {

// The name of the whole drawing, by which a page asks for it without small labels.
const std::string kPreview = "apercu";

std::string treeOf(const MapLayout& map, std::size_t rank) {
  const MapTree& tree = map.trees[rank];
  std::string branches;
  std::string dots;
  for (std::size_t i = 0; i < map.spots.size(); ++i) {
    const MapSpot& spot = map.spots[i];
    if (spot.tree != rank || spot.steps == 0) continue;
    const auto from = [&](const Place& place) {
      return svgPlace({place.x - spot.at.x, place.y - spot.at.y});
    };
    branches += "M" + svgPlace(spot.at) + "c" + from(spot.bend) + " " + from(spot.nextBend) + " " +
                from(map.spots[map.nodes[i].next].at);
    dots += "M" + svgPlace(spot.at) + "h0";
  }
  const bool isFixed = tree.ring.size() == 1;
  std::string svg = "<g>";
  if (!isFixed)
    svg += svgCircle(tree.ringCentre, tree.ringRadius, "fill:none;stroke:var(--anneau);stroke-width:2");
  svg += "<path d=\"" + branches + "\" style=\"fill:none;stroke:var(--arbre);stroke-width:.6\"/><path d=\"" +
         dots + "\" style=\"fill:none;stroke:var(--arbre);stroke-width:2;stroke-linecap:round\"/>";
  for (const Arrow& arrow : tree.arrows) svg += svgArrow(arrow, 9, "fill:var(--anneau)");
  for (const std::size_t node : tree.ring)
    svg += svgCircle(map.spots[node].at, 3.5, isFixed ? "fill:var(--fixe)" : "fill:var(--anneau)");
  return svg + "</g>\n";
}

}  // namespace

std::string mapPicture(const AtlasFacts& facts) {
  constexpr double kHead = 90;
  const MapLayout map = mapLayout(facts);
  const double width = std::max(map.width, 640.0);
  const double height = map.height + kHead;
  const std::string right = decimalText(width);
  std::string labels;
  for (const MapTree& tree : map.trees) {
    for (const Label& label : tree.points) labels += svgLabel(label, "");
    labels += svgLabel(tree.share, "fill:var(--gris)");
  }
  std::string svg =
      svgBegin(width, height, "Carte de la puissance " + std::to_string(facts.k),
               "Les " + groupedDigits(std::to_string(map.nodes.size())) + " multiensembles de " +
                   counted(map.nodes[0].digits.size(), "chiffre") + " et où chacun mène : " +
                   std::to_string(facts.cycles.size()) + " anneaux ou points fixes" +
                   ", avec autour de chacun l'arbre de ce qui y mène, un cercle par pas.") +
      "<style>" + embedded::kColours +
      "text{font-size:13px;paint-order:stroke;stroke:var(--fond);stroke-width:3px}\n" +
      "@media(max-width:" + decimalText(0.85 * width, 0) + "px){#" + kPreview +
      ":target text{display:none}}\n#" + kPreview + ":target>.fond{display:none}</style>" + "<g id=\"" +
      kPreview + "\"><path d=\"M0 0H" + right + "V" + decimalText(height) +
      "H0Z\" class=\"fond\" style=\"fill:var(--fond)\"/>" +
      svgLabel({typeset("La somme des puissances " + std::to_string(facts.k) + " des chiffres"),
                {width / 2, 36},
                0,
                0,
                0},
               "font-size:28px") +
      svgLabel({typeset(proofText(facts)), {width / 2, 68}, 0, 0, 0}, "font-size:15px;fill:var(--gris)") +
      "<g transform=\"translate(" + svgPlace({(width - map.width) / 2, kHead}) + ")\">";
  for (std::size_t i = 0; i < map.trees.size(); ++i) svg += treeOf(map, i);
  return svg + labels + "</g></g></svg>\n";
}

std::string mapImage(const AtlasFacts& facts) {
  const std::string file = nameOf(facts.k) + "-carte.svg";
  return "<a href=\"" + file + "\"><img class=\"carte\" src=\"" + file + "#" + kPreview + "\" alt=\"" +
         typeset("La carte de la puissance " + std::to_string(facts.k) + ", en grand : " + proofText(facts)) +
         "\"></a>";
}

}  // namespace zelvion::pages
