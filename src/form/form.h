#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zelvion {

/// What a control is; the desktop knows how each kind is drawn.
enum class Kind : std::uint8_t { TextBox, MultilineTextBox, Label, CentredLabel, Button, RichTextBox, Rule };

/// The back colour of a control; `None` is the colour of the theme.
enum class Colour : std::uint8_t { None, Yellow, Mauve, Magenta, Red };

/// A font of the table: MS Sans Serif, its size in quarters of a point.
struct Font {
  int quarterPoints = 33;
  bool bold = false;
  bool italic = false;
};

/// One row of a form's table of controls. Geometry is in twips (1/1440 inch), relative to the client area.
/// The rows of a table stand in tab order; a `Rule` has no tab place. `graphical` buttons show their colour,
/// the others are drawn like the buttons without one.
struct Control {
  std::string_view name;
  Kind kind;
  std::string_view caption;         ///< as drawn, with "&" before its mnemonic; empty for text boxes
  std::string_view accessibleName;  ///< what a person calls a text box; empty where the caption says it
  int left, top, width, height;
  Colour back = Colour::None;
  bool graphical = false;
  Font font = {};
  std::string_view labelOf = {};  ///< for a label: the control that it names
};

/// One item of the menu under `FormTable::menuName`.
struct MenuItem {
  std::string_view name;
  std::string_view caption;
};

/// A form as data: the window and all that stands in it.
struct FormTable {
  std::string_view name;
  std::string_view caption;
  int width, height;  ///< of the client area, in twips
  std::span<const Control> controls;
  std::string_view menuName = {};
  std::string_view menuCaption = {};
  std::span<const MenuItem> menu = {};
};

/// Twips in one device-independent pixel.
inline constexpr int kTwipsPerPixel = 15;

/// A place on the screen, or the size of something, in twips.
struct Twips {
  int x = 0;
  int y = 0;
};

/// A window as the desktop sees it: a table of controls, their texts, and what happens on a press.
/// The desktop copies typed texts into the form before a handler runs, and the form's texts to the screen
/// when a box opens and when the handler ends.
class Form {
 public:
  Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  virtual const FormTable& table() const = 0;
  /// The text that the control `name` holds (of a text box) or shows (of a label whose caption is set at run
  /// time), in UTF-8 with CR LF line ends; null for a control whose caption never changes.
  virtual std::string* text(std::string_view name) = 0;
  /// Whether a press on the button or menu item `name` does anything.
  virtual bool handles(std::string_view name) const = 0;
  /// Runs the handler of a press on `name`; it never throws.
  virtual void click(std::string_view name) = 0;
  /// Runs the handler of a change of the text box `name`, if there is one.
  virtual void change(std::string_view name) = 0;
  /// Where the window opens; nothing leaves it to the window manager.
  virtual std::optional<Twips> position() const { return std::nullopt; }
};

}  // namespace zelvion
