#pragma once

#include <QScrollArea>
#include <QString>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "form/shell/form.h"

class QMenuBar;

namespace zelvion {

/// What replaces a text that did not fit the memory, and is said in the box about it.
inline constexpr const char* kTooLittleMemory =
    "La mémoire ne suffit pas pour afficher ce texte. "
    "Si c’est un rapport, il est en entier dans son fichier.";

/// The client area of a window, drawn from the table of its form: the controls at their fixed places, with
/// scroll bars where the window is smaller. It copies texts between form and screen and runs the handlers.
/// Every widget has the name of its control as its object name.
class FormView : public QScrollArea {
  Q_OBJECT

 public:
  /// Draws `form`, which must outlive the view, with its present texts.
  FormView(Form& form, QWidget* parent);

  Form& form() const { return form_; }
  /// Fills a menu bar with the form's menu.
  void addMenuTo(QMenuBar& bar);
  /// Sizes the window around this view, as far as the screen has room, places it, and names it after the
  /// form. `menuHeight` is what the window needs above the view.
  void fitWindow(int menuHeight);
  /// Puts the keyboard on the text box `name` and selects the character at `place`.
  void select(std::string_view name, int place);
  /// Copies the form's texts to the screen. Throws std::bad_alloc where the memory does not suffice; then the
  /// text that did not fit is no longer in the form, either.
  void push();
  /// Replaces large texts that the user did not type, in the form and on the screen, by a sentence that says
  /// so.
  void letGo();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// A control whose text lives in the form.
  struct Field {
    std::string_view name;
    std::function<void(const std::string&)>
        show;                        ///< given `shown`, which stays as it is until the next time
    std::function<QString()> typed;  ///< null for a control that nobody types in
    QWidget* widget;
    std::string shown = {};  ///< the text when the screen and the form were last the same
    bool edited = false;     ///< since then
  };

  void addControl(const Control& control, QWidget* parent);
  QWidget* makeWidget(const Control& control, QWidget* parent);
  void setBuddies();
  void press(std::string_view name);
  void edited(std::string_view name);
  void run(const std::function<void()>& handler);
  void pull();
  void giveUp(Field& field);

  Form& form_;
  std::vector<Field> fields_;
  bool running_ = false;
};

}  // namespace zelvion
