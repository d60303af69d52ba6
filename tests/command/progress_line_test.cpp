#include "command/progress_line.h"

#include <gtest/gtest.h>

#include <future>
#include <sstream>

#include "command/run.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

struct Shown {
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  Progress progress;
};

TEST(ProgressLine, ShowsShareAndTextAndGoesAway) {
  Shown shown;
  const Environment environment{shown.in, shown.out, shown.err, true, 1, shown.progress};
  std::promise<void> twice;
  int calls = 0;
  {
    const ProgressLine line(environment, [&] {
      if (++calls == 2) twice.set_value();
      return ProgressLine::Standing{0.5, "12 nombres trouvés"};
    });
    twice.get_future().wait();
  }
  const std::string text = shown.err.str();
  EXPECT_TRUE(text.starts_with("\033[?7l50\u00A0% · 12 nombres trouvés · reste ")) << text;
  EXPECT_TRUE(text.ends_with("\r\033[K"));
}

TEST(ProgressLine, IsNotForFiles) {
  Shown shown;
  const Environment environment{shown.in, shown.out, shown.err, false, 1, shown.progress};
  const ProgressLine line(environment, []() -> ProgressLine::Standing { throw 0; });
  EXPECT_EQ(shown.err.str(), "");
}

TEST(ProgressLine, TellsTimesInWords) {
  EXPECT_EQ(pages::durationText(0.4), "0\u00A0s");
  EXPECT_EQ(pages::durationText(59.6), "1\u00A0min 0\u00A0s");
  EXPECT_EQ(pages::durationText(7'265), "2\u00A0h 1\u00A0min");
}

}  // namespace
}  // namespace zelvion::command
