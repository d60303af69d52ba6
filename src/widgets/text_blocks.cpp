#include "widgets/text_blocks.h"

#include <algorithm>

namespace zelvion {
namespace {

/// A block ends with a line before `kBlock`, else behind the first blank after it, or anywhere before
/// `kLongestBlock`.
constexpr std::size_t kBlock = 2'000;
constexpr std::size_t kLongestBlock = 6'000;

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

TextBlock firstTextBlock(std::string_view text) {
  const auto endingAt = [text](std::size_t feed) {
    const bool two = feed > 0 && text[feed - 1] == '\r';
    return two ? TextBlock{feed - 1, 2} : TextBlock{feed, 1};
  };
  if (text.size() <= kBlock) return {text.size(), 0};
  const std::size_t feed = text.rfind('\n', kBlock);
  if (feed != std::string_view::npos) return endingAt(feed);
  const std::size_t last = std::min(text.size(), kLongestBlock);
  for (std::size_t i = kBlock; i < last; ++i) {
    if (text[i] == '\n') return endingAt(i);
    if (text[i - 1] == ' ' && isAscii(text[i]) && text[i] != '\r') return {i, 0};
  }
  if (last == text.size()) return {last, 0};
  for (std::size_t i = last; i > kBlock; --i) {
    if (isAscii(text[i - 1]) && isAscii(text[i]) && text[i] != '\r' && text[i] != '\n') return {i, 0};
  }
  std::size_t i = last;
  while (continuesCharacter(text[i])) --i;
  return {i, 0};
}

QString inDocument(std::string_view block) {
  QString text = QString::fromUtf8(block.data(), static_cast<qsizetype>(block.size()));
  text.replace("\r\n", "\n");
  for (const QChar lineEnd : {u'\r', u'\n', u'\u2029'}) text.replace(lineEnd, QChar::LineSeparator);
  return text;
}

}  // namespace zelvion
