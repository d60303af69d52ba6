#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "form/shell/desktop.h"
#include "form/shell/form.h"

namespace zelvion {

/// A label whose caption is set at run time.
struct LabelControl {
  std::string Caption;
};

/// The about dialog, loaded by the first use of one of its operations and unloaded when it closes.
class About : public Form {
 public:
  /// `desktop` must outlive the dialog.
  explicit About(Desktop& desktop) : desktop_(desktop) {}

  /// Shows the dialog; returns when it is closed.
  void Display();
  /// The name in bold letters.
  void Application(const std::string& text);
  /// The line above it.
  void Heading(const std::string& text);
  /// The credit line, without the "Copyright © " that precedes it.
  void Copyright(const std::string& text);

  LabelControl lblHeading;
  LabelControl lblApplication;
  LabelControl lblCopyright;

  const FormTable& table() const override;
  std::string* text(std::string_view name) override;
  bool handles(std::string_view name) const override;
  void click(std::string_view name) override;
  void change(std::string_view /*name*/) override {}
  std::optional<Twips> position() const override { return place_; }

  void Form_Load();       ///< centres the dialog on the screen and sets the placeholders
  void cmdOK_Click();     ///< closes the dialog
  void Command1_Click();  ///< opens the page on the theory
  void Command2_Click();  ///< opens the page on dynamical systems

 private:
  void load();

  Desktop& desktop_;
  bool loaded_ = false;
  std::optional<Twips> place_;
};

}  // namespace zelvion
