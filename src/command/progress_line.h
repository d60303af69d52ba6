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

/// A line on the error stream, if that is a terminal, that tells how a long work stands; it appears after
/// half a second and is gone at the end.
class ProgressLine {
 public:
  struct Standing {
    double share;      ///< done, from 0 to 1
    std::string text;  ///< what else there is to tell
  };

  /// `standing` is called now and then from another thread; the time left comes of its share.
  ProgressLine(const Environment& environment, std::function<Standing()> standing);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Takes the line off the screen until it is shown next: for what is written to the same terminal.
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
