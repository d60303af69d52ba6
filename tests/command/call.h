#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "command/run.h"

namespace zelvion::command::testing {

/// A call carried out in this process: what it wrote, and its status. An empty input is a terminal's.
struct Call {
  int status;
  std::string out;
  std::string err;
};

inline Call call(const std::vector<std::string>& words, const std::string& input = {}, unsigned threads = 2) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  Progress progress;
  Environment environment{in, out, err, false, threads, progress, input.empty()};
  const int status = run(words, environment);
  return {status, out.str(), err.str()};
}

/// A call on one thread that is asked to stop as soon as its output has `text`.
inline Call callUntil(const std::vector<std::string>& words, const std::string& text = {}) {
  class Stopper : public std::stringbuf {
   public:
    Stopper(Progress& progress, const std::string& text) : progress_(progress), text_(text) {}

   protected:
    std::streamsize xsputn(const char* written, std::streamsize size) override {
      const std::string_view view(written, static_cast<std::size_t>(size));
      if (view.find(text_) != std::string_view::npos) progress_.stop = true;
      return std::stringbuf::xsputn(written, size);
    }

   private:
    Progress& progress_;
    const std::string& text_;
  };
  std::istringstream in;
  std::ostringstream err;
  Progress progress;
  Stopper buffer(progress, text);
  std::ostream out(&buffer);
  Environment environment{in, out, err, false, 1, progress};
  const int status = run(words, environment);
  return {status, buffer.str(), err.str()};
}

/// The words of a line, parted by blanks.
inline std::vector<std::string> wordsOf(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

inline Call callLine(const std::string& line, const std::string& input = {}) {
  return call(wordsOf(line), input);
}

}  // namespace zelvion::command::testing
