#pragma once

#include <QSpinBox>

namespace zelvion {

/// The box for k. A text that is no power stays as typed, and is reported.
class PowerBox : public QSpinBox {
  Q_OBJECT

 public:
  explicit PowerBox(QWidget* parent = nullptr);

 signals:
  /// A sentence that says why the text is no power; nothing once it is one.
  void refused(const QString& sentence);

 protected:
  QValidator::State validate(QString& text, int& place) const override;
};

}  // namespace zelvion
