#pragma once

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "files/files.h"
#include "form/shell/desktop.h"
#include "form/shell/velmoire.h"

namespace zelvion::bench {

/// A desktop that nobody looks at: it answers OK and Yes. Files are real ones, in a directory of its own that
/// goes with it.
class QuietDesktop : public Desktop {
 public:
  QuietDesktop() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zelvion-bench-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), pattern);
    }
    directory_ = pattern;
  }
  ~QuietDesktop() override {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }

  Answer message(std::string_view, Buttons buttons, const std::string&) override {
    return buttons == Buttons::Ok ? Answer::Ok : Answer::Yes;
  }
  Moment now() override {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {"01/01/2026", "00:00:00", std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count()};
  }
  std::string pathOf(const std::string& name) override { return (directory_ / name).string(); }
  void append(const std::string& name, const std::string& text) override { appendWhole(pathOf(name), text); }
  void sync(const std::string& name) override { syncFile(pathOf(name)); }
  std::string read(const std::string& name) override { return readWhole(pathOf(name)); }
  bool openPage(const std::string&) override { return true; }
  Twips screen() override { return {19'200, 10'800}; }
  void showModal(Form&) override {}
  void select(std::string_view, std::size_t) override {}
  void unload(Form&) override {}

  /// Makes the files empty, so that every press but the first finds them there and writes the same.
  void clear() {
    for (const auto& file : std::filesystem::directory_iterator(directory_)) {
      // Each becomes a new one: on a disk, an old one that is cut goes there as soon as it is closed.
      const std::filesystem::path path = file.path();
      std::filesystem::remove(path);
      std::ofstream(path).flush();
    }
  }

 private:
  std::filesystem::path directory_;
};

/// The program on a quiet desktop, with k and p typed in.
struct Program {
  Program(const std::string& k, const std::string& p) : form(desktop) {
    form.ordrek.Text = k;
    form.entier.Text = p;
  }

  QuietDesktop desktop;
  Velmoire form;
};

}  // namespace zelvion::bench
