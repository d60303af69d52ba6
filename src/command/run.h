#pragma once

#include <istream>
#include <ostream>
#include <span>
#include <string>

#include "engine/parallel/pieces.h"

namespace zelvion::command {

/// What a call gets from outside. The streams are parameters so that tests can read them.
struct Environment {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;  ///< progress is shown then
  unsigned threads = 1;        ///< how many there may be unless the call says it
  Progress& progress;          ///< its `stop`, also set by a signal handler, ends all work soon
  bool inIsTerminal = false;   ///< nothing is read from there unless the call says it
};

/// How a call ended.
enum Status : int { kSuccess = 0, kFailure = 1, kWrongCall = 2, kInterrupted = 130 };

/// Carries out a call, given without the name of the program, and returns its status. It does not throw.
int run(std::span<const std::string> words, Environment& environment);

}  // namespace zelvion::command
