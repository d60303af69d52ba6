#include "engine/parallel/pieces.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace zelvion {
namespace {

TEST(Pieces, EachIsDoneOnceOnAnyNumberOfThreads) {
  for (const unsigned threads : {0U, 1U, 2U, 7U}) {
    std::vector<std::atomic<int>> times(500);
    Progress progress;
    EXPECT_TRUE(runPieces(times.size(), threads, progress, [&](std::size_t piece, unsigned worker) {
      EXPECT_LT(worker, std::max(threads, 1U));
      ++times[piece];
    }));
    for (const auto& once : times) EXPECT_EQ(once, 1);
    EXPECT_EQ(progress.done, times.size());
  }
}

TEST(Pieces, AStopOrAnErrorEndsThem) {
  for (const bool error : {false, true}) {
    Progress progress;
    const auto work = [&](std::size_t piece, unsigned) {
      if (piece < 10) return;
      if (error) throw std::runtime_error("broken");
      progress.stop = true;
    };
    if (error) {
      EXPECT_THROW(runPieces(1'000'000, 2, progress, work), std::runtime_error);
    } else {
      EXPECT_FALSE(runPieces(1'000'000, 2, progress, work));
    }
    EXPECT_LT(progress.done, 1'000'000U);
  }
}

}  // namespace
}  // namespace zelvion
