#include "engine/parallel/pieces.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace zelvion {

bool runPieces(std::size_t count, unsigned threads, Progress& progress,
               const std::function<void(std::size_t, unsigned)>& work) {
  std::atomic<std::size_t> next{0};
  std::mutex mutex;
  std::exception_ptr error;
  const auto run = [&](unsigned worker) {
    try {
      while (!progress.stop) {
        const std::size_t piece = next++;
        if (piece >= count) return;
        work(piece, worker);
        ++progress.done;
      }
    } catch (...) {
      const std::scoped_lock lock(mutex);
      if (!error) error = std::current_exception();
      next = count;
    }
  };
  {
    std::vector<std::jthread> others;
    const std::size_t useful = std::min<std::size_t>(threads, count);
    try {
      for (unsigned worker = 1; worker < useful; ++worker) others.emplace_back(run, worker);
    } catch (const std::system_error&) {
      // If the system refuses more threads, those that there are do the work.
    }
    run(0);
  }
  if (error) std::rethrow_exception(error);
  return !progress.stop;
}

}  // namespace zelvion
