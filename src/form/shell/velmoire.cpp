#include "form/shell/velmoire.h"

#include <new>
#include <system_error>
#include <utility>

#include "engine/text/reason.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "form/shell/about.h"
#include "form/shell/dispatch.h"
#include "form/shell/forms.h"

namespace zelvion {
namespace {

using V = Velmoire;
constexpr std::array<Handler<V>, 23> kHandlers = {{
    {"Quitter", &V::Quitter_Click},       {"Principe", &V::Principe_Click},
    {"Command1", &V::Command1_Click},     {"Command2", &V::Command2_Click},
    {"Command3", &V::Command3_Click},     {"Command4", &V::Command4_Click},
    {"Command5", &V::Command5_Click},     {"Command6", &V::Command6_Click},
    {"Command7", &V::Command7_Click},     {"Command8", &V::Command8_Click},
    {"Command9", &V::Command9_Click},     {"Command10", &V::Command10_Click},
    {"Command11", &V::Command11_Click},   {"Command12", &V::Command12_Click},
    {"Command13", &V::Command13_Click},   {"Command14", &V::Command14_Click},
    {"Command15", &V::Command15_Click},   {"Command16", &V::Command16_Click},
    {"Command17", &V::Command17_Click},   {"Command18", &V::Command18_Click},
    {"mnuApropos", &V::mnuApropos_Click}, {"mnuInfo", &V::mnuInfo_Click},
    {"mnuHtml", &V::mnuHtml_Click},
}};

}  // namespace

Velmoire::Velmoire(Desktop& desktop) : Caption(kMainForm.caption), desktop_(desktop) { Form_Load(); }

void Velmoire::Form_Load() {
  ordrek.Text = "3";
  elem.Text = "17";
  entier.Text = "789";
}

void Velmoire::Quitter_Click() { desktop_.unload(*this); }

void Velmoire::ordrek_Change() {}

void Velmoire::Command1_Click() { RichTextBox1.Text.clear(); }

void Velmoire::mnuApropos_Click() {
  About about(desktop_);
  about.Application("NOMBRES NARCISSIQUES PARFAITS");
  about.Heading("Itérations sur les entiers: TRANSFORMATIONS VELMOIRES.");
  about.Copyright("2006-2007 Quenoril");
  about.Display();
}

const FormTable& Velmoire::table() const { return kMainForm; }

std::string* Velmoire::text(std::string_view name) {
  if (name == "entier") return &entier.Text;
  if (name == "ordrek") return &ordrek.Text;
  if (name == "elem") return &elem.Text;
  if (name == "RichTextBox1") return &RichTextBox1.Text;
  return nullptr;
}

bool Velmoire::handles(std::string_view name) const { return findHandler(kHandlers, name) != nullptr; }

void Velmoire::click(std::string_view name) {
  const auto title = [this] { return standardTitle(); };
  try {
    if (const auto* handler = findHandler(kHandlers, name)) (this->*handler->run)();
  } catch (const Refusal& refusal) {
    reportFailure(desktop_, title);
    const std::string_view box = name == "Command2" || name == "Command7" ? "elem" : "entier";
    if (!refusal.text().empty() && refusal.text() == *text(box)) desktop_.select(box, refusal.place());
  } catch (const std::bad_alloc&) {
    letGoOfOutput();
    reportFailure(desktop_, title);
  } catch (...) {
    reportFailure(desktop_, title);
  }
}

/// Frees the output text to make room for a box.
void Velmoire::letGoOfOutput() noexcept {
  std::string().swap(RichTextBox1.Text);
  try {
    RichTextBox1.Text = "La mémoire n’a pas suffi.";
  } catch (const std::bad_alloc&) {
    return;  // the output stays empty
  }
}

void Velmoire::change(std::string_view name) {
  if (name == "ordrek") ordrek_Change();
}

std::string Velmoire::standardTitle() const { return Caption + " Puissance k= " + ordrek.Text; }

void Velmoire::inform(std::string_view prompt, const std::string& title) {
  desktop_.message(prompt, Buttons::Ok, title);
}

bool Velmoire::ask(std::string_view prompt, const std::string& title) {
  return desktop_.message(prompt, Buttons::YesNo, title) == Answer::Yes;
}

void Velmoire::Records::append(const std::string& text) {
  try {
    form_.desktop_.append(file_, text);
    written_ = true;
  } catch (const std::system_error& error) {
    tell(error.code());
  }
}

void Velmoire::Records::sync() {
  try {
    if (written_) form_.desktop_.sync(file_);
  } catch (const std::system_error& error) {
    tell(error.code());
  }
}

void Velmoire::Records::tell(const std::error_code& error) {
  if (std::exchange(told_, true)) return;
  const std::int64_t opened = form_.desktop_.now().seconds;
  form_.inform("Le résultat n’a pas pu être écrit dans le fichier « " + form_.desktop_.pathOf(file_) +
                   " » : " + text::reasonOf(error) + ". Il est affiché tout de même.",
               form_.standardTitle());
  secondsInBox_ = form_.desktop_.now().seconds - opened;
}

std::string Velmoire::readText(const std::string& file) {
  try {
    return text::fromBytes(desktop_.read(file));
  } catch (const std::system_error& error) {
    refuseData(file, text::reasonOf(error.code()));
  } catch (const std::bad_alloc&) {
    refuseData(file, kTooLarge);
  }
}

void Velmoire::refuseData(const std::string& file, const std::string& reason) {
  throw Refusal("Le fichier de données « " + file + " » ne peut pas être lu : " + reason +
                ". Il doit se trouver ici : " + desktop_.pathOf(file));
}

}  // namespace zelvion
