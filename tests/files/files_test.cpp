#include "files/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <system_error>

namespace zelvion {
namespace {

namespace fs = std::filesystem;
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
std::string recordOf(char letter) {
  return "<" + std::string(6'000, letter) + ">\r\n";
}

class Files : public ::testing::Test {
 protected:
  Files() {
    std::string name = (fs::temp_directory_path() / "zelvion été XXXXXX").string();
    folder = ::mkdtemp(name.data());
  }
  ~Files() override { fs::remove_all(folder); }
  std::string path(const std::string& name) const { return folder / name; }

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

TEST_F(Files, WhatCannotBeWrittenLeavesNoTrace) {
  const std::string old = recordOf('a');
  appendWhole(path("ancien.txt"), old);
  const auto expectFailure = [&](int error, const Action& limit, const std::string& text) {
    for (const char* name : {"ancien.txt", "nouveau.txt"}) {
      const pid_t child = start([&] {
        limit();
        appendWhole(path(name), text);
      });
      EXPECT_EQ(errorOf(child), error) << name;
    }
    EXPECT_EQ(readWhole(path("ancien.txt")), old);
    EXPECT_FALSE(fs::exists(path("nouveau.txt")));
  };
  const Action fullDisk = [] {
    const rlimit limit{10'000, 10'000};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
  };
  expectFailure(EFBIG, fullDisk, recordOf('b') + recordOf('b'));

  fs::permissions(path("ancien.txt"), fs::perms(0444));
  fs::permissions(folder, fs::perms(0555));
  const Action noRights = [] {
    if (::geteuid() == 0 && ::seteuid(65'534) != 0) ::_exit(99);
  };
  expectFailure(EACCES, noRights, "x");
  fs::permissions(folder, fs::perms(0755));
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
