#pragma once

#include <QProxyStyle>

namespace zelvion {

/// The style of the desktop, with a border around text fields that is seen under every theme, and stands out
/// around the one that has the keyboard.
class FieldStyle : public QProxyStyle {
  Q_OBJECT

 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace zelvion
