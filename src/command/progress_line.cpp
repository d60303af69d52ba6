#include "command/progress_line.h"

#include <algorithm>
#include <new>
#include <system_error>

#include "command/run.h"
#include "pages/typography.h"

namespace zelvion::command {

ProgressLine::ProgressLine(const Environment& environment, std::function<Standing()> standing)
    : err_(environment.err), standing_(std::move(standing)), start_(std::chrono::steady_clock::now()) {
  if (!environment.errIsTerminal) return;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // Where the system gives no thread, the work goes on unseen.
  }
}

ProgressLine::~ProgressLine() {
  if (!thread_.joinable()) return;
  {
    const std::scoped_lock lock(mutex_);
    end_ = true;
  }
  ended_.notify_one();
  thread_.join();
  clear();
}

void ProgressLine::hide() {
  const std::scoped_lock lock(mutex_);
  clear();
}

void ProgressLine::run() {
  constexpr auto kFirst = std::chrono::milliseconds(500);
  constexpr auto kNext = std::chrono::milliseconds(200);
  std::unique_lock lock(mutex_);
  for (auto pause = kFirst; !ended_.wait_for(lock, pause, [&] { return end_; }); pause = kNext) {
    try {
      show();
    } catch (const std::bad_alloc&) {
      // The work may need what memory there is, or tell that it does not suffice.
    }
  }
}

void ProgressLine::show() {
  const Standing standing = standing_();
  const double share = std::clamp(standing.share, 0.0, 1.0);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  std::string line = std::to_string(static_cast<int>(share * 100)) + "\u00A0% · " + standing.text;
  if (share > 0.01) line += " · reste " + pages::durationText(elapsed.count() * (1 - share) / share);
  clear();
  // A line that is longer than the terminal is wide must not wrap: only its last row would go away again.
  err_ << "\033[?7l" + pages::typeset(line) + "\033[?7h" << std::flush;
  shown_ = true;
}

// Back to the beginning of the line, and away with what is on it.
void ProgressLine::clear() {
  if (shown_) err_ << "\r\033[K" << std::flush;
  shown_ = false;
}

}  // namespace zelvion::command
