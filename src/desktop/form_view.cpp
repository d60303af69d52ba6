#include "desktop/form_view.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "desktop/caption_button.h"
#include "desktop/message_box.h"
#include "widgets/application.h"
#include "widgets/fonts.h"
#include "widgets/long_text.h"
#include "widgets/memory.h"
#include "widgets/number_edit.h"
#include "widgets/wait_cursor.h"

namespace zelvion {
namespace {

constexpr QSize kFrame = {8, 40};  // what a window manager may put around a window

int pixels(int twips) { return twips / kTwipsPerPixel; }

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// A caption as people say it: in one line, without the mark of its mnemonic.
QString spoken(QString caption) {
  caption.replace("\r\n", " ");
  for (qsizetype i = caption.indexOf('&'); i >= 0; i = caption.indexOf('&', i + 1)) caption.remove(i, 1);
  return caption;
}

QColor toQColor(Colour colour) {
  if (colour == Colour::Yellow) return {255, 255, 0};
  if (colour == Colour::Mauve) return {128, 128, 255};
  if (colour == Colour::Magenta) return {255, 0, 255};
  if (colour == Colour::Red) return {255, 0, 0};
  return {};
}

}  // namespace

FormView::FormView(Form& form, QWidget* parent) : QScrollArea(parent), form_(form) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  auto* client = new QWidget;
  client->setFixedSize(pixels(form.table().width), pixels(form.table().height));
  // Labels come first, for they lie below all else. Beyond that the order of the table is both the stacking
  // and the tab order.
  for (const bool labels : {true, false}) {
    for (const Control& control : form.table().controls) {
      const bool isLabel = control.kind == Kind::Label || control.kind == Kind::CentredLabel;
      if (isLabel == labels) addControl(control, client);
    }
  }
  setWidget(client);
  setBuddies();
  push();
}

void FormView::addControl(const Control& control, QWidget* parent) {
  QWidget* widget = makeWidget(control, parent);
  widget->setObjectName(toQString(control.name));
  QFont font = screenFont(qRound(control.font.quarterPoints / 3.0));  // a point is 4/3 of a pixel
  font.setBold(control.font.bold);
  font.setItalic(control.font.italic);
  if (control.kind == Kind::MultilineTextBox) font.setStyleStrategy(QFont::PreferNoShaping);  // twice as fast
  widget->setFont(font);
  widget->setGeometry(pixels(control.left), pixels(control.top), pixels(control.width),
                      std::max(1, pixels(control.height)));
  widget->setAccessibleName(control.accessibleName.empty() ? spoken(toQString(control.caption))
                                                           : toQString(control.accessibleName));
}

QWidget* FormView::makeWidget(const Control& control, QWidget* parent) {
  const std::string_view name = control.name;
  switch (control.kind) {
    case Kind::TextBox: {
      auto* box = new QLineEdit(parent);
      box->setMaxLength(std::numeric_limits<int>::max());
      connect(box, &QLineEdit::textChanged, this, [this, name] { edited(name); });
      fields_.push_back({name, [box](const std::string& text) { box->setText(toQString(text)); },
                         [box] { return box->text(); }, box});
      return box;
    }
    case Kind::MultilineTextBox: {
      auto* box = new NumberEdit(parent);
      connect(box, &QPlainTextEdit::textChanged, this, [this, name] { edited(name); });
      fields_.push_back({name, [box](const std::string& text) { box->setPlainText(toQString(text)); },
                         [box] { return box->typedText(); }, box});
      return box;
    }
    case Kind::RichTextBox: {
      auto* box = new LongText(parent);
      fields_.push_back({name, [box](const std::string& text) { box->setText(text); }, nullptr, box});
      return box;
    }
    case Kind::Label:
    case Kind::CentredLabel: {
      auto* label = new QLabel(toQString(control.caption), parent);
      label->setTextFormat(Qt::PlainText);
      label->setWordWrap(true);
      label->setAlignment(Qt::AlignTop | (control.kind == Kind::Label ? Qt::AlignLeft : Qt::AlignHCenter));
      if (form_.text(name) != nullptr) {
        fields_.push_back(
            {name, [label](const std::string& text) { label->setText(toQString(text)); }, nullptr, label});
      }
      return label;
    }
    case Kind::Rule: {
      auto* rule = new QFrame(parent);
      rule->setFrameStyle(QFrame::HLine | QFrame::Plain);
      return rule;
    }
    case Kind::Button:
      break;
  }
  const QColor face = control.graphical ? toQColor(control.back) : QColor();
  auto* button = new CaptionButton(toQString(control.caption), face, parent);
  button->setEnabled(form_.handles(name));
  connect(button, &QPushButton::clicked, this, [this, name] { press(name); });
  return button;
}

void FormView::setBuddies() {
  for (const Control& control : form_.table().controls) {
    if (control.labelOf.empty()) continue;
    auto* label = widget()->findChild<QLabel*>(toQString(control.name));
    label->setBuddy(widget()->findChild<QWidget*>(toQString(control.labelOf)));
  }
}

