#pragma once

#include <QApplication>
#include <optional>

namespace zelvion {

/// The toolkit's application, which sees every event: an exception that leaves the handler of one, be it a
/// paint, a key or the question of an assistive tool, is told by a signal instead of ending the program.
class GuardedApplication : public QApplication {
  Q_OBJECT

 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override;
  /// Gives the signal for the exception that is being handled.
  static void tellException() noexcept;

 signals:
  /// `memory`: it was too little memory.
  void failed(bool memory);
};

/// The toolkit's application for as long as it lives, prepared. The arguments of the program are for nobody:
/// any are told, in French, on the error stream. Where no screen can be reached that is told there too, and
/// the program ends with status 1. `name` is that of the program.
class Application {
 public:
  Application(int argc, char** argv, const char* name);

 private:
  int arguments_;
  std::optional<GuardedApplication> toolkit_;
};

/// Gives the application its `name`, icon and font, the French texts of the toolkit whatever the locale, and
/// what assistive tools need to read its texts. To be called once, before the first window opens.
void prepare(const char* name);

}  // namespace zelvion
