#include "command/least_number.h"

namespace zelvion::command {

std::string leastNumberText(const Silhouette& silhouette) {
  constexpr std::uint32_t kLongRun = 20;
  std::string text;
  bool isNew = false;  // behind a long run
  for (std::size_t i = 0; i < silhouette.counts.size(); ++i) {
    const std::uint32_t count = silhouette.counts[i];
    if (count == 0) continue;
    const char digit = static_cast<char>('1' + i);
    if (isNew) text += ", puis de ";
    isNew = count > kLongRun;
    text.append(isNew ? 1 : count, digit);
    if (isNew) text += " suivi de " + std::to_string(count - 1) + " fois " + digit;
  }
  return text.empty() ? "0" : text;
}

}  // namespace zelvion::command
