#include "widgets/long_text.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QPlainTextDocumentLayout>
#include <QPointer>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <memory>

#include "widgets/memory.h"
#include "widgets/text_blocks.h"

namespace zelvion {
namespace {

/// How much is put into the document at once, in bytes: in a tenth of a second or so.
constexpr std::size_t kAtOnce = 4'000'000;
constexpr std::size_t kPiece = 1'000'000;
/// How much of a change of text is told to assistive tools, which ask for the rest.
constexpr int kAnnounced = 10'000;

constexpr double kZoomStep = 1.15;
constexpr int kSmallestZoom = -4;
constexpr int kLargestZoom = 14;  // seven times the size
constexpr int kSmallestFont = 6;  // pixels

}  // namespace

LongText::LongText(QWidget* parent) : QPlainTextEdit(parent) {
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  clearDocument();
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &LongText::loadNearby);
  for (const auto moved : {&QPlainTextEdit::cursorPositionChanged, &QPlainTextEdit::selectionChanged}) {
    connect(this, moved, this, &LongText::loadNearby);
    connect(this, moved, this, &LongText::announceCursor, Qt::QueuedConnection);
  }
}

/// Starts with a new document: one that ran out of memory halfway is of no more use.
void LongText::clearDocument() {
  rest_ = {};
  joints_ = {};
  auto fresh = std::make_unique<QTextDocument>();
  fresh->setDocumentLayout(new QPlainTextDocumentLayout(fresh.get()));
  fresh->setUndoRedoEnabled(false);
  fresh->setDefaultFont(font());
  const QPointer<QTextDocument> old = document();
  fresh->setParent(this);
  setDocument(fresh.release());
  delete old;
}

void LongText::setText(std::string_view text) {
  const bool told = QAccessible::isActive();
  const QString before = told ? textBetween(0, kAnnounced) : QString();
  clearDocument();
  try {
    rest_ = text;
    load(kAtOnce);
    setTextCursor(QTextCursor(document()));
    if (!told) return;
    QAccessibleTextUpdateEvent event(this, 0, before, textBetween(0, kAnnounced));
    QAccessible::updateAccessibility(&event);
  } catch (...) {
    clearDocument();
    throw;
  }
}

/// Puts `bytes` more of the text, or all of the rest, at the end of the document. A cursor that stands there
/// moves along.
void LongText::load(std::size_t bytes) {
  if (rest_.empty()) return;
  // The document has two bytes for a character, and grows by doubling what it has.
  const auto present = static_cast<std::size_t>(document()->characterCount());
  const std::size_t added = std::min(bytes, rest_.size());
  if (present + added > kPiece) requireMemory(2 * present + 4 * added);
  const std::size_t left = rest_.size() - added;
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  const QSignalBlocker quiet(document());  // assistive tools would be told of positions, not of offsets
  while (rest_.size() > left) {
    QString piece;
    const std::size_t leftByPiece = rest_.size() - std::min(rest_.size() - left, kPiece);
    while (rest_.size() > leftByPiece) {
      const TextBlock block = firstTextBlock(rest_);
      piece += inDocument(rest_.substr(0, block.size));
      if (block.size < rest_.size()) {
        if (block.lineEnd == 0) joints_.push_back(static_cast<int>(end.position() + piece.size()));
        piece += QChar::ParagraphSeparator;
      }
      rest_.remove_prefix(block.size + block.lineEnd);
    }
    end.insertText(piece);
  }
}

/// Loads more of the text where the user comes near the end of what is there.
void LongText::loadNearby() {
  if (rest_.empty()) return;
  const QScrollBar& bar = *verticalScrollBar();
  if (textCursor().atEnd()) {
    load(rest_.size());
  } else if (bar.value() + 2 * bar.pageStep() > bar.maximum()) {
    load(kAtOnce);
  }
}

bool LongText::isJoint(int position) const {
  return std::binary_search(joints_.begin(), joints_.end(), position);
}

int LongText::offsetOf(int position) const {
  return position -
         static_cast<int>(std::lower_bound(joints_.begin(), joints_.end(), position) - joints_.begin());
}

int LongText::positionOf(int offset) {
  const auto last = [this] { return offsetOf(document()->characterCount() - 1); };
  if (offset >= last()) load(rest_.size());
  offset = std::clamp(offset, 0, last());
  const auto behind = std::partition_point(joints_.begin(), joints_.end(), [&](const int& joint) {
    return joint - static_cast<int>(&joint - joints_.data()) <= offset;
  });
  return offset + static_cast<int>(behind - joints_.begin());
}

