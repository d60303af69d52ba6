#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "form/form.h"

namespace zelvion {

/// The title of a message box for which no other is given.
inline constexpr std::string_view kApplicationTitle = "zelvion";

/// The button sets of a message box.
enum class Buttons : std::uint8_t { Ok, YesNo };

/// What a message box answers.
enum class Answer : std::uint8_t { Ok, Yes, No };

/// A moment: its date and its time of day as texts in the user's regional format, and the whole seconds of
/// the clock, so that two moments can be told apart.
struct Moment {
  std::string date;
  std::string time;
  std::int64_t seconds = 0;

  std::string text() const { return date + " " + time; }
};

/// What the program asks of a desktop. Texts are UTF-8; a line end in a prompt is CR LF.
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
  /// The path of the file `name` of the program's directory, for the user to read.
  virtual std::string pathOf(const std::string& name) = 0;
  /// Appends `text` to the file `name` of the program's directory, whole or not at all, and creates the file
  /// if need be. Throws std::system_error.
  virtual void append(const std::string& name, const std::string& text) = 0;
  /// Returns when all that was appended to the file `name` is on the disk, so that a power cut cannot take it
  /// away. Throws std::system_error.
  virtual void sync(const std::string& name) = 0;
  /// The bytes of the file `name` of the program's directory. Throws std::system_error.
  virtual std::string read(const std::string& name) = 0;
  /// Opens a page in the user's browser and returns at once; false if none can be started.
  virtual bool openPage(const std::string& address) = 0;
  /// The size of the screen.
  virtual Twips screen() = 0;
  /// Opens `form` as a modal window; returns when it is closed.
  virtual void showModal(Form& form) = 0;
  /// Puts the keyboard on the text box `control` of the topmost form and selects the character that begins at
  /// byte `place` of its text; all before it are single bytes.
  virtual void select(std::string_view control, std::size_t place) = 0;
  /// Closes the window of `form`. Closing the main window ends the program.
  virtual void unload(Form& form) = 0;
};

}  // namespace zelvion
