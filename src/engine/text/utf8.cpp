#include "engine/text/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace zelvion::text {
namespace {

constexpr std::size_t kShortLength = 40;

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// The size of the valid sequence at the front of `text`, 0 if there is none.
std::size_t validSequence(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  std::size_t size = 0;
  if (lead >= 0xC2 && lead <= 0xDF) size = 2;
  if (lead >= 0xE0 && lead <= 0xEF) size = 3;
  if (lead >= 0xF0 && lead <= 0xF4) size = 4;
  if (size == 0 || size > text.size()) return 0;
  if (!std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(size), isContinuation))
    return 0;
  const unsigned second = byte(1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool outOfRange = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
  return overlong || outOfRange ? 0 : size;
}

void appendCodePoint(std::string& out, std::uint32_t code) {
  const auto put = [&](std::uint32_t byte) { out += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

std::uint32_t fromWindows1252(unsigned char byte) {
  // 0x80 to 0x9F; the five places that the code page leaves free stay control characters.
  static constexpr std::array<std::uint16_t, 32> kUpper = {
      0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
  if (byte >= 0x80 && byte <= 0x9F) return kUpper[byte - 0x80U];
  return byte;
}

std::uint32_t codePoint(std::string_view character) {
  const auto byte = [&](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(character[i]));
  };
  switch (character.size()) {
    case 1:
      return byte(0);
    case 2:
      return ((byte(0) & 0x1F) << 6) | (byte(1) & 0x3F);
    case 3:
      return ((byte(0) & 0x0F) << 12) | ((byte(1) & 0x3F) << 6) | (byte(2) & 0x3F);
    default:
      return ((byte(0) & 0x07) << 18) | ((byte(1) & 0x3F) << 12) | ((byte(2) & 0x3F) << 6) | (byte(3) & 0x3F);
  }
}

}  // namespace

std::size_t firstCharacterSize(std::string_view text) noexcept {
  return std::max<std::size_t>(1, validSequence(text));
}

std::size_t length(std::string_view text) noexcept {
  std::size_t count = 0;
  for (std::size_t place = 0; place < text.size(); ++count) {
    const bool single = static_cast<unsigned char>(text[place]) < 0x80;
    place += single ? 1 : firstCharacterSize(text.substr(place));
  }
  return count;
}

std::string_view prefix(std::string_view text, std::size_t count) noexcept {
  std::size_t bytes = 0;
  for (; count > 0 && bytes < text.size(); --count) bytes += firstCharacterSize(text.substr(bytes));
  return text.substr(0, bytes);
}

std::string shortened(std::string_view text) {
  std::string line;
  const std::size_t size = length(text);
  if (size <= kShortLength) {
    line = text;
  } else {
    std::string_view tail = text;
    tail.remove_prefix(prefix(text, size - kShortLength / 2).size());
    line = std::string(prefix(text, kShortLength / 2)) + "…" + std::string(tail);
  }
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
  return line;
}

std::string quoted(std::string_view text) { return "« " + shortened(text) + " »"; }

std::string fromBytes(std::string_view bytes) {
  static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.substr(0, kByteOrderMark.size()) == kByteOrderMark) bytes.remove_prefix(kByteOrderMark.size());
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t size = validSequence(bytes);
    if (size > 0) {
      text += bytes.substr(0, size);
    } else {
      appendCodePoint(text, fromWindows1252(static_cast<unsigned char>(bytes.front())));
    }
    bytes.remove_prefix(std::max<std::size_t>(1, size));
  }
  return text;
}

std::string_view takeLine(std::string_view& text) noexcept {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  if (line.ends_with('\r')) line.remove_suffix(1);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

std::string characterName(std::string_view character) {
  const std::uint32_t code = codePoint(character);
  switch (code) {
    case ' ':
      return "une espace";
    case '\t':
      return "une tabulation";
    case '\r':
    case '\n':
      return "une fin de ligne";
    case 0xA0:
      return "une espace insécable";
    case 0x202F:
      return "une espace fine insécable";
    case 0x2009:
      return "une espace fine";
    default:
      break;
  }
  const bool invisible = code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x2000 && code <= 0x200F) ||
                         (code >= 0x2028 && code <= 0x202E) || (code >= 0x205F && code <= 0x206F) ||
                         code == 0xAD || code == 0x3000 || code == 0xFEFF;
  if (!invisible) return "« " + std::string(character) + " »";
  std::array<char, 48> name{};
  std::snprintf(name.data(), name.size(), "le caractère invisible U+%04X", static_cast<unsigned>(code));
  return name.data();
}

}  // namespace zelvion::text
