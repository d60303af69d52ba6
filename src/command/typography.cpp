#include "command/typography.h"

#include <array>

#include "engine/text/utf8.h"

namespace zelvion::command {

std::string typeset(std::string_view bytes) {
  constexpr std::string_view kNoBreak = "\u00A0";
  constexpr std::array<std::string_view, 5> kAfterBlank = {":", ";", "!", "?", "»"};
  constexpr std::string_view kOpening = "«";
  const std::string whole = text::fromBytes(bytes);
  const std::string_view text = whole;
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i + 1);
    const bool isLetter = i > 0 && ((text[i - 1] | 0x20) >= 'a' && (text[i - 1] | 0x20) <= 'z');
    bool keep = true;
    if (text[i] == ' ') {
      for (const std::string_view mark : kAfterBlank) keep = keep && !rest.starts_with(mark);
      keep = keep && !text.substr(0, i).ends_with(kOpening);
    }
    if (!keep) {
      result += kNoBreak;
    } else if (text[i] == '\'' && isLetter) {
      result += "’";
    } else {
      result += text[i];
    }
  }
  return result;
}

std::string counted(std::size_t count, std::string_view word) {
  return std::to_string(count) + " " + std::string(word) + (count > 1 ? "s" : "");
}

}  // namespace zelvion::command
