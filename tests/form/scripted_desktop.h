#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "form/shell/desktop.h"

namespace zelvion::testing {

/// A message box that was shown.
struct Box {
  std::string prompt;
  std::string title;
  Buttons buttons = Buttons::Ok;
};

/// A desktop that keeps everything in memory. Boxes are to be announced: one that no test expected fails it.
/// What was not expected is answered with Ok or No, so that nothing hangs.
class ScriptedDesktop : public Desktop {
 public:
  ~ScriptedDesktop() override {
    EXPECT_TRUE(answers_.empty()) << answers_.size() << " more boxes were expected";
  }

  /// The next box is to be answered so.
  void expect(Answer answer, int times = 1) {
    answers_.insert(answers_.end(), static_cast<std::size_t>(times), answer);
  }
  /// Any number of boxes is answered by `answer`.
  void answerAll(std::function<Answer(const Box&)> answer) { answerAll_ = std::move(answer); }
  /// The boxes since the last call.
  std::vector<Box> takeBoxes() { return std::exchange(boxes_, {}); }

  Answer message(std::string_view prompt, Buttons buttons, const std::string& title) override {
    boxes_.push_back({std::string(prompt), title, buttons});
    if (onMessage) onMessage();
    if (answerAll_) return answerAll_(boxes_.back());
    const bool announced = writeError == 0 && syncError == 0;
    EXPECT_TRUE(unsynced.empty() || !announced) << "a power cut would take a record away: " << title;
    if (answers_.empty()) {
      ADD_FAILURE() << "unexpected box\n title: " << title << "\n prompt: " << prompt.substr(0, 500);
      return buttons == Buttons::Ok ? Answer::Ok : Answer::No;
    }
    const Answer answer = answers_.front();
    answers_.pop_front();
    EXPECT_EQ(buttons == Buttons::Ok, answer == Answer::Ok) << "wrong buttons: " << title;
    return answer;
  }

  Moment now() override {
    const Moment moment{"22/11/2026", "20:30:0" + std::to_string(clock % 10), clock};
    clock += secondsPerLook;
    return moment;
  }

  std::string pathOf(const std::string& name) override { return "/programme/" + name; }

  void append(const std::string& name, const std::string& text) override {
    if (writeError != 0) throw std::system_error(writeError, std::generic_category(), name);
    files[name] += text;
    unsynced.insert(name);
  }

  void sync(const std::string& name) override {
    if (syncError != 0) throw std::system_error(syncError, std::generic_category(), name);
    unsynced.erase(name);
  }

  std::string read(const std::string& name) override {
    const auto file = files.find(name);
    if (file == files.end()) throw std::system_error(ENOENT, std::generic_category(), name);
    return file->second;
  }

  bool openPage(const std::string& address) override {
    pages.push_back(address);
    return hasBrowser;
  }

  Twips screen() override { return {19'200, 10'800}; }
  void showModal(Form& form) override {
    shown.push_back(&form);
    if (onModal) onModal(form);
  }
  void select(std::string_view control, std::size_t place) override {
    selected = std::string(control) + " " + std::to_string(place);
  }
  void unload(Form& form) override { unloaded.push_back(&form); }

  std::map<std::string, std::string> files;  ///< the program's directory
  int writeError = 0;                        ///< what every write fails with, if not 0
  int syncError = 0;                         ///< the same for what brings a file onto the disk
  std::set<std::string> unsynced;            ///< the files that a power cut would take something from
  std::vector<std::string> pages;
  bool hasBrowser = true;
  std::vector<Form*> shown;
  std::string selected;  ///< the latest text box of which a character was selected, and the place of that
  std::vector<Form*> unloaded;
  std::function<void()> onMessage;
  std::function<void(Form&)> onModal;
  std::int64_t clock = 0;
  std::int64_t secondsPerLook = 0;

 private:
  std::deque<Answer> answers_;
  std::function<Answer(const Box&)> answerAll_;
  std::vector<Box> boxes_;
};

}  // namespace zelvion::testing
