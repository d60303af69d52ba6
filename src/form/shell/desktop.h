#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "form/shell/form.h"

namespace zelvion {

/// The default title of a message box.
inline constexpr std::string_view kApplicationTitle = "zelvion";

/// The button sets of a message box.
enum class Buttons : std::uint8_t { Ok, YesNo };

/// The answer to a message box.
enum class Answer : std::uint8_t { Ok, Yes, No };

/// A moment: its date and time of day in the user's regional format, and the clock in whole seconds, for
/// durations.
struct Moment {
  std::string date;
  std::string time;
  std::int64_t seconds = 0;

  std::string text() const { return date + " " + time; }
};

/// What the forms need from a desktop. Texts are UTF-8; line ends in a prompt are CR LF.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  /// Shows a modal box and returns what the user chose; closing it means Ok, or No to a question.
  virtual Answer message(std::string_view prompt, Buttons buttons, const std::string& title) = 0;
  /// The present moment.
  virtual Moment now() = 0;
  /// The path of the file `name` in the program's directory, to be shown to the user.
  virtual std::string pathOf(const std::string& name) = 0;
  /// Appends `text` to the file `name` in the program's directory, whole or not at all, creating the file if
  /// necessary. Throws std::system_error.
  virtual void append(const std::string& name, const std::string& text) = 0;
  /// Flushes the file `name` to disk, so that it survives a power cut. Throws std::system_error.
  virtual void sync(const std::string& name) = 0;
  /// The bytes of the file `name` in the program's directory. Throws std::system_error.
  virtual std::string read(const std::string& name) = 0;
  /// Opens a page in the user's browser and returns at once; false if none can be started.
  virtual bool openPage(const std::string& address) = 0;
  /// The size of the screen.
  virtual Twips screen() = 0;
  /// Opens `form` as a modal window; returns when it is closed.
  virtual void showModal(Form& form) = 0;
  /// Moves the focus to the text box `control` of the topmost form and selects the character at byte `place`
  /// of its text; all characters before it are single bytes.
  virtual void select(std::string_view control, std::size_t place) = 0;
  /// Closes the window of `form`. Closing the main window ends the program.
  virtual void unload(Form& form) = 0;
};

}  // namespace zelvion