void FormView::addMenuTo(QMenuBar& bar) {
  const FormTable& table = form_.table();
  QMenu* menu = bar.addMenu(toQString(table.menuCaption));
  menu->setObjectName(toQString(table.menuName));
  menu->menuAction()->setObjectName(menu->objectName());
  for (const MenuItem& item : table.menu) {
    QAction* action = menu->addAction(toQString(item.caption));
    action->setObjectName(toQString(item.name));
    action->setEnabled(form_.handles(item.name));
    // Later, so that an assistive tool that presses the item has its answer before a box opens.
    connect(
        action, &QAction::triggered, this, [this, name = item.name] { press(name); }, Qt::QueuedConnection);
  }
}

void FormView::fitWindow(int menuHeight) {
  QWidget& shell = *window();
  shell.setObjectName(toQString(form_.table().name));
  shell.setWindowTitle(windowTitleFor(toQString(form_.table().caption)));

  const QRect available = shell.screen()->availableGeometry();
  const QSize room = available.size() - kFrame;
  QSize size = widget()->size() + QSize(0, menuHeight);
  const int bar = verticalScrollBar()->sizeHint().width();
  if (size.height() > room.height()) size.rwidth() += bar;
  if (size.width() > room.width()) size.rheight() += bar;
  shell.resize(size.boundedTo(room));
  if (const std::optional<Twips> position = form_.position()) {
    // The form knows its client area only; its frame is taken to be as large as that of the window behind.
    const QWidget& behind = shell.parentWidget() ? *shell.parentWidget()->window() : shell;
    const QSize frame = behind.frameSize() - behind.size();
    shell.move(shell.screen()->geometry().topLeft() + QPoint(pixels(position->x), pixels(position->y)) -
               QPoint(frame.width(), frame.height()) / 2);
  }

  for (const Control& control : form_.table().controls) {
    auto* first = widget()->findChild<QWidget*>(toQString(control.name));
    if (first->focusPolicy() == Qt::NoFocus) continue;
    first->setFocus();
    if (control.kind == Kind::TextBox || control.kind == Kind::MultilineTextBox) {
      QMetaObject::invokeMethod(first, "selectAll");
    }
    break;
  }
}

void FormView::select(std::string_view name, int place) {
  auto* box = widget()->findChild<QWidget*>(toQString(name));
  box->setFocus();
  if (auto* field = qobject_cast<QLineEdit*>(box)) {
    field->setCursorPosition(place);
    field->cursorForward(true);
  } else if (auto* number = qobject_cast<NumberEdit*>(box)) {
    QTextCursor cursor = number->textCursor();
    cursor.setPosition(place);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    number->setTextCursor(cursor);
  }
}

/// Scroll bars are for windows that are really too small: a pixel that rounding or a menu's border took does
/// no harm.
void FormView::resizeEvent(QResizeEvent* event) {
  constexpr int kTolerance = 4;
  const QSize missing = widget()->size() - size();
  const bool fits = missing.width() <= kTolerance && missing.height() <= kTolerance;
  const Qt::ScrollBarPolicy policy = fits ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded;
  setHorizontalScrollBarPolicy(policy);
  setVerticalScrollBarPolicy(policy);
  QScrollArea::resizeEvent(event);
}

void FormView::keyPressEvent(QKeyEvent* event) {
  if (!LongText::zooms(*event)) QScrollArea::keyPressEvent(event);
}

void FormView::push() {
  constexpr std::size_t kTyped = 1'000'000;  // a longer text of a box to type in, which lays out all of it
  constexpr std::size_t kLaidOut = 40;       // bytes for one of its characters
  for (Field& field : fields_) {
    const std::string& text = *form_.text(field.name);
    if (text == field.shown) continue;
    const QSignalBlocker blocker(field.widget);
    try {
      if (field.typed && text.size() > kTyped) requireMemory(kLaidOut * text.size());
      field.shown = text;
      field.show(field.shown);
    } catch (const std::bad_alloc&) {
      giveUp(field);
      throw;
    }
    field.edited = false;
  }
}

/// Ends the attempt to show the text of a field: the form gets back what the screen still has, or both get a
/// sentence.
void FormView::giveUp(Field& field) {
  std::string& text = *form_.text(field.name);
  std::string().swap(text);
  std::string().swap(field.shown);
  field.shown = field.typed ? field.typed().toStdString() : kTooLittleMemory;
  text = field.shown;
  if (!field.typed) field.show(field.shown);
}

void FormView::letGo() {
  constexpr std::size_t kLarge = 100'000;
  for (Field& field : fields_) {
    if (!field.typed && field.shown.size() > kLarge) giveUp(field);
  }
}

/// Copies what was typed since the last time into the form.
void FormView::pull() {
  for (Field& field : fields_) {
    if (!std::exchange(field.edited, false)) continue;
    field.shown = field.typed().toStdString();
    *form_.text(field.name) = field.shown;
  }
}

void FormView::press(std::string_view name) {
  run([this, name] { form_.click(name); });
}

void FormView::edited(std::string_view name) {
  std::ranges::find(fields_, name, &Field::name)->edited = true;
  run([this, name] { form_.change(name); });
}

/// Runs a handler, unless one is running or another window has the user's attention: assistive tools can
/// press buttons that the mouse cannot reach.
void FormView::run(const std::function<void()>& handler) {
  const QWidget* modal = QApplication::activeModalWidget();
  if (running_ || (modal && modal != window())) return;
  const QScopedValueRollback<bool> running(running_, true);
  try {
    pull();
    {
      const WaitCursor cursor;
      handler();
    }
    push();
  } catch (...) {
    GuardedApplication::tellException();
  }
}

}  // namespace zelvion
