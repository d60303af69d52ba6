#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

namespace zelvion::command {

struct Environment;

/// The progress of a long computation in a line on the error stream, if that is a terminal. It appears after
/// half a second and is erased at the end.
class ProgressLine {
 public:
  struct Standing {
    double share;      ///< done, from 0 to 1
    std::string text;  ///< what else there is to tell
  };

  /// `standing` is called now and then from another thread; the time left is estimated from its share.
  ProgressLine(const Environment& environment, std::function<Standing()> standing);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Erases the line until its next update, so that something else can be written to the terminal.
  void hide();

 private:
  void run();
  void show();
  void clear();

  std::ostream& err_;
  std::function<Standing()> standing_;
  std::chrono::steady_clock::time_point start_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool end_ = false;
  bool shown_ = false;
  std::thread thread_;
};

}  // namespace zelvion::command
