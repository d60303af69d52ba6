#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/plain_power.h"
#include "engine/text/refusal.h"
#include "form/scripted_desktop.h"
#include "form/shell/velmoire.h"

namespace zelvion::testing {

/// A form on a desktop in memory, and what its boxes show as "title|prompt".
class FormTest : public ::testing::Test {
 protected:
  std::vector<std::string> shown(std::size_t count = 1) {
    std::vector<std::string> texts;
    for (const Box& box : desktop_.takeBoxes()) texts.push_back(box.title + "|" + box.prompt);
    texts.resize(std::max(count, texts.size()));
    return texts;
  }
  std::vector<std::string> press(std::string_view name, const std::vector<Answer>& answers = {Answer::Ok}) {
    for (const Answer answer : answers) desktop_.expect(answer);
    form_.click(name);
    return shown(answers.size());
  }
  void type(const std::string& k, const std::string& p) {
    form_.ordrek.Text = k;
    form_.entier.Text = form_.elem.Text = p;
  }
  /// Whether a press shows one box, with the standard title, that tells `what`, set as French is.
  bool refuses(std::string_view name, const std::string& what) {
    const std::string box = press(name)[0], title = standard();
    for (const char* wrong : {"'", " :", " ;", "« ", " »"}) {
      if (box.find(wrong, title.size()) != std::string::npos) return false;
    }
    return box.starts_with(title) && box.find(what, title.size()) != std::string::npos;
  }
  std::string standard() const { return form_.Caption + " Puissance k= " + form_.ordrek.Text + "|"; }

  ScriptedDesktop desktop_;
  Velmoire form_{desktop_};
};

}  // namespace zelvion::testing
