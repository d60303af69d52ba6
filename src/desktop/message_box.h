#pragma once

#include <QDialog>
#include <QString>
#include <string>
#include <string_view>

#include "form/shell/desktop.h"

namespace zelvion {

class LongText;

/// A modal box with a text of any length and the buttons "OK", or "Oui" and "Non". It never outgrows the
/// screen; a title that does not fit the title bar stands above the text too.
class MessageBox : public QDialog {
  Q_OBJECT

 public:
  /// Texts are UTF-8; `prompt` has to stay as it is as long as the box is there.
  MessageBox(std::string_view prompt, Buttons buttons, std::string title, QWidget* parent);

  /// Opens the box and returns what the user chose; closing it means Ok, or No to a question.
  Answer ask();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void addButtons();
  void fit();

  const std::string wholeTitle_;
  Buttons buttons_;
  LongText* text_;
  LongText* title_;  ///< seen only where the title bar does not hold the title
};

/// What to give to QWidget::setWindowTitle, which reads "[*]" as a mark, so that `title` shows to the letter.
QString windowTitleFor(QString title);

}  // namespace zelvion
