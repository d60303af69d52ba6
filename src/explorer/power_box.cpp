#include "explorer/power_box.h"

#include <QLineEdit>

#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "engine/transform/orbit.h"
#include "explorer/french.h"
#include "explorer/power.h"

namespace zelvion {
namespace {

/// Throws Refusal unless `text` is a power that the window shows.
void requirePower(const std::string& text) {
  const std::int32_t k = text::toInt32(text, kPowerName);
  if (k < 1 || k > kGreatestPower || QString::number(k).toStdString() != text)
    text::refuseRange(text, kPowerName, 1, kGreatestPower);
}

}  // namespace

PowerBox::PowerBox(QWidget* parent) : QSpinBox(parent) {
  setRange(1, kGreatestPower);
  setAccelerated(true);
  setAccessibleName("Puissance k");
  connect(lineEdit(), &QLineEdit::textChanged, this, [this](const QString& text) {
    try {
      requirePower(text.toStdString());
      emit refused({});
    } catch (const Refusal& refusal) {
      emit refused(french(refusal.what()));
    }
  });
}

QValidator::State PowerBox::validate(QString& text, int&) const {
  try {
    requirePower(text.toStdString());
    return QValidator::Acceptable;
  } catch (const Refusal&) {
    return QValidator::Intermediate;
  }
}

}  // namespace zelvion
