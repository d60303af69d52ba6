#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "command/run.h"

namespace {

zelvion::Progress progress;
static_assert(std::atomic<bool>::is_always_lock_free);

// The standard input without a retry: a signal ends it.
class Input : public std::streambuf {
 protected:
  int_type underflow() override {
    const ssize_t count = progress.stop ? 0 : ::read(STDIN_FILENO, buffer_.data(), buffer_.size());
    if (count <= 0) return traits_type::eof();
    setg(buffer_.data(), buffer_.data(), buffer_.data() + count);
    return traits_type::to_int_type(buffer_[0]);
  }

 private:
  std::array<char, 1 << 16> buffer_{};
};

}  // namespace

int main(int argc, char** argv) {
  // The first Ctrl+C asks the work to end, a second one ends it by force.
  struct sigaction action {};
  action.sa_handler = [](int) { progress.stop = true; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  ::sigaction(SIGINT, &action, nullptr);
  std::ios::sync_with_stdio(false);

  Input input;
  std::istream in(&input);
  const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
  zelvion::command::Environment environment{in,      std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1,
                                            threads, progress};
  const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  return zelvion::command::run(words, environment);
}
