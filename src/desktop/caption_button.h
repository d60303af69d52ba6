#pragma once

#include <QPushButton>

namespace zelvion {

/// A push button of fixed size that wraps its caption and, where it still does not fit, makes its font
/// smaller. `text()` is the caption to the letter.
class CaptionButton : public QPushButton {
  Q_OBJECT

 public:
  CaptionButton(const QString& caption, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace zelvion
