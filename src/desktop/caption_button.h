#pragma once

#include <QColor>
#include <QPushButton>

namespace zelvion {

/// A push button of fixed size that wraps its caption and, where it still does not fit, makes its font
/// smaller. `text()` is the caption to the letter.
class CaptionButton : public QPushButton {
  Q_OBJECT

 public:
  /// `face` is the colour of the button under its black caption; without a valid one the style draws it.
  CaptionButton(const QString& caption, const QColor& face, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor face_;
};

}  // namespace zelvion
