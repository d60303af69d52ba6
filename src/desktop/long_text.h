#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QString>
#include <optional>
#include <vector>

class QTextLayout;

namespace zelvion {

/// A read-only text of any length, up to many millions of characters on one line. It is broken into lines
/// by the widths of its characters, and only the lines in sight are laid out. It can be selected, copied and
/// read by assistive tools to the letter. A line end is "\n".
class LongText : public QAbstractScrollArea {
  Q_OBJECT

 public:
  /// The characters from `begin` to before `end`, as offsets into the text.
  struct Range {
    int begin = 0;
    int end = 0;
    bool empty() const { return begin == end; }
  };

  explicit LongText(QWidget* parent = nullptr);

  /// Replaces the text; CR LF and CR become "\n".
  void setText(const QString& text);
  const QString& text() const { return text_; }

  int cursor() const { return cursor_; }
  Range selection() const { return {qMin(anchor_, cursor_), qMax(anchor_, cursor_)}; }
  QString selectedText() const;
  /// Selects from `anchor` to `cursor`, where the cursor then stands; offsets outside the text are moved in.
  void select(int anchor, int cursor);
  void copy() const;

  Range characterAt(int offset) const;
  Range wordAt(int offset) const;
  /// The line on the screen that holds `offset`, with its line end.
  Range lineAt(int offset) const;

  /// The place of the cursor before `offset`, in the viewport's coordinates.
  QRect rectOf(int offset) const;
  int offsetAt(const QPoint& position) const;
  /// Scrolls as little as is needed to bring `offset` in sight.
  void scrollTo(int offset);

  /// The smallest size, at most `maxWidth` wide, in which the whole text stands without scrolling.
  QSize sizeFor(int maxWidth) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  int size() const { return static_cast<int>(text_.size()); }
  int lineHeight() const { return fontMetrics().lineSpacing(); }
  int horizontalExtra() const;
  int verticalExtra() const;
  void breakAgain();
  void updateScrollBar();
  int lineNumber(int offset) const;
  Range line(int number) const;
  void layOut(QTextLayout& layout, int number) const;
  int offsetIn(int number, qreal x) const;
  int previous(int offset) const;
  void moveTo(int anchor, int cursor);
  std::optional<int> keyTarget(const QKeyEvent& event);
  int vertically(int lines);
  void extendTo(const QPoint& position);

  QString text_;
  std::vector<int> starts_ = {0};  ///< the offset at which each line begins
  std::optional<int> brokenFor_;   ///< the width that the lines were broken for
  int anchor_ = 0;
  int cursor_ = 0;
  std::optional<qreal> column_;  ///< where the cursor wants to be while it moves up and down
  QBasicTimer dragging_;
};

}  // namespace zelvion
