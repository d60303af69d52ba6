// What the window costs by itself, beside the toolkit's own widgets: window WORK zelvion|Qt [LENGTH] FILE, as
// press.cpp. It runs on the toolkit's platform without a screen.

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "desktop/qt_desktop.h"
#include "form/shell/forms.h"
#include "form/shell/velmoire.h"
#include "measure.h"
#include "widgets/application.h"
#include "widgets/long_text.h"

namespace zelvion::bench {
namespace {

constexpr const char* kShown = "shown";  // the first word for a process that starts and says when it is seen

std::string program;  // this one, to be started anew

std::array<char*, 2>& arguments() {
  static char name[] = "window";
  static std::array<char*, 2> arguments = {name, nullptr};
  return arguments;
}

QString digits(int count) { return QString("1234567890").repeated(count / 10 + 1).left(count); }

// The toolkit's own widget for a control.
QWidget* plainWidget(const Control& control, QWidget* parent) {
  const QString text = QString::fromUtf8(control.caption.data(), static_cast<int>(control.caption.size()));
  switch (control.kind) {
    case Kind::Button:
      return new QPushButton(text, parent);
    case Kind::TextBox:
      return new QLineEdit(parent);
    case Kind::MultilineTextBox:
    case Kind::RichTextBox:
      return new QPlainTextEdit(parent);
    default:
      return new QLabel(text, parent);
  }
}

// A window with the toolkit's own widgets in the places of ours.
std::unique_ptr<QMainWindow> plainWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->resize(kMainForm.width / kTwipsPerPixel, kMainForm.height / kTwipsPerPixel);
  for (const Control& control : kMainForm.controls) {
    QWidget* widget = plainWidget(control, window.get());
    widget->setGeometry(control.left / kTwipsPerPixel, control.top / kTwipsPerPixel,
                        control.width / kTwipsPerPixel, control.height / kTwipsPerPixel);
  }
  return window;
}

// Says when the window is drawn, and waits for the end.
void waitUntilDrawn() {
  while (!QGuiApplication::topLevelWindows().constFirst()->isExposed()) QApplication::processEvents();
  QApplication::processEvents();
  if (::write(STDOUT_FILENO, "!", 1) == 1) ::pause();
}

void show(const std::string& whose) {
  if (whose == "Qt") {
    int count = 0;
    const QApplication application(count, nullptr);
    const auto window = plainWindow();
    window->show();
    waitUntilDrawn();
  } else {
    const Application application(1, arguments().data(), "zelvion");
    QtDesktop desktop;
    Velmoire form(desktop);
    desktop.show(form);
    waitUntilDrawn();
  }
}

// From the start of a process until its window is drawn.
void start(Measure& measure, const std::string& whose) {
  int ends[2] = {};
  pid_t child = -1;
  const auto stop = [&] {
    if (child <= 0) return;
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
  };
  measure.run(stop, [&] {
    if (::pipe(ends) != 0 || (child = ::fork()) < 0) {
      throw std::system_error(errno, std::generic_category(), program);
    }
    if (child == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      ::dup2(ends[1], STDOUT_FILENO);
      ::execl(program.c_str(), program.c_str(), kShown, whose.c_str(), nullptr);
      ::_exit(127);
    }
    ::close(ends[1]);
    char shown = 0;
    if (::read(ends[0], &shown, 1) != 1) throw std::runtime_error("the window did not open");
  });
  stop();
}

template <typename T>
T& named(const QString& name) {
  for (QWidget* widget : QApplication::allWidgets()) {
    if (auto* found = qobject_cast<T*>(widget); found && widget->objectName() == name) return *found;
  }
  throw std::logic_error("nothing is called " + name.toStdString());
}

// So many digits pasted into the box for p, until they are drawn.
void paste(Measure& measure, const std::string& whose, int length) {
  QtDesktop desktop;
  Velmoire form(desktop);
  desktop.show(form);
  auto& ours = named<QPlainTextEdit>("entier");
  QPlainTextEdit plain;
  plain.setLineWrapMode(QPlainTextEdit::NoWrap);
  plain.resize(ours.size());
  if (whose == "Qt") plain.show();
  QPlainTextEdit& box = whose == "Qt" ? plain : ours;
  QGuiApplication::clipboard()->setText(digits(length));
  measure.run([&] { box.clear(); },
              [&] {
                box.paste();
                box.repaint();
                QApplication::processEvents();
              });
  measure.answer = box.toPlainText().toStdString();
}

// A press with a p that is too long for it, until the box that says so is drawn.
void refuse(Measure& measure, int length) {
  QtDesktop desktop;
  Velmoire form(desktop);
  desktop.show(form);
  named<QPlainTextEdit>("entier").setPlainText(digits(length));
  auto& button = named<QPushButton>("Command4");
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (QWidget* message = QApplication::activeModalWidget()) {
      for (LongText* text : message->findChildren<LongText*>()) measure.answer = text->text().toStdString();
      message->repaint();
      message->close();
    }
  });
  timer.start(0);
  measure.run([] {},
              [&] {
                button.click();
                QApplication::processEvents();
              });
  if (measure.answer.find("32\u202F766") == std::string::npos)
    throw std::logic_error("no refusal: " + measure.answer);
}

void run(Measure& measure, const std::vector<std::string>& a) {
  const std::string& work = a.at(0);
  if (work == "start") return start(measure, a.at(1));
  const Application application(1, arguments().data(), "zelvion");
  if (work == "paste") return paste(measure, a.at(1), std::stoi(a.at(2)));
  if (work == "refuse") return refuse(measure, std::stoi(a.at(2)));
  throw std::invalid_argument("unknown work: " + work);
}

}  // namespace
}  // namespace zelvion::bench

int main(int argc, char** argv) {
  using namespace zelvion::bench;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  program = argv[0];
  if (argc == 3 && std::string(argv[1]) == kShown) {
    show(argv[2]);
    return 0;
  }
  return measureMain(argc, argv, run);
}
