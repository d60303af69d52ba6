#include "desktop/message_box.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/long_text.h"

namespace zelvion {
namespace {

constexpr int kLongestTitle = 250;     // characters that a title bar surely takes
constexpr int kTitleBarButtons = 180;  // their width and that of the frame
constexpr int kLargestTitleFont = 14;  // pixels; where the desktop tells none, the toolkit's guess is larger
constexpr int kNarrowest = 240;
constexpr int kComfortable = 640;            // where lines are still easy to read
constexpr QSize kFrameAndBorder = {24, 64};  // what a box leaves free of the screen

/// A title as one line short enough for any title bar.
QString shortTitle(QString title) {
  title.replace("\r\n", " ").replace('\n', ' ').replace('\r', ' ');
  if (title.size() <= kLongestTitle) return title;
  const int length = title[kLongestTitle - 1].isHighSurrogate() ? kLongestTitle - 1 : kLongestTitle;
  return title.left(length) + u'…';
}

LongText* addText(QVBoxLayout* layout, std::string_view text, const QString& accessibleName, bool bold) {
  auto* view = new LongText;
  view->setFramed(false);
  QPalette palette = view->palette();
  palette.setBrush(QPalette::Base, palette.window());
  palette.setBrush(QPalette::Text, palette.windowText());
  view->setPalette(palette);
  QFont font = view->font();
  font.setBold(bold);
  view->setFont(font);
  view->applyZoom();
  view->setAccessibleName(accessibleName);
  view->setText(text);
  layout->addWidget(view);
  return view;
}

}  // namespace

QString windowTitleFor(QString title) { return title.replace("[*]", "[*][*]"); }

MessageBox::MessageBox(std::string_view prompt, Buttons buttons, std::string title, QWidget* parent)
    : QDialog(parent), wholeTitle_(std::move(title)), buttons_(buttons) {
  const QString name = QString::fromStdString(wholeTitle_);
  setWindowTitle(windowTitleFor(shortTitle(name)));
  setAccessibleName(name);
  setWindowModality(Qt::ApplicationModal);
  auto* layout = new QVBoxLayout(this);
  title_ = addText(layout, wholeTitle_, "Titre", true);
  text_ = addText(layout, prompt, "Message", false);
  layout->setStretchFactor(text_, 1);
  addButtons();
  fit();
  connect(text_, &LongText::zoomed, this, [this] {
    fit();
    const QRect room = screen()->availableGeometry().marginsRemoved(
        {0, 0, kFrameAndBorder.width(), kFrameAndBorder.height()});
    move(std::max(room.left(), std::min(x(), room.right() - width())),
         std::max(room.top(), std::min(y(), room.bottom() - height())));
  });
}

void MessageBox::addButtons() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  const auto add = [&](const QString& caption, int result) {
    auto* button = new QPushButton(caption, this);
    connect(button, &QPushButton::clicked, this, [this, result] { done(result); });
    row->addWidget(button);
    return button;
  };
  QPushButton* first = add(buttons_ == Buttons::Ok ? "OK" : "&Oui", Accepted);
  if (buttons_ == Buttons::YesNo) add("&Non", Rejected);
  first->setDefault(true);
  first->setFocus();
  row->addStretch();
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

/// Sizes the box for its title and its text, within the screen.
void MessageBox::fit() {
  const QString title = QString::fromStdString(wholeTitle_);
  const QSize largest = screen()->availableSize() - kFrameAndBorder;
  const int margins = layout()->contentsMargins().left() + layout()->contentsMargins().right();
  QFont barFont = QFontDatabase::systemFont(QFontDatabase::TitleFont);
  barFont.setBold(true);
  if (QFontInfo(barFont).pixelSize() > kLargestTitleFont) barFont.setPixelSize(kLargestTitleFont);
  const QString barTitle = shortTitle(title);
  // The window manager draws the title in its own scale, not in the one that the user gave this program.
  const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
  const double scale = factor > 0 ? factor : 1;
  const int bar = qCeil((QFontMetrics(barFont).horizontalAdvance(barTitle) + kTitleBarButtons) / scale);
  const bool titleFits = barTitle == title && bar <= largest.width();
  title_->setVisible(!titleFits);

  const int comfortable = std::min(kComfortable, largest.width());
  const int natural = text_->sizeFor({comfortable - margins, largest.height()}).width() + margins;
  const int width = std::min(std::max({kNarrowest, titleFits ? bar : comfortable, natural}), largest.width());
  if (!titleFits) title_->setFixedHeight(title_->sizeFor({width - margins, largest.height() / 4}).height());
  text_->setMinimumHeight(fontMetrics().lineSpacing() + 2 * text_->frameWidth());
  const int others = layout()->totalMinimumSize().height() - text_->minimumHeight();
  resize(width, others + text_->sizeFor({width - margins, largest.height() - others}).height());
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return text_->copyAll();
  if (!LongText::zooms(*event)) QDialog::keyPressEvent(event);
}

Answer MessageBox::ask() {
  const bool accepted = exec() == Accepted;
  if (buttons_ == Buttons::Ok) return Answer::Ok;
  return accepted ? Answer::Yes : Answer::No;
}

}  // namespace zelvion
