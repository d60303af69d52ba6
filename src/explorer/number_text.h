#pragma once

#include <string>

#include "widgets/long_text.h"

namespace zelvion {

/// A long text whose numbers can be followed: by a click, or by the return key where the cursor is.
class NumberText : public LongText {
  Q_OBJECT

 public:
  explicit NumberText(const QString& accessibleName);

  /// Shows `text`, which it keeps.
  void showText(std::string text);

 signals:
  void chosen(const QString& digits);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void chooseAt(int position);

  std::string shown_;
  QPoint pressed_;
};

}  // namespace zelvion
