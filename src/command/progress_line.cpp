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
    // Without a thread the work goes on without a line.
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
      // The work may need the memory, or is reporting that there is too little.
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
  // The line must not wrap: only its last row could be erased again.
  err_ << "\033[?7l" + pages::typeset(line) + "\033[?7h" << std::flush;
  shown_ = true;
}

// Carriage return, then erase the line.
void ProgressLine::clear() {
  if (shown_) err_ << "\r\033[K" << std::flush;
  shown_ = false;
}

}  // namespace zelvion::command
