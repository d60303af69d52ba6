#include "files/files.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include "files/system_calls.h"

namespace zelvion {
namespace {

SystemCalls& calls = systemCalls;

[[noreturn]] void fail(const std::string& path, int error) {
  throw std::system_error(error, std::generic_category(), path);
}

/// Makes a call again as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(const Call& call) {
  while (true) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

/// An open file descriptor, closed at the latest when it goes out of scope.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() { close(); }

  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  /// Closes it; returns 0 or the error. An interrupted close has closed it all the same.
  int close() {
    const int fd = std::exchange(fd_, -1);
    return fd < 0 || calls.close(fd) == 0 || errno == EINTR ? 0 : errno;
  }

 private:
  int fd_;
};

/// Opens a file without ever waiting for a partner, as a named pipe would have it.
Descriptor openNow(const std::string& path, int flags) {
  return Descriptor(
      uninterrupted([&] { return calls.open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666); }));
}

/// Finds the size of the open file; returns 0 or the error, which a file that is no regular one has too.
int findSize(const Descriptor& file, off_t& size) {
  struct stat status {};
  if (uninterrupted([&] { return calls.fstat(file.get(), &status); }) != 0) return errno;
  size = status.st_size;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  return S_ISREG(status.st_mode) ? 0 : EINVAL;
}

/// Has an open file or folder on the disk when it returns: 0 or the error. A file system that cannot do that
/// does what it can.
int sync(int (*call)(int), const Descriptor& file) {
  const bool done = uninterrupted([&] { return call(file.get()); }) == 0 || errno == EINVAL;
  return done ? 0 : errno;
}

/// The same for the folder where the file at `path` lies, so that the file's name lasts.
int syncFolderOf(const std::string& path) {
  std::error_code error;
  const std::filesystem::path file = std::filesystem::canonical(path, error);
  if (error) return error.value();
  const Descriptor folder = openNow(file.parent_path(), O_RDONLY | O_DIRECTORY);
  if (folder.valid()) return sync(calls.fsync, folder);
  if (errno != EACCES) return errno;
  ::sync();  // a folder that one may write to but not read
  return 0;
}

/// A file that a record is to be appended to.
struct Target {
  Descriptor file;
  bool created;  ///< by this process, just now
  bool locked;   ///< no other window writes to it as long as it is open
};

/// Takes the lock of an open file. Whoever holds it for a second is no window of ours, and is not waited for;
/// nor is a file system that has no locks.
bool lockForAWhile(const Descriptor& file) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    if (uninterrupted([&] { return calls.flock(file.get(), LOCK_EX | LOCK_NB); }) == 0) return true;
    if (errno != EWOULDBLOCK) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

