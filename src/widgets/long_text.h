#pragma once

#include <QPlainTextEdit>
#include <limits>
#include <string_view>
#include <vector>

namespace zelvion {

/// A read-only text of any length, up to many millions of characters in one line. It can be selected, copied
/// and read by assistive tools to the letter, with "\n" for each line end.
///
/// Qt lays out a block at a time, so a long text is parted into blocks of a few thousand characters. Where a
/// block ends and no line does is a joint: a position of the document, but no character of the text. An
/// offset counts the characters (UTF-16) of the text alone. What lies millions of characters further down
/// becomes part of the document only when somebody gets near it.
class LongText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit LongText(QWidget* parent = nullptr);

  /// Shows `text` (UTF-8), which has to stay as it is until another one is shown. Throws std::bad_alloc where
  /// the memory does not suffice, and shows nothing then.
  void setText(std::string_view text);
  /// The characters from `begin` to before `end`, as far as there are any. Throws std::bad_alloc.
  QString text(int begin = 0, int end = std::numeric_limits<int>::max());

  /// Whether the text is one that takes much memory.
  bool isLarge() const { return !rest_.empty() || document()->characterCount() > 1'000'000; }

  bool isJoint(int position) const;
  int offsetOf(int position) const;
  /// The position in the document of `offset`, which is moved into the text; behind a joint, not before it.
  int positionOf(int offset);
  /// Selects from one offset to another, where the cursor then stands.
  void select(int anchor, int cursor);
  QString selectedText() const;

  /// Copies what is selected, or the whole text where nothing is.
  void copyAll();
  /// Whether the key enlarges or shrinks all long texts of the program, which is done then: Ctrl++, Ctrl+-,
  /// and Ctrl+0 for their own size.
  static bool zooms(const QKeyEvent& event);
  /// Whether the frame shows without the focus, too.
  void setFramed(bool framed) { framed_ = framed; }

  /// The smallest size, within `largest`, in which the whole text stands without scrolling; `largest` if
  /// there is none.
  QSize sizeFor(QSize largest) const;

  /// Gives the text, whose font has its own size, the zoom that holds at present.
  void applyZoom();

 signals:
  void zoomed();

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void clearDocument();
  void load(std::size_t bytes);
  void loadNearby();
  QString textBetween(int begin, int end) const;
  void announceCursor();
  static void zoomTo(int step);

  std::string_view rest_;    ///< of the text: what the document does not have yet
  std::vector<int> joints_;  ///< the positions of the separators of blocks that end no line
  bool framed_ = true;
  int wheel_ = 0;               ///< how far the wheel was turned, in eighths of a degree, since the last step
  int ownPixels_ = 0;           ///< the size of the font without zoom, once it is known
  static inline int zoom_ = 0;  ///< in steps, for all long texts
};

}  // namespace zelvion
