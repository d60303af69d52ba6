#include "command/subcommands.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "engine/text/reason.h"
#include "engine/text/utf8.h"
#include "pages/typography.h"

namespace zelvion::command {

unsigned threadsOf(const Arguments& arguments, const Environment& environment) {
  constexpr std::int32_t kMost = 1024;
  return static_cast<unsigned>(
      arguments.integer("fils", static_cast<std::int32_t>(environment.threads), 1, kMost));
}

IntegerRange powersOf(const Arguments& arguments, const std::string& what, const std::string& missing,
                      std::int32_t greatest) {
  const auto& operands = arguments.operands();
  if (arguments.has("puissance")) {
    if (operands.empty()) return arguments.range("puissance", 1, greatest);
    throw WrongCall(text::quoted(operands.front()) + " est de trop : l'option -k est déjà donnée.");
  }
  if (operands.size() != 1) throw WrongCall(missing);
  return readRange(operands.front(), what, 1, greatest);
}

int tellInterrupted(std::int32_t k, bool kept, Environment& environment) {
  environment.err << pages::typeset(
      "velmoire : interrompu pendant la puissance " + std::to_string(k) +
      (kept ? " ; le même appel continuera là où il en était.\n" : ", dont rien n'est donné.\n"));
  return kInterrupted;
}

std::ifstream openForReading(const std::string& file) {
  std::error_code unknown;
  const bool isDevice = std::filesystem::is_character_file(file, unknown);  // some have no end
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (stream && !isDevice) stream.peek();  // a directory opens, and cannot be read
  if (stream.is_open() && !stream.bad() && !isDevice) {
    stream.clear();
    return stream;
  }
  throw std::runtime_error(
      "Le fichier « " + file + " » ne peut pas être lu : " +
      (isDevice ? "c'est un périphérique" : text::reasonOf({errno, std::generic_category()})) + ".");
}

void refuseOperands(const Arguments& arguments) {
  if (arguments.operands().empty()) return;
  const std::string& operand = arguments.operands().front();
  const bool isPower =
      !arguments.has("puissance") && operand.find_first_not_of("0123456789.") == std::string::npos;
  throw WrongCall(text::quoted(operand) + " est de trop : " +
                  (isPower
                       ? "la puissance se donne par l'option -k, écrivez -k " + text::shortened(operand) + "."
                       : "cette sous-commande ne prend que des options."));
}

}  // namespace zelvion::command
