#pragma once

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>
#include <vector>

#include "files/system_calls.h"

namespace zelvion::testing {

/// What happens at a call of the system.
enum class Kind {
  Fails,
  Interrupted,  ///< by a signal
  Short,        ///< not all is read or written
  DiskFull,     ///< from here on: the next record is parted, nothing more is written
  Ends,         ///< the process is killed
  ParentEnds,   ///< the process is killed that waits for a record to be written
};

struct Fault {
  int call;  ///< counted from 1
  Kind kind;
};

/// What the injector below knows of its process and the writers of this one.
struct FaultState {
  std::vector<Fault> faults;
  std::vector<const char*> calls;
  pid_t window = ::getpid();
  bool full = false;
  std::size_t limit = 0;  ///< how long a file may become on the full disk
  bool unsynced = false;

  /// Whether the next call meets such a fault.
  bool at(Kind kind) const {
    const int next = static_cast<int>(calls.size()) + 1;
    return std::any_of(faults.begin(), faults.end(),
                       [&](const Fault& fault) { return fault.call == next && fault.kind == kind; });
  }
};

/// Puts faults in the place of the calls with which files are kept, and counts these. It holds for one
/// process and the writers that it lends its memory, until it goes out of scope. The file system is the one
/// there is, or one that is not known.
class Faults {
 public:
  explicit Faults(std::vector<Fault> faults = {}, bool isKnown = true) {
    state = FaultState();
    state.faults = std::move(faults);
    systemCalls.open = open;
    systemCalls.flock = [](int fd, int how) { return attempt("flock", ::flock, fd, how); };
    systemCalls.stat = [](const char* path, struct stat* out) { return attempt("stat", ::stat, path, out); };
    systemCalls.fstat = [](int fd, struct stat* out) { return attempt("fstat", ::fstat, fd, out); };
    systemCalls.fstatfs = [](int fd, struct statfs* out) { return attempt("fstatfs", ::fstatfs, fd, out); };
    if (!isKnown) systemCalls.fstatfs = [](int, struct statfs*) { return errno = ENOSYS, -1; };
    systemCalls.read = [](int fd, void* to, std::size_t size) {
      const bool parted = state.at(Kind::Short) && size > 0;
      return attempt("read", ::read, fd, to, parted ? 1 : size);
    };
    systemCalls.write = write;
    systemCalls.ftruncate = [](int fd, off_t size) { return attempt("ftruncate", ::ftruncate, fd, size); };
    systemCalls.fsync = [](int fd) { return attempt("fsync", nothing, fd); };
    systemCalls.fdatasync = [](int fd) {
      const int result = attempt("fdatasync", nothing, fd);
      if (result == 0) state.unsynced = false;
      return result;
    };
    systemCalls.dup = [](int fd) { return attempt("dup", ::dup, fd); };
    systemCalls.close = [](int fd) {
      ::close(fd);
      return attempt(
          "close", [](int) { return 0; }, fd);
    };
    systemCalls.unlink = [](const char* path) { return attempt("unlink", ::unlink, path); };
    systemCalls.waitpid = [](pid_t pid, int* status, int how) {
      return attempt("waitpid", ::waitpid, pid, status, how);
    };
  }
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;
  ~Faults() { systemCalls = {}; }

  /// The names of the calls so far.
  static const std::vector<const char*>& calls() { return state.calls; }
  /// Whether something was written and not brought onto the disk.
  static bool unsynced() { return state.unsynced; }

 private:
  static inline FaultState state;

  template <typename Real, typename... Arguments>
  static auto attempt(const char* name, Real real, Arguments... arguments) -> decltype(real(arguments...)) {
    const bool fails = state.at(Kind::Fails);
    const bool interrupted = state.at(Kind::Interrupted);
    const bool ends = state.at(Kind::Ends);
    const bool parentEnds = state.at(Kind::ParentEnds) && ::getpid() != state.window;
    state.full = state.full || state.at(Kind::DiskFull);
    state.calls.push_back(name);
    if (ends) ::kill(::getpid(), SIGKILL);
    if (parentEnds) ::kill(state.window, SIGKILL);
    if (!fails && !interrupted) return real(arguments...);
    errno = fails ? EIO : EINTR;
    return -1;
  }

  static int nothing(int /*fd*/) { return 0; }

  static int open(const char* path, int flags, ...) { return attempt("open", ::open, path, flags, 0666); }

  // A full disk has room up to the end of a block.
  static ssize_t write(int fd, const void* from, std::size_t size) {
    constexpr std::size_t kBlock = 512;
    struct stat status {};
    ::fstat(fd, &status);
    const auto end = static_cast<std::size_t>(status.st_size);
    const std::size_t nextBlock = (end / kBlock + 1) * kBlock;
    std::size_t room = state.at(Kind::Short) ? nextBlock - end : size;
    if (state.full || state.at(Kind::DiskFull)) {
      if (state.limit == 0) state.limit = size > kBlock ? nextBlock : end;
      room = state.limit - std::min(end, state.limit);
    }
    state.unsynced = true;
    const auto intoRoom = [](int to, const void* data, std::size_t count) {
      if (count > 0) return ::write(to, data, count);
      errno = ENOSPC;
      return ssize_t{-1};
    };
    return attempt("write", intoRoom, fd, from, std::min(size, room));
  }
};

}  // namespace zelvion::testing
