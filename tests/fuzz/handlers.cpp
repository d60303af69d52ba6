// Any text in p, k and the start point, any buttons pressed: a handler may refuse, it changes only what is
// its own.

#include <array>
#include <cstdint>
#include <cstdlib>

#include "form/scripted_desktop.h"
#include "form/shell/velmoire.h"

namespace {

constexpr std::array<const char*, 16> kButtons = {
    "Command1", "Command2",  "Command3",  "Command4",  "Command5",  "Command6",  "Command7",  "Command8",
    "Command9", "Command10", "Command11", "Command12", "Command13", "Command14", "Command15", "Principe"};

void require(bool law) {
  if (!law) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4) return 0;
  zelvion::testing::ScriptedDesktop desktop;
  desktop.files["Listenbre2.txt"] = std::string(data, data + size);
  desktop.files["amstrong.txt"] = std::string(data, data + size);
  // A question gets Yes twice, then No, so that a search ends.
  int questions = 0;
  desktop.answerAll([&](const zelvion::testing::Box& box) {
    if (box.buttons == zelvion::Buttons::Ok) return zelvion::Answer::Ok;
    return ++questions <= 2 ? zelvion::Answer::Yes : zelvion::Answer::No;
  });
  zelvion::Velmoire form(desktop);

  const std::string rest(data + 4, data + size);
  const std::size_t first = data[0] % (rest.size() + 1);
  const std::size_t second = first + data[1] % (rest.size() - first + 1);
  form.ordrek.Text = rest.substr(0, first);
  form.entier.Text = rest.substr(first, second - first);
  form.elem.Text = rest.substr(second);

  for (int press = 2; press < 4; ++press) {
    const std::string button = kButtons[data[press] % kButtons.size()];
    const std::string p = form.entier.Text;
    const std::string k = form.ordrek.Text;
    const std::string start = form.elem.Text;
    const std::string list = form.ListePfixe;
    const auto files = desktop.files;
    questions = 0;
    form.click(button);

    require(form.ordrek.Text == k);
    const bool emptySearched =
        p.empty() && form.entier.Text == "1" && (button == "Command3" || button == "Command4");
    require(form.entier.Text == p || button == "Command10" || emptySearched);
    require(form.elem.Text == start || button == "Command9");
    require(form.ListePfixe == list || button == "Command5");
    for (const auto& [name, content] : files) require(desktop.files[name].starts_with(content));
  }
  return 0;
}
