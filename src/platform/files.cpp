#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

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
  /// Closes the file now; false if the system reports a late write error.
  bool close() { return ::close(std::exchange(fd_, -1)) == 0; }

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

/// Writes all of `text`; false, with the reason in errno, if that is not possible.
bool writeAll(const Descriptor& file, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = ::write(file.get(), text.data() + done, text.size() - done);
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) done += static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

void appendWhole(const std::string& path, const std::string& text) {
  constexpr int kAppend = O_WRONLY | O_APPEND;
  int fd = openNow(path, kAppend);
  const bool created = fd < 0 && errno == ENOENT;
  if (created) fd = openNow(path, kAppend | O_CREAT);
  Descriptor file(fd);
  if (!file.valid()) fail(path, errno);
  const off_t oldSize = regularSize(file, path);
  if (writeAll(file, text) && file.close()) return;

  const int error = errno;
  const bool restored = ::truncate(path.c_str(), oldSize) == 0;
  if (created && restored) ::unlink(path.c_str());
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
