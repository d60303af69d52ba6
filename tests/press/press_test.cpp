#include <sys/wait.h>

#include <filesystem>
#include <regex>

#include "files/faults.h"
#include "files/files.h"
#include "form/scripted_desktop.h"
#include "form/velmoire.h"

namespace zelvion {
namespace {

namespace fs = std::filesystem;
using testing::Box;
using testing::Fault;
using testing::Faults;
using testing::Kind;

/// A desktop in memory with real files.
class DesktopWithFiles : public testing::ScriptedDesktop {
 public:
  explicit DesktopWithFiles(std::string folder) : folder_(std::move(folder)) {}
  std::string pathOf(const std::string& name) override { return folder_ + "/" + name; }
  void append(const std::string& name, const std::string& text) override { appendWhole(pathOf(name), text); }
  void sync(const std::string& name) override { syncFile(pathOf(name)); }
  std::string read(const std::string& name) override { return readWhole(pathOf(name)); }

 private:
  std::string folder_;
};

/// What a press showed.
struct Outcome {
  std::string announced;  ///< by the last box
  bool failureTold = false;
  bool unsynced = false;  ///< at a box, with no failure told before
};

Outcome press(const std::string& folder, const std::string& button, const std::string& k) {
  DesktopWithFiles desktop(folder);
  Velmoire form(desktop);
  form.ordrek.Text = k;
  Outcome outcome;
  desktop.answerAll([&](const Box& box) {
    outcome.announced = box.prompt;
    outcome.failureTold |= box.prompt.find("pas pu être écrit") != std::string::npos;
    outcome.unsynced |= Faults::unsynced() && !outcome.failureTold;
    return box.buttons == Buttons::Ok ? Answer::Ok : Answer::Yes;
  });
  form.click(button);
  return outcome;
}

struct Row {
  const char* button;
  const char* k;
  const char* file;
  std::regex record;
  std::size_t records;
};

// After a fault at each call of the system the file holds whole records alone, and what a box announced is in
// it and on the disk unless a box told a failure.
TEST(Press, KeepsItsRecordsWholeAfterEveryFault) {
  std::string folder = (fs::temp_directory_path() / "zelvion-XXXXXX").string();
  ASSERT_NE(::mkdtemp(folder.data()), nullptr);
  const Row rows[] = {{"Command5", "3", "pfixe.txt", std::regex("Ordre 3, points fixes:\r\n\\d{3}, \r\n"), 4},
                      {"Command4", "9", "cycle.txt",
                       std::regex(" Puissance k= 9\\. Pour 789[^\r]*\r\n\\([0-9, ]*\\)\r\n[^\r]*\r\n"), 1}};
  for (const Row& row : rows) {
    const fs::path file = fs::path(folder) / row.file;
    int calls = 0;
    {
      const Faults none;
      EXPECT_FALSE(press(folder, row.button, row.k).failureTold);
      calls = static_cast<int>(Faults::calls().size());
    }
    for (int call = 1; call <= calls; ++call) {
      for (const Kind kind : {Kind::Fails, Kind::Interrupted, Kind::Short, Kind::DiskFull, Kind::Ends}) {
        fs::remove(file);
        const pid_t child = ::fork();
        if (child == 0) {
          const Faults faults({{call, kind}});
          const Outcome outcome = press(folder, row.button, row.k);
          ::_exit(outcome.unsynced || outcome.announced.empty() ? 2 : outcome.failureTold ? 1 : 0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        std::string text = fs::exists(file) ? readWhole(file) : "";
        std::size_t records = 0;
        std::smatch match;
        while (std::regex_search(text, match, row.record, std::regex_constants::match_continuous)) {
          text = match.suffix().str();
          ++records;
        }
        const std::string what =
            row.file + (" " + std::to_string(call)) + ":" + std::to_string(static_cast<int>(kind));
        EXPECT_EQ(text, "") << what;
        if (WIFSIGNALED(status)) continue;
        EXPECT_LE(WEXITSTATUS(status), 1) << what;
        EXPECT_TRUE(WEXITSTATUS(status) == 1 || records == row.records) << what << " " << records;
      }
    }
  }
  fs::remove_all(folder);
}

}  // namespace
}  // namespace zelvion
