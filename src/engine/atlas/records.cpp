#include "engine/atlas/records.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cassert>
#include <cstddef>
#include <limits>
#include <optional>

#include "engine/antecedents/antecedents.h"
#include "engine/atlas/fate_finder.h"

namespace zelvion::atlas {
namespace {

constexpr std::uint64_t kMostWork = 2'000'000'000;  // multisets, for all lengths

// The numbers of one length whose images have so many steps.
template <std::size_t kLimbs>
struct Length {
  using Sum = FixedSum<kLimbs>;

  bool isOver() const { return plan.progress.stop.load(std::memory_order_relaxed) || work > kMostWork; }

  BasinPlan<kLimbs>& plan;
  std::size_t steps;
  Sum least;                         ///< image
  std::array<Sum, 9> shortfalls;     ///< of a digit, against a nine
  std::atomic<std::uint64_t>& work;  ///< done so far, with the lengths before
};

// Numbers with these digits.
template <std::size_t kLimbs>
struct Node {
  Silhouette digits;
  FixedSum<kLimbs> room;   ///< how much greater the image is than the least one
  std::size_t last = 8;    ///< the least digit below 9, or 8
  std::size_t others = 0;  ///< digits below 9
};

// Calls action(node) for a node and for all below it: those with lesser digits, or as many more of its last,
// instead of nines, up to `depth` digits below 9.
template <std::size_t kLimbs, typename Action>
void expand(const Length<kLimbs>& length, const Node<kLimbs>& node, std::size_t depth, const Action& action) {
  if (length.isOver()) return;
  action(node);
  if (node.others == depth || node.digits.counts[8] == 0) return;
  for (std::size_t digit = node.last; digit >= 1; --digit) {
    if (node.room < length.shortfalls[digit]) break;
    Node<kLimbs> child = node;
    child.room -= length.shortfalls[digit];
    --child.digits.counts[8];
    ++child.digits.counts[digit - 1];
    child.last = digit;
    ++child.others;
    expand(length, child, depth, action);
  }
}

// A piece is a node with fewer digits below 9, or one with as many and all below it.
constexpr std::size_t kPieceDepth = 8;

// One thread of the search through a length.
template <std::size_t kLimbs>
class Worker {
 public:
  explicit Worker(const Length<kLimbs>& length) : length_(length), finder_(length.plan) {}

  /// The least number so far whose image has the steps.
  std::optional<Silhouette> best;

  void run(const Node<kLimbs>& piece) {
    const std::size_t depth =
        piece.others < kPieceDepth ? piece.others : std::numeric_limits<std::size_t>::max();
    expand(length_, piece, depth, [this](const Node<kLimbs>& node) { add(node); });
    flush();
  }

 private:
  static constexpr std::size_t kBatch = 256;

  void add(const Node<kLimbs>& node) {
    digits_[size_] = node.digits;
    images_[size_] = packed(length_.least + node.room);
    length_.plan.table.prefetch(images_[size_]);
    if (++size_ == kBatch) flush();
  }

  void flush() {
    finder_.find({images_.data(), size_}, fates_);
    for (std::size_t i = 0; i < size_; ++i) {
      if (Fate::of(fates_[i]).steps != length_.steps) continue;
      if (!best || hasLesserNumber(digits_[i], *best)) best = digits_[i];
    }
    length_.work += size_;
    size_ = 0;
  }

  const Length<kLimbs>& length_;
  FateFinder<kLimbs> finder_;
  std::array<Silhouette, kBatch> digits_;  // of numbers
  std::array<PackedSilhouette, kBatch> images_{};
  std::array<std::uint64_t, kBatch> fates_{};
  std::size_t size_ = 0;
};

template <std::size_t kLimbs>
class Search {
  using Sum = FixedSum<kLimbs>;

 public:
  Search(std::int32_t k, std::size_t width, unsigned threads, Progress& progress, const TableMemory& memory)
      : plan_(k, static_cast<int>(width), progress, memory), powers_(digitPowers(k)), threads_(threads) {}

  FarRecords run(const Basins& counted, std::uint32_t most) {
    FarRecords records;
    std::vector<Decimal> leastByTail = counted.leastByTail();
    Decimal least = leastByTail.back();
    records.excluded = static_cast<std::uint32_t>(counted.digits);
    for (std::size_t steps = leastByTail.size() - 1;; ++steps) {
      records.excluded = std::max(records.excluded, shorter(least, most));
      std::optional<Silhouette> found;
      while (!found && records.excluded < most) {
        found = search(steps, Sum::of(least), records.excluded + 1);
        if (work_ > kMostWork || plan_.progress.stop) return records;
        if (!found) ++records.excluded;
      }
      if (!found) return records;
      least = Decimal::parse(leastNumber(*found));
      records.numbers.push_back(*found);
    }
  }

 private:
  // The most digits, up to `most`, that are too few for an image of at least `least`.
  std::uint32_t shorter(const Decimal& least, std::uint32_t most) const {
    std::uint32_t digits = 0;
    for (std::uint32_t step = std::bit_floor(most); step > 0; step /= 2) {
      if (digits + step <= most && powers_[9] * Decimal(digits + step) < least) digits += step;
    }
    return digits;
  }

  // The least number of so many digits whose image has the steps and is at least `least`, which is not
  // greater than that of all nines.
  std::optional<Silhouette> search(std::size_t steps, const Sum& least, std::uint32_t digits) {
    Length<kLimbs> length{plan_, steps, least, {}, work_};
    const Sum nine = Sum::of(powers_[9]);
    for (std::size_t digit = 1; digit <= 8; ++digit)
      length.shortfalls[digit] = nine - Sum::of(powers_[digit]);
    Node<kLimbs> root;
    root.digits.counts[8] = digits;
    root.room = Sum::of(powers_[9] * Decimal(digits)) - least;
    std::vector<Node<kLimbs>> pieces;
    expand(length, root, kPieceDepth, [&](const Node<kLimbs>& node) { pieces.push_back(node); });
    plan_.progress.pieces += pieces.size();
    std::vector<Worker<kLimbs>> workers;
    for (unsigned i = 0; i < std::max(threads_, 1U); ++i) workers.emplace_back(length);
    runPieces(pieces.size(), threads_, plan_.progress,
              [&](std::size_t i, unsigned worker) { workers[worker].run(pieces[i]); });
    std::optional<Silhouette> best;
    for (const Worker<kLimbs>& worker : workers) {
      if (worker.best && (!best || hasLesserNumber(*worker.best, *best))) best = worker.best;
    }
    return best;
  }

  BasinPlan<kLimbs> plan_;
  std::array<Decimal, 10> powers_;
  unsigned threads_;
  std::atomic<std::uint64_t> work_{0};
};

}  // namespace

FarRecords recordsBeyond(const Basins& counted, unsigned threads, Progress& progress, std::uint32_t most,
                         TableMemory memory) {
  assert(counted.digits >= std::max(2, rangeDigits(counted.k)));
  const std::size_t width = std::max((digitPowers(counted.k)[9] * Decimal(most)).digits(),
                                     static_cast<std::size_t>(counted.digits));
  return withLimbsFor<1, 2, 3, 4, 8>(width, [&]<std::size_t kLimbs>() {
    return Search<kLimbs>(counted.k, width, threads, progress, memory).run(counted, most);
  });
}

}  // namespace zelvion::atlas