void LongText::select(int anchor, int cursor) {
  QTextCursor selection(document());
  selection.setPosition(positionOf(anchor));
  selection.setPosition(positionOf(cursor), QTextCursor::KeepAnchor);
  setTextCursor(selection);
}

QString LongText::text(int begin, int end) {
  const int from = positionOf(begin);
  return textBetween(from, positionOf(end));
}

/// The text from one position in the document to another, without the joints.
QString LongText::textBetween(int begin, int end) const {
  end = std::min(end, document()->characterCount() - 1);
  QString text;
  if (end > begin) text.reserve(end - begin);
  for (QTextBlock block = document()->findBlock(begin); block.isValid() && block.position() < end;
       block = block.next()) {
    const int first = std::max(begin - block.position(), 0);
    text += QStringView(block.text()).mid(first, end - block.position() - first);
    const int separator = block.position() + block.length() - 1;
    if (separator < end && !isJoint(separator)) text += u'\n';
  }
  return text.replace(QChar::LineSeparator, u'\n');
}

QString LongText::selectedText() const {
  return textBetween(textCursor().selectionStart(), textCursor().selectionEnd());
}

QMimeData* LongText::createMimeDataFromSelection() const {
  auto copied = std::make_unique<QMimeData>();
  copied->setText(selectedText());
  return copied.release();
}

void LongText::copyAll() {
  if (textCursor().hasSelection()) return copy();
  QGuiApplication::clipboard()->setText(text());
}

bool LongText::zooms(const QKeyEvent& event) {
  if (!event.modifiers().testFlag(Qt::ControlModifier)) return false;
  switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      zoomTo(zoom_ + 1);
      return true;
    case Qt::Key_Minus:
      zoomTo(zoom_ - 1);
      return true;
    case Qt::Key_0:
    case Qt::Key_Agrave:  // the key of the 0 on a French keyboard
      zoomTo(0);
      return true;
    default:
      return false;
  }
}

void LongText::zoomTo(int step) {
  zoom_ = std::clamp(step, kSmallestZoom, kLargestZoom);
  for (QWidget* widget : QApplication::allWidgets()) {
    if (auto* view = qobject_cast<LongText*>(widget)) view->applyZoom();
  }
}

void LongText::applyZoom() {
  QFont zoomedFont = font();
  if (ownPixels_ == 0) ownPixels_ = zoomedFont.pixelSize();
  zoomedFont.setPixelSize(std::max(kSmallestFont, qRound(ownPixels_ * std::pow(kZoomStep, zoom_))));
  if (zoomedFont == font()) return;
  setFont(zoomedFont);
  emit zoomed();
}

void LongText::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QPlainTextEdit::wheelEvent(event);
  wheel_ += event->angleDelta().y();
  zoomTo(zoom_ + wheel_ / QWheelEvent::DefaultDeltasPerStep);
  wheel_ %= QWheelEvent::DefaultDeltasPerStep;
}

bool LongText::event(QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  if (event->type() == QEvent::Paint && !framed_ && !hasFocus()) return true;
  return QPlainTextEdit::event(event);
}

void LongText::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return copyAll();
  if (zooms(*event)) return;
  QPlainTextEdit::keyPressEvent(event);
  const bool steps = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
  if (steps && isJoint(textCursor().position())) QPlainTextEdit::keyPressEvent(event);
}

/// Tells assistive tools of the cursor in offsets, after the toolkit told them of positions.
void LongText::announceCursor() {
  if (!QAccessible::isActive() || joints_.empty()) return;
  const QTextCursor cursor = textCursor();
  QAccessibleTextSelectionEvent event(this, offsetOf(cursor.anchor()), offsetOf(cursor.position()));
  event.setCursorPosition(offsetOf(cursor.position()));
  QAccessible::updateAccessibility(&event);
}

QSize LongText::sizeFor(QSize largest) const {
  // The scroll bar counts even where there is none: as long as it shows, lines are that much shorter.
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  const auto margins = 2 * static_cast<int>(document()->documentMargin()) + 2 * frameWidth() + 1;
  qreal height = margins;
  qreal width = 0;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    QTextLayout layout(block.text(), font());
    layout.setTextOption(document()->defaultTextOption());
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLeadingIncluded(true);
      line.setLineWidth(largest.width() - margins - bar);
      width = std::max(width, line.naturalTextWidth());
      height += line.height();
    }
    layout.endLayout();
    if (height > largest.height()) return largest;
  }
  return {std::min(static_cast<int>(std::ceil(width)) + margins + bar, largest.width()),
          static_cast<int>(std::ceil(height))};
}

}  // namespace zelvion
