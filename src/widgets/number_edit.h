#pragma once

#include <QPlainTextEdit>

namespace zelvion {

/// A box to type a number in, of any length and on one line. What Tab brings there is ready to be typed over;
/// what is selected is so until another control takes the keyboard.
/// Of a long line only what is in sight is drawn, and it is laid out once for each change.
class NumberEdit : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit NumberEdit(QWidget* parent);

  /// The text to the letter, blanks that do not break included, with CR LF line ends.
  QString typedText() const;

 protected:
  void insertFromMimeData(const QMimeData* source) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void drawLine(QPainter& painter, const QTextBlock& block, const QPointF& place);
};

}  // namespace zelvion
