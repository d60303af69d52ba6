#include "desktop/long_text.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QHash>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <array>
#include <cmath>

namespace zelvion {
namespace {

constexpr int kMargin = 4;
/// No line has more characters than this, even if they all have no width.
constexpr int kLongestLine = 2000;
/// How much of a change of text is told to assistive tools, which ask for the rest.
constexpr int kAnnounced = 10'000;
constexpr int kDragInterval = 50;  // milliseconds

bool isLineEnd(QChar c) {
  return c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

char32_t codePointAt(QStringView text, qsizetype i) {
  const QChar c = text[i];
  const bool pair = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
  return pair ? QChar::surrogateToUcs4(c, text[i + 1]) : c.unicode();
}

/// Whether the character at `i` belongs to the one before it: half of a pair, or a mark set on it.
bool joinsPrevious(QStringView text, qsizetype i) {
  constexpr char16_t kFirstMark = 0x300;
  constexpr char16_t kJoiner = 0x200D;
  if (i == 0 || isLineEnd(text[i - 1])) return false;
  if (text[i - 1] == kJoiner) return true;
  if (text[i] < kFirstMark) return false;
  if (text[i].isLowSurrogate() && text[i - 1].isHighSurrogate()) return true;
  return text[i] == kJoiner || QChar::isMark(codePointAt(text, i));
}

qreal tabWidth(const QFontMetricsF& metrics) {
  return metrics.horizontalAdvance(u' ') * 8;
}

/// The widths of characters in one font, each measured once.
class Advances {
 public:
  explicit Advances(const QFont& font) : metrics_(font) {
    for (std::size_t i = 0; i < latin_.size(); ++i) {
      latin_[i] = metrics_.horizontalAdvance(QChar(static_cast<char16_t>(i)));
    }
    latin_[u'\t'] = tabWidth(metrics_);
  }

  qreal operator()(char32_t c) {
    if (c < latin_.size()) return latin_[c];
    auto found = others_.constFind(c);
    if (found == others_.constEnd()) {
      found = others_.insert(c, metrics_.horizontalAdvance(QString::fromUcs4(&c, 1)));
    }
    return *found;
  }

 private:
  QFontMetricsF metrics_;
  std::array<qreal, 256> latin_{};
  QHash<char32_t, qreal> others_;
};

struct Lines {
  std::vector<int> starts = {0};
  qreal widest = 0;
};

/// Breaks a text into lines of at most `width`: behind the last blank, comma or semicolon if one stands in
/// the second half of the line, else where the line is full. One blank may stand out at the end of a line.
Lines breakIntoLines(QStringView text, const QFont& font, qreal width) {
  struct Place {
    int at = 0;
    qreal x = 0;  // the width of the line up to here
  };
  Advances advance(font);
  Lines lines;
  qreal x = 0;
  Place gap;      // the last place behind a blank, comma or semicolon
  Place cluster;  // the last place that does not part a character from its marks
  const int size = static_cast<int>(text.size());
  for (int i = 0; i < size;) {
    const int start = lines.starts.back();
    if (isLineEnd(text[i])) {
      lines.widest = std::max(lines.widest, x);
      lines.starts.push_back(++i);
      x = 0;
      continue;
    }
    if (!joinsPrevious(text, i)) {
      cluster = {i, x};
      if (i > start && (text[i - 1] == u' ' || text[i - 1] == u',' || text[i - 1] == u';')) gap = cluster;
    }
    const char32_t c = codePointAt(text, i);
    const qreal charWidth = advance(c);
    const bool tooLong = i - start >= kLongestLine;
    const bool full = x + charWidth > width && !(c == U' ' && x <= width);
    if (tooLong || (full && cluster.at > start)) {
      Place cut = gap.at > start && gap.at - start >= (i - start) / 2 ? gap : cluster;
      if (cut.at <= start) cut = {i, x};
      lines.widest = std::max(lines.widest, cut.x);
      lines.starts.push_back(cut.at);
      x -= cut.x;
      cluster.x -= cut.x;
    }
    x += charWidth;
    i += QChar::requiresSurrogates(c) ? 2 : 1;
  }
  lines.widest = std::max(lines.widest, x);
  return lines;
}

}  // namespace

LongText::LongText(QWidget* parent) : QAbstractScrollArea(parent) {
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setBackgroundRole(QPalette::Base);
  viewport()->setCursor(Qt::IBeamCursor);
}

void LongText::setText(const QString& text) {
  const QString before = text_.left(kAnnounced);
  text_ = text;
  text_.replace("\r\n", "\n").replace('\r', '\n');
  anchor_ = cursor_ = 0;
  column_.reset();
  brokenFor_.reset();
  breakAgain();
  verticalScrollBar()->setValue(0);
  if (QAccessible::isActive()) {
    QAccessibleTextUpdateEvent event(this, 0, before, text_.left(kAnnounced));
    QAccessible::updateAccessibility(&event);
  }
}

QString LongText::selectedText() const {
  const Range range = selection();
  return text_.mid(range.begin, range.end - range.begin);
}

void LongText::select(int anchor, int cursor) {
  column_.reset();
  moveTo(anchor, cursor);
}

void LongText::moveTo(int anchor, int cursor) {
  anchor_ = std::clamp(anchor, 0, size());
  cursor_ = std::clamp(cursor, 0, size());
  viewport()->update();
  if (QAccessible::isActive()) {
    const Range range = selection();
    QAccessibleTextSelectionEvent event(this, range.begin, range.end);
    event.setCursorPosition(cursor_);
    QAccessible::updateAccessibility(&event);
  }
}

void LongText::copy() const {
  if (!selection().empty()) QApplication::clipboard()->setText(selectedText());
}

LongText::Range LongText::characterAt(int offset) const {
  if (offset >= size()) return {size(), size()};
  Range range{std::max(offset, 0), std::max(offset, 0) + 1};
  while (joinsPrevious(text_, range.begin)) --range.begin;
  while (range.end < size() && joinsPrevious(text_, range.end)) ++range.end;
  return range;
}

LongText::Range LongText::wordAt(int offset) const {
  Range range = characterAt(offset);
  const auto inWord = [this](int i) { return text_[i].isLetterOrNumber() || joinsPrevious(text_, i); };
  if (range.empty() || !inWord(range.begin)) return range;
  while (range.begin > 0 && inWord(range.begin - 1)) --range.begin;
  while (range.end < size() && inWord(range.end)) ++range.end;
  return range;
}

LongText::Range LongText::lineAt(int offset) const {
  return line(lineNumber(offset));
}

int LongText::previous(int offset) const {
  return offset > 0 ? characterAt(offset - 1).begin : 0;
}

int LongText::lineNumber(int offset) const {
  return static_cast<int>(std::upper_bound(starts_.begin(), starts_.end(), std::max(offset, 0)) -
                          starts_.begin()) -
         1;
}

LongText::Range LongText::line(int number) const {
  const auto i = static_cast<std::size_t>(number);
  return {starts_[i], i + 1 < starts_.size() ? starts_[i + 1] : size()};
}

/// Lays out one line, without its line end, from the left edge on.
void LongText::layOut(QTextLayout& layout, int number) const {
  Range range = line(number);
  if (!range.empty() && isLineEnd(text_[range.end - 1])) --range.end;
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  option.setTextDirection(Qt::LeftToRight);
  option.setTabStopDistance(tabWidth(QFontMetricsF(font())));
  layout.setText(text_.mid(range.begin, range.end - range.begin));
  layout.setFont(font());
  layout.setTextOption(option);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
}

QRect LongText::rectOf(int offset) const {
  const int number = lineNumber(offset);
  QTextLayout layout;
  layOut(layout, number);
  const qreal x = layout.lineAt(0).cursorToX(offset - line(number).begin);
  return {kMargin + qRound(x), kMargin + number * lineHeight() - verticalScrollBar()->value(), 1,
          lineHeight()};
}

int LongText::offsetIn(int number, qreal x) const {
  QTextLayout layout;
  layOut(layout, number);
  return line(number).begin + layout.lineAt(0).xToCursor(x);
}

int LongText::offsetAt(const QPoint& position) const {
  const int number = (position.y() - kMargin + verticalScrollBar()->value()) / lineHeight();
  return offsetIn(std::clamp(number, 0, static_cast<int>(starts_.size()) - 1), position.x() - kMargin);
}

void LongText::scrollTo(int offset) {
  const int top = lineNumber(offset) * lineHeight();
  const int lowest = top + lineHeight() + 2 * kMargin - viewport()->height();
  QScrollBar* bar = verticalScrollBar();
  bar->setValue(std::min(std::max(bar->value(), lowest), top));
}

/// The part of the width that lines cannot use. The scroll bar counts even where there is none, so that its
/// coming and going moves no line.
int LongText::horizontalExtra() const {
  return 2 * (frameWidth() + kMargin) + style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
}

int LongText::verticalExtra() const {
  return 2 * (frameWidth() + kMargin);
}

QSize LongText::sizeFor(int maxWidth) const {
  const Lines lines = breakIntoLines(text_, font(), maxWidth - horizontalExtra());
  return {std::min(maxWidth, static_cast<int>(std::ceil(lines.widest)) + 1 + horizontalExtra()),
          static_cast<int>(lines.starts.size()) * lineHeight() + verticalExtra()};
}

/// Breaks the lines for the present width, if it is a new one, and keeps the topmost text in sight.
void LongText::breakAgain() {
  const int available = width() - horizontalExtra();
  if (available != brokenFor_) {
    const int lastLine = static_cast<int>(starts_.size()) - 1;
    const int top = line(std::min(verticalScrollBar()->value() / lineHeight(), lastLine)).begin;
    starts_ = breakIntoLines(text_, font(), available).starts;
    brokenFor_ = available;
    updateScrollBar();
    verticalScrollBar()->setValue(lineNumber(top) * lineHeight());
  }
  updateScrollBar();
  viewport()->update();
}

void LongText::updateScrollBar() {
  const int height = static_cast<int>(starts_.size()) * lineHeight() + 2 * kMargin;
  verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
  verticalScrollBar()->setSingleStep(lineHeight());
  verticalScrollBar()->setPageStep(viewport()->height());
}

void LongText::resizeEvent(QResizeEvent*) {
  breakAgain();
}

void LongText::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    brokenFor_.reset();
    breakAgain();
  }
  viewport()->update();
}

