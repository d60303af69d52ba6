#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelvion {

/// The system calls used for files, in a table so that tests can inject faults.
struct SystemCalls {
  int (*open)(const char*, int, ...) = ::open;
  int (*flock)(int, int) = ::flock;
  int (*stat)(const char*, struct stat*) = ::stat;
  int (*fstat)(int, struct stat*) = ::fstat;
  int (*fstatfs)(int, struct statfs*) = ::fstatfs;
  ssize_t (*read)(int, void*, std::size_t) = ::read;
  ssize_t (*write)(int, const void*, std::size_t) = ::write;
  int (*ftruncate)(int, off_t) = ::ftruncate;
  int (*fsync)(int) = ::fsync;
  int (*fdatasync)(int) = ::fdatasync;
  int (*dup)(int) = ::dup;
  int (*close)(int) = ::close;
  int (*unlink)(const char*) = ::unlink;
  pid_t (*waitpid)(pid_t, int*, int) = ::waitpid;
};

inline SystemCalls systemCalls;

}  // namespace zelvion
