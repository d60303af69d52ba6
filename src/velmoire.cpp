#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "command/run.h"
#include "engine/text/reason.h"

namespace {

zelvion::Progress progress;
static_assert(std::atomic<bool>::is_always_lock_free);

// The standard input, which a signal that stops the work ends. What cannot be read is no end: it throws.
class Input : public std::streambuf {
 protected:
  int_type underflow() override {
    ssize_t count = -1;
    do {
      if (progress.stop) return traits_type::eof();
      count = ::read(STDIN_FILENO, buffer_.data(), buffer_.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0)
      throw std::runtime_error("L'entrée standard ne peut pas être lue : " +
                               zelvion::text::reasonOf({errno, std::generic_category()}) + ".");
    if (count == 0) return traits_type::eof();
    setg(buffer_.data(), buffer_.data(), buffer_.data() + count);
    return traits_type::to_int_type(buffer_[0]);
  }

 private:
  std::array<char, 1 << 16> buffer_{};
};

// Gives the three standard streams that are closed to nothing, so that no file that is opened later takes
// their places; using them still fails.
void fillClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  // The first Ctrl+C asks the work to end, a second one ends it by force.
  struct sigaction action {};
  action.sa_handler = [](int) { progress.stop = true; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  ::sigaction(SIGINT, &action, nullptr);
  // A file that may not grow any more is told like a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  fillClosedStreams();
  std::ios::sync_with_stdio(false);

  Input input;
  std::istream in(&input);
  const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
  zelvion::command::Environment environment{
      in, std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1, threads, progress, ::isatty(STDIN_FILENO) == 1};
  const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  return zelvion::command::run(words, environment);
}
