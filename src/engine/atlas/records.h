#pragma once

#include <cstdint>
#include <vector>

#include "engine/atlas/basins.h"
#include "engine/parallel/pieces.h"
#include "engine/transform/silhouette.h"

namespace zelvion::atlas {

/// The least numbers with more steps than any number that was counted.
struct FarRecords {
  /// Of those with one step more than the longest tail that was counted, with two more, and so on; the digits
  /// of the least number ascend, none is zero.
  std::vector<Silhouette> numbers;
  std::uint32_t excluded = 0;  ///< the next one has more digits than this
};

/// Looks for the least number with each number of steps beyond those counted, as long as it has at most
/// `most` digits (at most 10^6) and a bounded amount of work suffices: minutes on one thread. `counted` takes
/// in all numbers below 10^rangeDigits(k) and those of two digits. The result depends on nothing else, unless
/// `progress` is stopped, which ends the search with what is found so far.
///
/// Let a be the least number with t steps, where t is at least the longest tail T that was counted. A number
/// n with t + 1 steps is not among those counted, which are all below a power of ten, and its image m has t
/// steps, so that m >= a. If n has L digits, m is at most L * 9^k: L is at least a / 9^k, and the digits of n
/// fall short of L nines by L * 9^k - a at most. Those multisets are tried, of one length after the other; an
/// L-digit number beyond those counted whose image has t steps has t + 1 itself, for all points of cycles
/// are counted. The least has no zeros: without them a number has the same image, and the same steps, since
/// it is not on a cycle either (T is at least 1, as 10 is one step from 1).
FarRecords recordsBeyond(const Basins& counted, unsigned threads, Progress& progress,
                         std::uint32_t most = 100'000, TableMemory memory = {});

}  // namespace zelvion::atlas
