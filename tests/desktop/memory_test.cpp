#include <sys/resource.h>

#include <fstream>
#include <new>
#include <stdexcept>

#include "desktop/window_test.h"

namespace zelvion::testing {
namespace {

const QString kTooLittle = "La mémoire ne suffit pas pour afficher ce texte.*";

/// Leaves the process so many bytes more than it has, as long as it lives.
class MemoryLimit {
 public:
  explicit MemoryLimit(std::size_t more) {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    ::getrlimit(RLIMIT_AS, &usual_);
    const rlimit limit{pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) + more, usual_.rlim_max};
    ::setrlimit(RLIMIT_AS, &limit);
  }
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;
  ~MemoryLimit() { ::setrlimit(RLIMIT_AS, &usual_); }

 private:
  rlimit usual_{};
};

/// Throws once when `object` gets an event of one type.
class Thrower : public QObject {
 public:
  Thrower(QObject& object, QEvent::Type type, std::function<void()> fail)
      : type_(type), fail_(std::move(fail)) {
    object.installEventFilter(this);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == type_) {
      type_ = QEvent::None;
      fail_();
    }
    return false;
  }

 private:
  QEvent::Type type_;
  std::function<void()> fail_;
};

TEST_F(WindowTest, TextThatDoesNotFitIsLetGoAndToldOnce) {
#ifdef ZELVION_SANITIZED
  GTEST_SKIP() << "the sanitizer ends a program that has no memory";
#endif
  form.RichTextBox1.Text.assign(30'000'000, '7');
  const MemoryLimit limit(45'000'000);
  expectBox("*", kTooLittle);
  type("elem", "1");
  expectNoMore();
  EXPECT_TRUE(isLike(textOf(at("RichTextBox1")), kTooLittle));
  EXPECT_TRUE(isLike(QString::fromStdString(form.RichTextBox1.Text), kTooLittle));
  type("elem", "45");
  press("Command10");
  EXPECT_EQ(textOf(at("entier")), "1584");

  // The box of a handler may be what does not fit.
  const MemoryLimit tighter(24'000'000);
  EXPECT_THROW(desktop.message(std::string(5'000'000, '8'), Buttons::Ok, "titre"), std::bad_alloc);
}

TEST_F(WindowTest, NoExceptionEndsTheProgram) {
#ifdef ZELVION_SANITIZED
  GTEST_SKIP() << "the toolkit loses sixteen bytes where an exception passes through it";
#endif
  form.RichTextBox1.Text.assign(200'000, '7');
  press("Command10");
  auto& output = at<LongText>("RichTextBox1");
  {
    const Thrower paint(*output.viewport(), QEvent::Paint, [] { throw std::bad_alloc(); });
    expectBox("zelvion", kTooLittle);
    output.viewport()->update();
    expectNoMore();
  }
  EXPECT_TRUE(isLike(output.text(), kTooLittle));
  const Thrower press(output, QEvent::KeyPress, [] { throw std::runtime_error("any"); });
  expectBox("zelvion", "Une erreur imprévue*");
  output.setFocus();
  key(Qt::Key_Down);
  expectNoMore();
}

}  // namespace
}  // namespace zelvion::testing
