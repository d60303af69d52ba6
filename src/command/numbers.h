#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "command/arguments.h"
#include "command/output.h"
#include "command/run.h"

namespace zelvion::command {

/// What the help says of the operands that forEachNumber takes.
inline constexpr std::string_view kNumberOperands = "[NOMBRE]...";

/// Calls `work` with every number that the operands of a call name, as its digits without zeros in front: a
/// number, a range of them ("1..1000"), or "-" for one or the other a line of the standard input, whose blank
/// lines are passed over, as is a byte-order mark in front; "-" may be left out where the input is no
/// terminal. One that cannot be read, and one at which `work` throws Refusal, is told on the
/// error stream with its place, and the next one follows. Before more input is waited for, the output is
/// flushed. Returns kSuccess, or kFailure if one of them failed; stops early when environment.progress.stop
/// is set. Throws WrongCall if there is nothing to read.
int forEachNumber(const Arguments& arguments, Output& output, Environment& environment,
                  const std::function<void(std::string_view digits)>& work);

}  // namespace zelvion::command
