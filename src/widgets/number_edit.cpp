#include "widgets/number_edit.h"

#include <QAbstractTextDocumentLayout>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextOption>

namespace zelvion {
namespace {

constexpr int kLongLine = 2'000;  // characters; of a shorter line the toolkit draws all

}  // namespace

NumberEdit::NumberEdit(QWidget* parent) : QPlainTextEdit(parent) {
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTabChangesFocus(true);
  // Told the direction, the toolkit does not look for it in the text, again and again.
  QTextOption option = document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);
  document()->setDefaultTextOption(option);
  // The toolkit forgets how a line is laid out, and does it again for each look at it, unless it is told not
  // to.
  connect(document(), &QTextDocument::contentsChange, this, [this](int position, int, int added) {
    for (QTextBlock block = document()->findBlock(position);
         block.isValid() && block.position() <= position + added; block = block.next()) {
      block.layout()->setCacheEnabled(block.length() > kLongLine);
    }
  });
}

QString NumberEdit::typedText() const {
  QString text = document()->toRawText();
  return text.replace(QChar::ParagraphSeparator, "\r\n").replace(QChar::LineSeparator, "\r\n");
}

// An empty clipboard has data without a format, at which Qt 6.4 reads the first one all the same.
void NumberEdit::insertFromMimeData(const QMimeData* source) {
  if (!source->formats().isEmpty()) QPlainTextEdit::insertFromMimeData(source);
}

void NumberEdit::focusInEvent(QFocusEvent* event) {
  QPlainTextEdit::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) selectAll();
}

void NumberEdit::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason) return;
  QTextCursor cursor = textCursor();
  cursor.clearSelection();
  setTextCursor(cursor);
}

void NumberEdit::paintEvent(QPaintEvent* event) {
  bool anyLong = false;
  QPointF place = contentOffset();
  for (QTextBlock block = firstVisibleBlock(); block.isValid() && place.y() < viewport()->height();
       block = block.next()) {
    anyLong = anyLong || block.length() > kLongLine;
    place.ry() += blockBoundingRect(block).height();
  }
  if (!anyLong) {
    QPlainTextEdit::paintEvent(event);
    return;
  }
  QPainter painter(viewport());
  painter.setClipRect(event->rect());
  place = contentOffset();
  for (QTextBlock block = firstVisibleBlock(); block.isValid() && place.y() < viewport()->height();
       block = block.next()) {
    drawLine(painter, block, place);
    place.ry() += blockBoundingRect(block).height();
  }
}

/// Draws what is in sight of the line `block`, whose left end lies at `place`.
void NumberEdit::drawLine(QPainter& painter, const QTextBlock& block, const QPointF& place) {
  QTextLine line = block.layout()->lineAt(0);
  const QAbstractTextDocumentLayout::PaintContext context = getPaintContext();
  const QTextCursor cursor = textCursor();
  const auto inLine = [&](int position) {
    return qBound(0, position - block.position(), block.length() - 1);
  };
  const auto x = [&](int position) { return place.x() + line.cursorToX(position); };

  // A character more at both ends, for a glyph may reach out of its place.
  const int begin = inLine(block.position() + line.xToCursor(-place.x()) - 1);
  const int end = inLine(block.position() + line.xToCursor(viewport()->width() - place.x()) + 1);
  const int selectedBegin = qBound(begin, inLine(cursor.selectionStart()), end);
  const int selectedEnd = qBound(begin, inLine(cursor.selectionEnd()), end);
  const QString text = block.text();
  const auto draw = [&](int from, int to, const QColor& ink) {
    painter.setPen(ink);
    while (from < to) {  // a tab reaches as far as the layout says
      qsizetype stop = text.indexOf(u'\t', from);
      if (stop < 0 || stop > to) stop = to;
      painter.drawText(QPointF(x(from), place.y() + line.y() + line.ascent()), text.mid(from, stop - from));
      from = static_cast<int>(stop) + 1;
    }
  };
  draw(begin, selectedBegin, context.palette.color(QPalette::Text));
  draw(selectedEnd, end, context.palette.color(QPalette::Text));
  if (selectedBegin < selectedEnd) {
    const QRectF ground(QPointF(x(selectedBegin), place.y() + line.y()),
                        QPointF(x(selectedEnd), place.y() + line.y() + line.height()));
    painter.fillRect(ground.toAlignedRect(), context.palette.brush(QPalette::Highlight));
    draw(selectedBegin, selectedEnd, context.palette.color(QPalette::HighlightedText));
  }
  if (block.contains(context.cursorPosition)) {
    painter.setPen(context.palette.color(QPalette::Text));
    block.layout()->drawCursor(&painter, place, context.cursorPosition - block.position(), cursorWidth());
  }
}

}  // namespace zelvion
