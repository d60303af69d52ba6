#include "files/files.h"

#include <linux/magic.h>

#include <algorithm>
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

/// Retries a call while signals interrupt it.
template <typename Call>
auto uninterrupted(const Call& call) {
  while (true) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

/// An owned file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() { close(); }

  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  /// Closes it; returns 0 or the error. An interrupted close still closes it, so it is not retried.
  int close() {
    const int fd = std::exchange(fd_, -1);
    return fd < 0 || calls.close(fd) == 0 || errno == EINTR ? 0 : errno;
  }

 private:
  int fd_;
};

/// Opens a file without blocking, even if it is a named pipe.
Descriptor openNow(const std::string& path, int flags) {
  return Descriptor(
      uninterrupted([&] { return calls.open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666); }));
}

/// Reads the size and link count of the open file; returns 0 or the error. Only regular files are accepted.
int findSize(const Descriptor& file, off_t& size, nlink_t* names = nullptr) {
  struct stat status {};
  if (uninterrupted([&] { return calls.fstat(file.get(), &status); }) != 0) return errno;
  size = status.st_size;
  if (names != nullptr) *names = status.st_nlink;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  return S_ISREG(status.st_mode) ? 0 : EINVAL;
}

/// Flushes an open file or folder to disk; returns 0 or the error. A file system that does not support this
/// is no error.
int sync(int (*call)(int), const Descriptor& file) {
  const bool done = uninterrupted([&] { return call(file.get()); }) == 0 || errno == EINVAL;
  return done ? 0 : errno;
}

/// Flushes the folder of the file at `path`, so that its directory entry is durable.
int syncFolderOf(const std::string& path) {
  std::error_code error;
  const std::filesystem::path file = std::filesystem::canonical(path, error);
  if (error) return error.value();
  const Descriptor folder = openNow(file.parent_path(), O_RDONLY | O_DIRECTORY);
  if (folder.valid()) return sync(calls.fsync, folder);
  if (errno != EACCES) return errno;
  ::sync();  // the folder is writable but not readable
  return 0;
}

/// A file to append a record to.
struct Target {
  Descriptor file;
  bool created = false;  ///< by this process, just now
  bool locked = false;   ///< whether the lock is held, so that no other window writes to it
  bool waited = false;   ///< whether the lock was held by another window at first
  off_t size = 0;
  int error = 0;  ///< why its size is unknown
};

/// Acquires the lock of the open file. Gives up after a second, since none of our windows holds it that long,
/// and at once where the file system has no locks.
void lockForAWhile(Target& target) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries && !target.locked; ++i) {
    target.locked = uninterrupted([&] { return calls.flock(target.file.get(), LOCK_EX | LOCK_NB); }) == 0;
    if (target.locked || errno != EWOULDBLOCK) return;
    target.waited = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

/// Whether `path` still leads to the open file.
bool leadsTo(const std::string& path, const Descriptor& file) {
  struct stat named {};
  struct stat opened {};
  return uninterrupted([&] { return calls.stat(path.c_str(), &named); }) == 0 &&
         uninterrupted([&] { return calls.fstat(file.get(), &opened); }) == 0 &&
         named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

/// Opens the file at `path` and locks it. Retries if another window removes the file, which it has just
/// created, while this one waits for the lock.
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
      // Another window was faster, or this is a dangling symbolic link.
      return created || errno != EEXIST ? std::move(made) : openNow(path, kAppend | O_CREAT);
    };
    Target target{open()};
    if (!target.file.valid()) fail(path, errno);
    target.created = created;
    lockForAWhile(target);
    nlink_t names = 0;
    target.error = findSize(target.file, target.size, &names);
    if (i == kTries || (names > 0 && !target.waited) || leadsTo(path, target.file)) return target;
  }
}

/// How a file system handles writes.
struct Storage {
  off_t block;        ///< a kill or a full disk splits a write at multiples of this only
  bool failsAtClose;  ///< whether a full disk may show at close only, as on a network
};

/// The known file systems keep pages whole, and blocks if those are smaller. Others are assumed to be the
/// worst.
Storage storageOf(const Descriptor& file) {
  constexpr std::array<long, 5> kKnown = {EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
                                          F2FS_SUPER_MAGIC, TMPFS_MAGIC};
  constexpr off_t kSmallestBlock = 512;
  constexpr off_t kSmallestPage = 4096;
  struct statfs status {};
  const bool isTold = uninterrupted([&] { return calls.fstatfs(file.get(), &status); }) == 0;
  if (!isTold || std::ranges::find(kKnown, status.f_type) == kKnown.end()) return {kSmallestBlock, true};
  return {std::clamp<off_t>(status.f_bsize, kSmallestBlock, kSmallestPage), false};
}

/// A record and its destination.
struct Record {
  const Target& target;
  const std::string& text;
  Storage storage;

  off_t newSize() const { return target.size + static_cast<off_t>(text.size()); }
};

/// Truncates a partial record. Only with the lock held, as it might belong to another window otherwise.
void cutBack(const Record& record) {
  const auto cut = [&] { return calls.ftruncate(record.target.file.get(), record.target.size); };
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
  // Closed while a second descriptor is still open to truncate with.
  if (error == 0 && record.storage.failsAtClose) {
    Descriptor second(uninterrupted([&] { return calls.dup(fd); }));
    error = second.valid() ? second.close() : errno;
  }
  if (error != 0) cutBack(record);
  return error;
}

/// Closes all file descriptors but one.
void closeOthers(int kept) {
#ifdef CLOSE_RANGE_CLOEXEC
  const auto fd = static_cast<unsigned>(kept);
  if ((fd == 0 || ::close_range(0, fd - 1, 0) == 0) && ::close_range(fd + 1, ~0U, 0) == 0) return;
#endif
  for (long other = ::sysconf(_SC_OPEN_MAX); other-- > 0;) {
    if (other != kept) ::close(static_cast<int>(other));
  }
}

/// Does so in a child process, which completes even if this process is killed, and inherits none of the
/// window's descriptors. The child borrows the memory of this process, which is suspended meanwhile, so
/// nothing is copied.
int writeApart(const Record& record) {
  // The analyzer suggests posix_spawn, which starts a program; this child only writes and exits.
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
  // The child was killed, or this process was started with SIGCHLD ignored.
  off_t size = 0;
  if (findSize(record.target.file, size) == 0 && size == record.newSize()) return 0;
  cutBack(record);
  return EIO;
}

/// Appends to an open file; returns 0 or the error.
int append(const Target& target, const std::string& path, const std::string& text) {
  if (target.error != 0) return target.error;
  if (target.size == 0) {
    if (const int error = syncFolderOf(path)) return error;
  }
  const Record record{target, text, storageOf(target.file)};
  const off_t block = record.storage.block;
  const bool inOneBlock = target.size / block == (record.newSize() - 1) / block;
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
