#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace zelvion {

/// The progress of a long computation: written by its threads, read by whoever shows it. Setting `stop`,
/// which a signal handler may do as well, ends it soon.
struct Progress {
  std::atomic<bool> stop{false};
  std::atomic<std::uint64_t> pieces{0};  ///< to be done in all, as far as is known
  std::atomic<std::uint64_t> done{0};
  std::atomic<std::uint64_t> found{0};
};

inline constexpr std::uint32_t kMaxParts = 1'000'000;

/// One of `count` parts of a search that are much alike, at most kMaxParts; `number` is from 1 to `count`.
/// The whole by default.
struct Part {
  std::uint32_t number = 1;
  std::uint32_t count = 1;

  /// Whether the piece at `place`, from 0 on, lies there.
  bool has(std::size_t place) const noexcept { return place % count == number - 1; }
};

/// Calls work(piece, worker) for every piece below `count`, started in ascending order, on up to `threads`
/// threads; `worker` tells which, from 0 to `threads` - 1. Counts the pieces that are done in `progress`.
/// Returns false if it was stopped; a long piece may look at `progress.stop` itself. What `work` throws ends
/// the others and is thrown on.
bool runPieces(std::size_t count, unsigned threads, Progress& progress,
               const std::function<void(std::size_t piece, unsigned worker)>& work);

}  // namespace zelvion
