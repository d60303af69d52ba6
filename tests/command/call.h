#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "command/run.h"

namespace zelvion::command::testing {

/// A call carried out in this process: what it wrote, and its status.
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
  Environment environment{in, out, err, false, threads, progress};
  const int status = run(words, environment);
  return {status, out.str(), err.str()};
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
