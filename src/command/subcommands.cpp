#include "command/subcommands.h"

#include "engine/text/utf8.h"

namespace zelvion::command {

unsigned threadsOf(const Arguments& arguments, const Environment& environment) {
  constexpr std::int32_t kMost = 1024;
  return static_cast<unsigned>(
      arguments.integer("fils", static_cast<std::int32_t>(environment.threads), 1, kMost));
}

void refuseOperands(const Arguments& arguments) {
  if (arguments.operands().empty()) return;
  throw WrongCall("« " + text::shortened(arguments.operands().front()) +
                  " » est de trop : cette sous-commande ne prend que des options.");
}

}  // namespace zelvion::command
