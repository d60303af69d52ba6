#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zelvion {

/// What a control is; the desktop knows how each kind is drawn.
enum class Kind : std::uint8_t { TextBox, MultilineTextBox, Label, CentredLabel, Button, RichTextBox, Rule };

/// The background colour of a control; `None` is that of the theme.
enum class Colour : std::uint8_t { None, Yellow, Mauve, Magenta, Red };

/// A font of the table: MS Sans Serif, with its size in quarters of a point.
struct Font {
  int quarterPoints = 33;
  bool bold = false;
  bool italic = false;
};

/// One row of a form's table of controls. Geometry is in twips (1/1440 inch), relative to the client area.
/// Rows are in tab order; a `Rule` is no tab stop. Only `graphical` buttons show their colour.
struct Control {
  std::string_view name;
  Kind kind;
  std::string_view caption;         ///< as drawn, with "&" before the mnemonic; empty for text boxes
  std::string_view accessibleName;  ///< of a text box; empty where the caption serves
  int left, top, width, height;
  Colour back = Colour::None;
  bool graphical = false;
  Font font = {};
  std::string_view labelOf = {};  ///< for a label: the control it names
};

/// One item of the menu under `FormTable::menuName`.
struct MenuItem {
  std::string_view name;
  std::string_view caption;
};

/// A form as data: the window and everything in it.
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

/// A position or a size in twips.
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
  /// The text of the text box `name`, or of the label `name` if its caption is set at run time, in UTF-8 with
  /// CR LF line ends; null for all other controls.
  virtual std::string* text(std::string_view name) = 0;
  /// Whether the button or menu item `name` has a handler.
  virtual bool handles(std::string_view name) const = 0;
  /// Runs the handler of the button or menu item `name`. Never throws.
  virtual void click(std::string_view name) = 0;
  /// Runs the change handler of the text box `name`, if any.
  virtual void change(std::string_view name) = 0;
  /// Where the window opens; none leaves that to the window manager.
  virtual std::optional<Twips> position() const { return std::nullopt; }
};

}  // namespace zelvion
