#pragma once

#include <QMainWindow>
#include <memory>
#include <vector>

#include "form/shell/desktop.h"

namespace zelvion {

class FormView;

/// The desktop in front of the user. There is a QApplication as long as it lives.
class QtDesktop : public Desktop {
 public:
  QtDesktop();
  ~QtDesktop() override;

  /// Opens the main window with `form`, which must outlive the window, and returns at once.
  void show(Form& form);
  /// Opens the main window with `form`, and returns the program's exit code when it has been closed.
  int run(Form& form);

  Answer message(std::string_view prompt, Buttons buttons, const std::string& title) override;
  Moment now() override;
  std::string pathOf(const std::string& name) override;
  void append(const std::string& name, const std::string& text) override;
  void sync(const std::string& name) override;
  std::string read(const std::string& name) override;
  bool openPage(const std::string& address) override;
  Twips screen() override;
  void showModal(Form& form) override;
  void select(std::string_view control, std::size_t place) override;
  void unload(Form& form) override;

 private:
  void pushAll();
  QWidget* topWindow() const;
  void recover(bool memory);
  void openManual();

  std::unique_ptr<QMainWindow> mainWindow_;
  std::vector<FormView*> views_;  ///< of the open forms, the topmost last
  bool recovering_ = false;
  QObject lifetime_;  ///< ends the connection to the application
};

}  // namespace zelvion