/// Whether `path` still leads to the open file.
bool leadsTo(const std::string& path, const Descriptor& file) {
  struct stat named {};
  struct stat opened {};
  return uninterrupted([&] { return calls.stat(path.c_str(), &named); }) == 0 &&
         uninterrupted([&] { return calls.fstat(file.get(), &opened); }) == 0 &&
         named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

/// Opens the file at `path` and locks it. Another window may remove a file that it has just created while
/// this one waits for the lock: then all begins again.
Target openTarget(const std::string& path) {
  constexpr int kAppend = O_WRONLY | O_APPEND;
  constexpr int kTries = 10;
  for (int i = 1;; ++i) {
    bool created = false;
    const auto open = [&] {
      Descriptor there = openNow(path, kAppend);
      if (there.valid() || errno != ENOENT) return there;
      Descriptor made = openNow(path, kAppend | O_CREAT | O_EXCL);
      created = made.valid();
      // Another window was faster, or there is a link to a file that is missing.
      return created || errno != EEXIST ? std::move(made) : openNow(path, kAppend | O_CREAT);
    };
    Descriptor file = open();
    if (!file.valid()) fail(path, errno);
    const bool locked = lockForAWhile(file);
    if (i == kTries || leadsTo(path, file)) return {std::move(file), created, locked};
  }
}

/// A record and where it goes.
struct Record {
  const Target& target;
  off_t oldSize;
  const std::string& text;

  off_t newSize() const { return oldSize + static_cast<off_t>(text.size()); }
};

/// Takes the beginning of a record out of the file. Without the lock it could be the record of another
/// window.
void cutBack(const Record& record) {
  const auto cut = [&] { return calls.ftruncate(record.target.file.get(), record.oldSize); };
  if (record.target.locked) uninterrupted(cut);
}

/// Writes all of a record or nothing; returns 0 or the error.
int write(const Record& record) {
  const int fd = record.target.file.get();
  int error = 0;
  for (std::size_t done = 0; done < record.text.size() && error == 0;) {
    const ssize_t written =
        uninterrupted([&] { return calls.write(fd, record.text.data() + done, record.text.size() - done); });
    if (written < 0) error = errno;
    if (written > 0) done += static_cast<std::size_t>(written);
  }
  // A file system on a network may find its disk full only when the file is closed: so one closes it while
  // there is still a second descriptor to cut with.
  if (error == 0) {
    Descriptor second(uninterrupted([&] { return calls.dup(fd); }));
    error = second.valid() ? second.close() : errno;
  }
  if (error != 0) cutBack(record);
  return error;
}

/// Closes all files but one.
void closeOthers(int kept) {
#ifdef CLOSE_RANGE_CLOEXEC
  const auto fd = static_cast<unsigned>(kept);
  if ((fd == 0 || ::close_range(0, fd - 1, 0) == 0) && ::close_range(fd + 1, ~0U, 0) == 0) return;
#endif
  for (long other = ::sysconf(_SC_OPEN_MAX); other-- > 0;) {
    if (other != kept) ::close(static_cast<int>(other));
  }
}

/// The same in a process of its own, which ends its work even where this one is killed meanwhile, and keeps
/// nothing of the window open. This one stands still until then and lends it its memory, so that nothing is
/// copied.
int writeApart(const Record& record) {
  // The analyzer wants posix_spawn, which starts a program; this child writes and ends.
  const pid_t writer = ::vfork();  // NOLINT(clang-analyzer-security.insecureAPI.vfork)
  if (writer == 0) {
    ::setsid();  // NOLINT(clang-analyzer-unix.Vfork)
    closeOthers(record.target.file.get());
    ::_exit(write(record));
  }
  if (writer < 0) return write(record);
  int status = 0;
  const bool seen = uninterrupted([&] { return calls.waitpid(writer, &status, 0); }) == writer;
  if (seen && WIFEXITED(status)) return WEXITSTATUS(status);
  // It was killed, or whoever started this program does not let it see its children end.
  off_t size = 0;
  if (findSize(record.target.file, size) == 0 && size == record.newSize()) return 0;
  cutBack(record);
  return EIO;
}

/// Appends to an open file; returns 0 or the error.
int append(const Target& target, const std::string& path, const std::string& text) {
  // A kill or a full disk can part a write where it goes from one block of the file to the next, and nowhere
  // else.
  constexpr off_t kSmallestBlock = 512;
  Record record{target, 0, text};
  if (const int error = findSize(target.file, record.oldSize)) return error;
  if (record.oldSize == 0) {
    if (const int error = syncFolderOf(path)) return error;
  }
  const bool inOneBlock = record.oldSize / kSmallestBlock == (record.newSize() - 1) / kSmallestBlock;
  return inOneBlock ? write(record) : writeApart(record);
}

}  // namespace

void appendWhole(const std::string& path, const std::string& text) {
  Target target = openTarget(path);
  int error = append(target, path, text);
  off_t size = 0;
  const bool useless = error != 0 && target.created && target.locked && findSize(target.file, size) == 0 &&
                       size == 0 && leadsTo(path, target.file);
  if (useless) calls.unlink(path.c_str());
  const int closing = target.file.close();
  if (error == 0) error = closing;
  if (error != 0) fail(path, error);
}

void syncFile(const std::string& path) {
  Descriptor file = openNow(path, O_WRONLY);
  if (!file.valid()) fail(path, errno);
  int error = sync(calls.fdatasync, file);
  const int closing = file.close();
  if (error == 0) error = closing;
  if (error != 0) fail(path, error);
}

std::string readWhole(const std::string& path) {
  constexpr off_t kLargest = off_t{1} << 30;
  const Descriptor file = openNow(path, O_RDONLY);
  if (!file.valid()) fail(path, errno);
  off_t size = 0;
  if (const int error = findSize(file, size)) fail(path, error);
  if (size > kLargest) fail(path, EFBIG);
  std::string text;
  text.reserve(static_cast<std::size_t>(size));
  std::array<char, 1 << 16> buffer{};
  while (true) {
    const ssize_t count = uninterrupted([&] { return calls.read(file.get(), buffer.data(), buffer.size()); });
    if (count == 0) return text;
    if (count < 0) fail(path, errno);
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace zelvion
