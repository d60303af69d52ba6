#include "files/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

namespace zelvion {
namespace {

[[noreturn]] void fail(const std::string& path, int error) {
  throw std::system_error(error, std::generic_category(), path);
}

/// An open file descriptor, closed at the latest when it goes out of scope.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }

  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }

 private:
  int fd_;
};

/// Opens a file without ever waiting for a partner, as a named pipe would have it.
int openNow(const std::string& path, int flags) {
  return ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666);
}

/// The size of the open file. Throws unless it is a regular one.
off_t regularSize(const Descriptor& file, const std::string& path) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) fail(path, errno);
  if (S_ISDIR(status.st_mode)) fail(path, EISDIR);
  if (!S_ISREG(status.st_mode)) fail(path, EINVAL);
  return status.st_size;
}

/// Keeps other windows from writing to the file as long as it is open, so that its size is the right one to
/// go back to. Whoever holds the lock for a second is no window of ours, and is not waited for.
void lockForAWhile(const Descriptor& file) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries && ::flock(file.get(), LOCK_EX | LOCK_NB) != 0; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

/// Writes all of `text`; returns 0 or the error.
int writeAll(const Descriptor& file, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = ::write(file.get(), text.data() + done, text.size() - done);
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) done += static_cast<std::size_t>(written);
  }
  return 0;
}

/// The same in a process of its own, which ends its work even where this one is killed meanwhile. This one
/// stands still until then and lends it its memory, so that nothing is copied.
int writeAllApart(const Descriptor& file, const std::string& text) {
  volatile int error = 0;
  // The analyzer wants posix_spawn, which starts a program; this child writes and ends.
  const pid_t writer = ::vfork();  // NOLINT(clang-analyzer-security.insecureAPI.vfork)
  if (writer == 0) {
    ::setsid();  // NOLINT(clang-analyzer-unix.Vfork)
    error = writeAll(file, text);
    ::_exit(0);
  }
  if (writer < 0) return writeAll(file, text);
  int status = 0;
  while (::waitpid(writer, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? error : EIO;
}

}  // namespace

void appendWhole(const std::string& path, const std::string& text) {
  constexpr int kAppend = O_WRONLY | O_APPEND;
  constexpr off_t kPage = 4096;
  int fd = openNow(path, kAppend);
  const bool created = fd < 0 && errno == ENOENT;
  if (created) fd = openNow(path, kAppend | O_CREAT);
  Descriptor file(fd);
  if (!file.valid()) fail(path, errno);
  lockForAWhile(file);
  const off_t oldSize = regularSize(file, path);
  // A kill can part a write where it goes from one page of the file to the next, and nowhere else.
  const bool onOnePage = oldSize / kPage == (oldSize + static_cast<off_t>(text.size()) - 1) / kPage;
  const int error = onOnePage ? writeAll(file, text) : writeAllApart(file, text);
  if (error == 0) return;

  const bool restored = ::ftruncate(file.get(), oldSize) == 0;
  if (created && restored && oldSize == 0) ::unlink(path.c_str());
  fail(path, error);
}

std::string readWhole(const std::string& path) {
  const Descriptor file(openNow(path, O_RDONLY));
  if (!file.valid()) fail(path, errno);
  std::string text;
  text.reserve(static_cast<std::size_t>(regularSize(file, path)));
  std::array<char, 1 << 16> buffer{};
  while (true) {
    const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
    if (count == 0) return text;
    if (count < 0 && errno != EINTR) fail(path, errno);
    if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace zelvion
