#include "widgets/number_edit.h"

#include <gtest/gtest.h>

#include <QtWidgets>
#include <algorithm>
#include <vector>

namespace zelvion::testing {
namespace {

int differing(const QImage& a, const QImage& b) {
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) count += a.pixel(x, y) != b.pixel(x, y);
  }
  return count;
}

/// A long line is drawn as the toolkit draws it, wherever it is scrolled to.
TEST(NumberEdit, DrawsAsTheToolkitDoes) {
  constexpr int kEdge = 6;  // pixels of a glyph that lies on the edge of the selection
  QString text;
  for (int i = 0; i < 5'000; ++i) text += QString::number(i * 7'919 % 100'000) + (i % 700 == 3 ? "\t" : "");
  QFont font("Liberation Sans");
  font.setPixelSize(11);
  font.setStyleStrategy(QFont::PreferNoShaping);
  NumberEdit fast(nullptr);
  QPlainTextEdit plain;
  plain.setLineWrapMode(QPlainTextEdit::NoWrap);
  plain.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  plain.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  for (QPlainTextEdit* edit : {&plain, static_cast<QPlainTextEdit*>(&fast)}) {
    edit->setFont(font);
    edit->resize(441, 60);
    edit->setPlainText(text + "\n12");
    edit->show();
  }
  for (const int place : {0, 30, 11'111, static_cast<int>(text.size()) - 20}) {
    for (const int selected : {0, 9, 10'000}) {
      std::vector<QImage> pictures;
      for (QPlainTextEdit* edit : {&plain, static_cast<QPlainTextEdit*>(&fast)}) {
        QTextCursor cursor = edit->textCursor();
        cursor.setPosition(place + 20);
        edit->setTextCursor(cursor);
        cursor.setPosition(place);
        cursor.setPosition(place + std::min(selected, 20), QTextCursor::KeepAnchor);
        if (selected > 20) cursor.select(QTextCursor::Document);
        edit->setTextCursor(cursor);
        pictures.push_back(edit->viewport()->grab().toImage());
      }
      EXPECT_LE(differing(pictures[0], pictures[1]), kEdge) << place << " " << selected;
    }
  }
}

TEST(NumberEdit, PastesNothingFromAnEmptyClipboard) {
  NumberEdit edit(nullptr);
  edit.setPlainText("789");
  QGuiApplication::clipboard()->setMimeData(new QMimeData);
  edit.paste();
  EXPECT_EQ(edit.typedText(), "789");
}

}  // namespace
}  // namespace zelvion::testing
