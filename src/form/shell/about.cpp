#include "form/shell/about.h"

#include "form/shell/dispatch.h"
#include "form/shell/forms.h"
#include "form/shell/site.h"

namespace zelvion {
namespace {

constexpr std::array<Handler<About>, 3> kAboutHandlers = {{
    {"cmdOK", &About::cmdOK_Click},
    {"Command1", &About::Command1_Click},
    {"Command2", &About::Command2_Click},
}};

}

void About::Form_Load() {
  const Twips screen = desktop_.screen();
  place_ = Twips{(screen.x - table().width) / 2, (screen.y - table().height) / 2};
  lblApplication.Caption = "- Application -";
  lblHeading.Caption = "- Heading -";
  lblCopyright.Caption = "- Copyright -";
}

void About::load() {
  if (loaded_) return;
  loaded_ = true;
  Form_Load();
}

void About::Display() {
  load();
  desktop_.showModal(*this);
  loaded_ = false;
}

void About::Application(const std::string& text) {
  load();
  lblApplication.Caption = text;
}

void About::Heading(const std::string& text) {
  load();
  lblHeading.Caption = text;
}

void About::Copyright(const std::string& text) {
  load();
  lblCopyright.Caption = "Copyright © " + text;
}

void About::cmdOK_Click() { desktop_.unload(*this); }

void About::Command1_Click() { openPage(desktop_, kTheoryPage); }

void About::Command2_Click() { openPage(desktop_, kDynamicsPage); }

const FormTable& About::table() const { return kAboutForm; }

std::string* About::text(std::string_view name) {
  if (name == "lblHeading") return &lblHeading.Caption;
  if (name == "lblApplication") return &lblApplication.Caption;
  if (name == "lblCopyright") return &lblCopyright.Caption;
  return nullptr;
}

bool About::handles(std::string_view name) const { return findHandler(kAboutHandlers, name) != nullptr; }

void About::click(std::string_view name) {
  try {
    if (const auto* handler = findHandler(kAboutHandlers, name)) (this->*handler->run)();
  } catch (...) {
    reportFailure(desktop_, [this] { return std::string(table().caption); });
  }
}

}  // namespace zelvion