void LongText::focusInEvent(QFocusEvent*) {
  viewport()->update();
}

void LongText::focusOutEvent(QFocusEvent*) {
  viewport()->update();
}

void LongText::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  const int scrolled = verticalScrollBar()->value() - kMargin;
  const int first = std::max(0, (event->rect().top() + scrolled) / lineHeight());
  const int last =
      std::min(static_cast<int>(starts_.size()) - 1, (event->rect().bottom() + scrolled) / lineHeight());
  const Range selected = selection();
  for (int number = first; number <= last; ++number) {
    QTextLayout layout;
    layOut(layout, number);
    QList<QTextLayout::FormatRange> highlights;
    const int begin = line(number).begin;
    const int length = static_cast<int>(layout.text().size());
    const int from = std::clamp(selected.begin - begin, 0, length);
    const int to = std::clamp(selected.end - begin, 0, length);
    if (from < to) {
      QTextLayout::FormatRange highlight{from, to - from, {}};
      highlight.format.setBackground(palette().highlight());
      highlight.format.setForeground(palette().highlightedText());
      highlights.append(highlight);
    }
    const QPointF place(kMargin, number * lineHeight() - scrolled);
    layout.draw(&painter, place, highlights);
    if (hasFocus() && lineNumber(cursor_) == number) layout.drawCursor(&painter, place, cursor_ - begin);
  }
}

