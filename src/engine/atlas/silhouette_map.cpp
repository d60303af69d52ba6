#include "engine/atlas/silhouette_map.h"

#include <algorithm>
#include <cassert>
#include <functional>

#include "engine/atlas/range.h"
#include "engine/transform/transformation.h"

namespace zelvion::atlas {
namespace {

// Appends all multisets that begin with `digits`.
void extend(std::string& digits, std::size_t size, std::vector<MapNode>& nodes) {
  if (digits.size() == size) {
    nodes.push_back({digits, {}, 0, false});
    return;
  }
  for (char digit = '0'; digit <= (digits.empty() ? '9' : digits.back()); ++digit) {
    digits.push_back(digit);
    extend(digits, size, nodes);
    digits.pop_back();
  }
}

}  // namespace

std::vector<MapNode> silhouetteMap(std::int32_t k) {
  assert(k >= 1 && k <= kMaxMapPower);
  const auto size = static_cast<std::size_t>(rangeDigits(k));
  std::vector<MapNode> nodes;
  std::string digits;
  extend(digits, size, nodes);

  Transformation transformation(k);
  for (MapNode& node : nodes) {
    node.image = transformation.image(silhouetteOf(node.digits));
    std::string reached = node.image.padded(size);
    std::ranges::sort(reached, std::greater());
    node.next = static_cast<std::size_t>(std::ranges::lower_bound(nodes, reached, {}, &MapNode::digits) -
                                         nodes.begin());
  }

  // What has no node before it is on no cycle, and falls off, again and again.
  std::vector<std::size_t> before(nodes.size(), 0);
  for (const MapNode& node : nodes) ++before[node.next];
  std::vector<std::size_t> fallen;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (before[i] == 0) fallen.push_back(i);
  }
  for (std::size_t i = 0; i < fallen.size(); ++i) {
    if (--before[nodes[fallen[i]].next] == 0) fallen.push_back(nodes[fallen[i]].next);
  }
  for (std::size_t i = 0; i < nodes.size(); ++i) nodes[i].onCycle = before[i] > 0;
  return nodes;
}

}  // namespace zelvion::atlas
