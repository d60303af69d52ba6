#include "files/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <system_error>

#include "files/faults.h"

namespace zelvion {
namespace {

namespace fs = std::filesystem;
using testing::Fault;
using testing::Faults;
using testing::Kind;
using Action = std::function<void()>;

/// The error of an action, 0 if it has none.
int errorOf(const Action& action) {
  try {
    action();
    return 0;
  } catch (const std::system_error& error) {
    return error.code().value();
  }
}

/// Starts an action in a process of its own, which ends with the action's error as its status.
pid_t start(const Action& action) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  ::alarm(60);
  ::_exit(errorOf(action));
}

int errorOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// A record of 6 kB that shows where it is torn or mixed with another.
std::string recordOf(char letter) { return "<" + std::string(6'000, letter) + ">\r\n"; }

class Files : public ::testing::Test {
 protected:
  Files() {
    std::string name = (fs::temp_directory_path() / "zelvion été XXXXXX").string();
    folder = ::mkdtemp(name.data());
  }
  ~Files() override { fs::remove_all(folder); }
  std::string path(const std::string& name) const { return folder / name; }

  using Contents = std::map<std::string, std::string>;
  Contents contents() const {
    Contents all;
    for (const auto& entry : fs::directory_iterator(folder))
      all[entry.path().filename()] = readWhole(entry.path());
    return all;
  }

  fs::path folder;
};

TEST_F(Files, AppendKeepsTheFileAndEveryByte) {
  const std::string bytes("\0\xFF é\r\n\n", 8);
  appendWhole(path("résultat.txt"), bytes);
  std::ifstream reader(path("résultat.txt"), std::ios::binary);
  appendWhole(path("résultat.txt"), "suite");
  EXPECT_EQ(readWhole(path("résultat.txt")), bytes + "suite");
  const std::string seen{std::istreambuf_iterator<char>(reader), {}};
  EXPECT_EQ(seen, bytes + "suite") << "whoever has the file open sees it grow";
}

TEST_F(Files, WhatIsNoFileIsRefusedAtOnce) {
  fs::create_directory(path("dossier"));
  ASSERT_EQ(::mkfifo(path("tube").c_str(), 0600), 0);
  const auto append = [&](const std::string& name) { return errorOf([&] { appendWhole(path(name), "x"); }); };
  const auto read = [&](const std::string& name) { return errorOf([&] { readWhole(path(name)); }); };
  EXPECT_EQ(append("absent/x.txt"), ENOENT);
  EXPECT_EQ(read("absent.txt"), ENOENT);
  EXPECT_EQ(append("dossier"), EISDIR);
  EXPECT_EQ(read("dossier"), EISDIR);
  ::alarm(20);  // a pipe would wait for its other end
  EXPECT_NE(append("tube"), 0);
  EXPECT_EQ(read("tube"), EINVAL);
  const int otherEnd = ::open(path("tube").c_str(), O_RDWR);
  EXPECT_EQ(append("tube"), EINVAL);
  ::close(otherEnd);
  ::alarm(0);
}

TEST_F(Files, WithoutRightsNothingIsTouched) {
  appendWhole(path("ancien.txt"), "x");
  fs::permissions(path("ancien.txt"), fs::perms(0444));
  fs::permissions(folder, fs::perms(0555));
  for (const char* name : {"ancien.txt", "nouveau.txt"}) {
    const pid_t child = start([&] {
      if (::geteuid() == 0 && ::seteuid(65'534) != 0) ::_exit(99);
      appendWhole(path(name), "x");
    });
    EXPECT_EQ(errorOf(child), EACCES) << name;
  }
  fs::permissions(folder, fs::perms(0755));
  EXPECT_EQ(contents(), (Contents{{"ancien.txt", "x"}}));
}

// Two records, the second one long, behind an old one, on a file system that is not known, or in a new file:
// with a fault at each call, and a kill at each call after a fault that lasts.
TEST_F(Files, RecordsAreWholeAfterEveryFault) {
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  const std::string records[] = {"<kurz>\r\n", recordOf('b')};
  const auto press = [&] {
    for (const std::string& record : records) appendWhole(path("x.txt"), record);
    syncFile(path("x.txt"));
    if (!readWhole(path("x.txt")).ends_with(records[0] + records[1])) ::_exit(98);
    if (Faults::unsynced()) ::_exit(97);
  };
  for (const std::string& old : {std::string(), recordOf('a')}) {
    const bool isKnown = old.empty();
    const auto begin = [&] {
      fs::remove_all(path(""));
      fs::create_directory(path(""));
      std::ofstream(path("voisin.txt")) << "y";
      if (!old.empty()) std::ofstream(path("x.txt")) << old;
    };
    const auto expectWhole = [&](const std::vector<Fault>& faults) {
      std::string what;
      for (const Fault& fault : faults) {
        what += std::to_string(fault.call) + ":" + std::to_string(static_cast<int>(fault.kind)) + " ";
      }
      begin();
      const int outcome = errorOf(start([&] {
        const Faults injected(faults, isKnown);
        press();
      }));
      while (::wait(nullptr) > 0) {
      }
      Contents now = contents();
      const std::string text = now["x.txt"];
      const std::string whole[] = {old, old + records[0], old + records[0] + records[1]};
      EXPECT_NE(std::find(std::begin(whole), std::end(whole), text), std::end(whole)) << what << text.size();
      EXPECT_TRUE(outcome != 0 || text == whole[2]) << what;
      EXPECT_TRUE(outcome == 0 || outcome == -SIGKILL || outcome == EIO || outcome == ENOSPC)
          << what << outcome;
      EXPECT_EQ(now, (Contents{{"voisin.txt", "y"}, {"x.txt", text}})) << what;
    };

    begin();
    std::vector<const char*> calls;
    {
      const Faults none({}, isKnown);
      press();
      calls = Faults::calls();
    }
    const int count = static_cast<int>(calls.size());
    for (int call = 1; call <= count; ++call) {
      for (const Kind kind :
           {Kind::Fails, Kind::Interrupted, Kind::Short, Kind::DiskFull, Kind::Ends, Kind::ParentEnds}) {
        expectWhole({{call, kind}});
      }
      if (calls[static_cast<std::size_t>(call) - 1] != std::string("write")) continue;
      for (int second = call + 1; second <= count + 2; ++second) {
        for (const Kind kind : {Kind::Ends, Kind::ParentEnds}) {
          expectWhole({{call, Kind::DiskFull}, {second, kind}});
        }
      }
    }
  }
}

// What happens in the place of a call is told by a function without captures, which finds its file here.
std::string theFile;
int theDescriptor = -1;
int attempts = 0;

TEST_F(Files, WhatOtherWindowsDoMeanwhileIsKept) {
  const Faults restored;
  theFile = path("x.txt");
  appendWhole(theFile, "old");
  // Another window has the lock, and writes a record while this one waits. Then the disk is full.
  attempts = 0;
  systemCalls.flock = [](int fd, int how) {
    if (++attempts > 1) return ::flock(fd, how);
    std::ofstream(theFile, std::ios::app) << recordOf('a');
    errno = EWOULDBLOCK;
    return -1;
  };
  systemCalls.write = [](int fd, const void* from, std::size_t size) {
    if (size > 100) return ::write(fd, from, 100);
    errno = ENOSPC;
    return ssize_t{-1};
  };
  EXPECT_EQ(errorOf([&] { appendWhole(theFile, recordOf('b').substr(0, 150)); }), ENOSPC);
  EXPECT_EQ(readWhole(theFile), "old" + recordOf('a'));

  // Another window removes the file, which it made itself, as it cannot write to it.
  systemCalls.write = ::write;
  systemCalls.flock = [](int fd, int how) {
    if (++attempts == 1) ::unlink(theFile.c_str());
    return ::flock(fd, how);
  };
  for (const bool there : {true, false}) {
    attempts = 0;
    if (!there) fs::remove(theFile);
    appendWhole(theFile, "new");
    EXPECT_EQ(readWhole(theFile), "new");
  }

  // There are no locks: nobody waits for one, and what may be the record of another window is not cut.
  attempts = 0;
  systemCalls.flock = [](int, int) {
    ++attempts;
    errno = ENOLCK;
    return -1;
  };
  systemCalls.write = [](int fd, const void* from, std::size_t size) {
    std::ofstream(theFile, std::ios::app) << recordOf('a');
    return size > 100 ? ::write(fd, from, 100) : (errno = ENOSPC, ssize_t{-1});
  };
  EXPECT_EQ(errorOf([&] { appendWhole(theFile, std::string(150, 'b')); }), ENOSPC);
  EXPECT_TRUE(readWhole(theFile).ends_with(recordOf('a')));
  EXPECT_EQ(attempts, 1);
}

TEST_F(Files, TheWriterIsOnItsOwn) {
  const Faults restored;
  theDescriptor = ::open("/dev/null", O_RDONLY);
  attempts = 0;
  systemCalls.write = [](int fd, const void* from, std::size_t size) {
    attempts += ::fcntl(theDescriptor, F_GETFD) == -1 ? 1 : 100;
    return ::write(fd, from, size);
  };
  appendWhole(path("x.txt"), recordOf('a'));
  EXPECT_EQ(attempts, 1) << "what the window has open stays open in the writer";
  systemCalls.fstatfs = [](int, struct statfs* status) {
    status->f_type = EXT4_SUPER_MAGIC;
    status->f_bsize = 1024;
    return 0;
  };
  for (const int expected : {101, 102, 103}) {
    appendWhole(path("y.txt"), std::string(1'000, 'y'));
    EXPECT_EQ(attempts, expected) << "a writer is there where the next block begins";
  }
  EXPECT_EQ(::close(theDescriptor), 0);

  ::signal(SIGCHLD, SIG_IGN);
  appendWhole(path("x.txt"), recordOf('b'));
  systemCalls.write = [](int, const void*, std::size_t) {
    errno = ENOSPC;
    return ssize_t{-1};
  };
  EXPECT_EQ(errorOf([&] { appendWhole(path("x.txt"), recordOf('c')); }), EIO) << "how it ended is not seen";
  ::signal(SIGCHLD, SIG_DFL);
  EXPECT_EQ(readWhole(path("x.txt")), recordOf('a') + recordOf('b'));
}

TEST_F(Files, WhatOnlyCloseOrSyncTellIsToldToo) {
  const Faults restored({}, false);
  appendWhole(path("x.txt"), "old");
  systemCalls.close = [](int fd) {
    ::close(fd);
    errno = ENOSPC;
    return -1;
  };
  EXPECT_EQ(errorOf([&] { appendWhole(path("x.txt"), "new"); }), ENOSPC);
  EXPECT_EQ(errorOf([&] { appendWhole(path("x.txt"), recordOf('a')); }), ENOSPC);
  EXPECT_EQ(errorOf([&] { syncFile(path("x.txt")); }), ENOSPC);
  EXPECT_EQ(readWhole(path("x.txt")), "old");
  systemCalls = {};
  systemCalls.fdatasync = systemCalls.fsync = [](int) {
    errno = EIO;
    return -1;
  };
  EXPECT_EQ(errorOf([&] { syncFile(path("x.txt")); }), EIO);
  EXPECT_EQ(errorOf([&] { appendWhole(path("y.txt"), "x"); }), EIO);
  EXPECT_FALSE(fs::exists(path("y.txt")));
}

TEST_F(Files, ALinkToNothingIsFollowedAndNeverRemoved) {
  fs::create_symlink("there.txt", path("x.txt"));
  {
    const Faults full({{1, Kind::DiskFull}});
    EXPECT_EQ(errorOf([&] { appendWhole(path("x.txt"), "x"); }), ENOSPC);
  }
  EXPECT_TRUE(fs::is_symlink(path("x.txt")));
  appendWhole(path("x.txt"), "x");
  EXPECT_EQ(readWhole(path("there.txt")), "x");
}

TEST_F(Files, RecordsStayWholeWhenTwoWriteAndAreKilled) {
  const std::size_t size = recordOf('a').size();
  const auto recordsNow = [&] { return fs::exists(path("x.txt")) ? fs::file_size(path("x.txt")) / size : 0; };
  for (int round = 0; round < 20; ++round) {
    const auto writer = [&](char letter) {
      return start([&, letter] {
        while (true) appendWhole(path("x.txt"), recordOf(letter));
      });
    };
    for (const pid_t child : {writer('a'), writer('b')}) {
      const auto enough = recordsNow() + 20;
      while (recordsNow() < enough) ::usleep(500);
      ::kill(child, SIGKILL);
      EXPECT_EQ(errorOf(child), -SIGKILL);
    }
  }
  ::usleep(100'000);  // a write that was under way may still end
  const std::string text = readWhole(path("x.txt"));
  for (std::size_t i = 0; i < text.size(); i += size) {
    ASSERT_EQ(text.substr(i, size), recordOf(text[i + 1])) << "at " << i;
  }
}

}  // namespace
}  // namespace zelvion