/// Where a key moves the cursor; nothing for a key that does not.
std::optional<int> LongText::keyTarget(const QKeyEvent& event) {
  const int page = std::max(1, viewport()->height() / lineHeight() - 1);
  switch (event.key()) {
    case Qt::Key_Up:
      return vertically(-1);
    case Qt::Key_Down:
      return vertically(1);
    case Qt::Key_PageUp:
      return vertically(-page);
    case Qt::Key_PageDown:
      return vertically(page);
    default:
      column_.reset();
  }
  const bool control = event.modifiers() & Qt::ControlModifier;
  const Range here = lineAt(cursor_);
  switch (event.key()) {
    case Qt::Key_Left:
      return control ? wordAt(previous(cursor_)).begin : previous(cursor_);
    case Qt::Key_Right:
      return control ? wordAt(cursor_).end : characterAt(cursor_).end;
    case Qt::Key_Home:
      return control ? 0 : here.begin;
    case Qt::Key_End:
      return control || here.end == size() ? size() : previous(here.end);
    default:
      return std::nullopt;
  }
}

/// The offset some lines further down, below the cursor or below where it stood before it met shorter lines.
int LongText::vertically(int lines) {
  const int number = lineNumber(cursor_) + lines;
  if (number < 0) return 0;
  if (number >= static_cast<int>(starts_.size())) return size();
  if (!column_) column_ = rectOf(cursor_).x() - kMargin;
  const Range target = line(number);
  const int offset = offsetIn(number, *column_);
  return offset == target.end && target.end < size() ? previous(offset) : offset;
}

