#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <vector>

#include "engine/parallel/pieces.h"
#include "pages/chart.h"
#include "pages/facts.h"
#include "pages/map_layout.h"

namespace zelvion {

/// The greatest power that the window shows.
inline constexpr std::int32_t kGreatestPower = 100;

/// What is known of a power: a value that does not change.
struct Power {
  explicit Power(pages::AtlasFacts known);
  Power(const Power&) = delete;
  Power& operator=(const Power&) = delete;
  ~Power() = default;

  bool isCounted() const { return !facts.basins.basins.empty(); }
  /// The share of the numbers that fall into the cycle at this place of the list.
  double share(std::size_t cycle) const { return facts.share(basins[cycle]); }
  /// The place of the cycle with this least point.
  std::size_t placeOf(const Decimal& least) const;
  /// About how much memory this takes.
  std::size_t bytes() const;

  pages::AtlasFacts facts;
  std::vector<const atlas::Basin*> basins;  ///< of the cycles, null for one that no number counted reaches
  double largestShare = 0;
  std::size_t longestOrder = 1;
  std::optional<pages::MapLayout> map;  ///< for the powers whose map is drawn
  std::vector<Decimal> tails;           ///< how many numbers have a tail of each length; none if not counted
  std::vector<Decimal> leastByTail;     ///< the least of them
  pages::BarChart tailsChart;           ///< in the unit square
};

/// The list of the cycles of `k`, with nothing counted; null if it was stopped.
std::shared_ptr<const Power> listedPower(std::int32_t k, Progress& progress);
/// The same with its numbers counted.
std::shared_ptr<const Power> countedPower(const Power& listed, Progress& progress);

/// The cost of counting the numbers of a power.
struct Effort {
  double seconds;
  std::size_t megabytes;
};
Effort countingEffort(std::int32_t k);

/// A cache of computed powers, of up to 256 MB; the oldest is evicted first.
class KeptPowers {
 public:
  explicit KeptPowers(std::size_t limit = std::size_t{256} << 20) : limit_(limit) {}

  /// Keeps `power`, in place of an earlier state of the same power.
  void keep(std::shared_ptr<const Power> power);
  /// Null if it is not there.
  std::shared_ptr<const Power> find(std::int32_t k) const;

 private:
  std::size_t limit_;
  std::list<std::shared_ptr<const Power>> powers_;  ///< the oldest first
};

}  // namespace zelvion
