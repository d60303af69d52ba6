#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "widgets/application.h"

/// The tests run from a copy of this program in a folder of its own, for results are written beside it.
int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  const fs::path self = fs::read_symlink("/proc/self/exe");
  if (qEnvironmentVariableIsEmpty("ZELVION_TEST_COPY")) {
    std::string folder = (fs::temp_directory_path() / "zelvion été XXXXXX").string();
    const fs::path copy = fs::path(::mkdtemp(folder.data())) / self.filename();
    fs::copy_file(self, copy);
    qputenv("ZELVION_TEST_COPY", "1");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* name : {"QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE"}) qunsetenv(name);
    ::execv(copy.c_str(), argv);
    return 1;
  }
  testing::InitGoogleTest(&argc, argv);
  int result = 0;
  {
    const zelvion::GuardedApplication application(argc, argv);
    zelvion::prepare("zelvion");
    result = RUN_ALL_TESTS();
  }
  fs::remove_all(self.parent_path());
  return result;
}