void LongText::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copy();
  } else if (event->matches(QKeySequence::SelectAll)) {
    select(0, size());
  } else if (event->modifiers() & (Qt::AltModifier | Qt::MetaModifier)) {
    event->ignore();
  } else if (const std::optional<int> target = keyTarget(*event)) {
    moveTo(event->modifiers() & Qt::ShiftModifier ? anchor_ : *target, *target);
    scrollTo(cursor_);
  } else {
    event->ignore();
  }
}

void LongText::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int offset = offsetAt(event->position().toPoint());
  select(event->modifiers() & Qt::ShiftModifier ? anchor_ : offset, offset);
  dragging_.start(kDragInterval, this);
}

void LongText::mouseMoveEvent(QMouseEvent* event) {
  if (dragging_.isActive()) extendTo(event->position().toPoint());
}

/// Extends the selection to the mouse, which may be above or below the text and then scrolls it.
void LongText::extendTo(const QPoint& position) {
  select(anchor_, offsetAt(position));
  scrollTo(cursor_);
}

void LongText::timerEvent(QTimerEvent* event) {
  if (event->timerId() != dragging_.timerId()) return QAbstractScrollArea::timerEvent(event);
  const QPoint position = viewport()->mapFromGlobal(QCursor::pos());
  if (!viewport()->rect().contains(position)) extendTo(position);
}

void LongText::mouseReleaseEvent(QMouseEvent*) {
  dragging_.stop();
  QClipboard* clipboard = QApplication::clipboard();
  if (clipboard->supportsSelection() && !selection().empty()) {
    clipboard->setText(selectedText(), QClipboard::Selection);
  }
}

void LongText::mouseDoubleClickEvent(QMouseEvent* event) {
  const Range word = wordAt(offsetAt(event->position().toPoint()));
  select(word.begin, word.end);
}

void LongText::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  const auto add = [&menu](const QString& text, QKeySequence::StandardKey key, bool enabled, auto action) {
    QAction* item = menu.addAction(text + '\t' + QKeySequence(key).toString(QKeySequence::NativeText));
    item->setEnabled(enabled);
    connect(item, &QAction::triggered, action);
  };
  add("&Copier", QKeySequence::Copy, !selection().empty(), [this] { copy(); });
  add("&Tout sélectionner", QKeySequence::SelectAll, !text_.isEmpty(), [this] { select(0, size()); });
  menu.exec(event->globalPos());
}

}  // namespace zelvion
