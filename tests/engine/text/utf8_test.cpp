#include "engine/text/utf8.h"

#include <gtest/gtest.h>
#include <iconv.h>

namespace zelvion::text {
namespace {

using namespace std::string_literals;

/// The UTF-8 of Windows-1252 bytes as the system's own tables have it; empty for a byte without a character.
std::string convertedByTheSystem(std::string bytes) {
  const iconv_t tables = iconv_open("UTF-8", "WINDOWS-1252");
  std::string text(4 * bytes.size(), '\0');
  char* in = bytes.data();
  char* out = text.data();
  std::size_t left = bytes.size(), room = text.size();
  const bool all = iconv(tables, &in, &left, &out, &room) != static_cast<std::size_t>(-1);
  iconv_close(tables);
  text.resize(text.size() - room);
  return all ? text : "";
}

TEST(Utf8, WhatIsNoCharacterCountsByteByByte) {
  const std::pair<std::string, std::size_t> rows[] = {
      {"", 0},
      {"12é€\U0001F600", 5},
      {"\xC0\xB1\xC1\xBF", 4},                      // overlong forms of two bytes,
      {"\xE0\x9F\xBF\xF0\x8F\xBF\xBF", 7},          // of three and four
      {"\xE0\xA0\x80\xF0\x90\x80\x80", 2},          // and the first that are not
      {"\xED\x9F\xBF\xEE\x80\x80", 2},              // around the surrogates,
      {"\xED\xA0\x80\xED\xBF\xBF", 6},              // and two of them
      {"\xF4\x8F\xBF\xBF", 1},                      // the last code point,
      {"\xF4\x90\x80\x80\xF5\x80\x80\x80\xFF", 9},  // and beyond
      {"\xC3", 1},
      {"\xE2\x82", 2},
      {"é\xA9z", 3}};
  for (const auto& [text, characters] : rows) {
    EXPECT_EQ(length(text), characters) << text;
    EXPECT_EQ(prefix(text, characters), text);
    EXPECT_EQ(prefix(text, 0), "");
  }
  EXPECT_EQ(prefix("a€é", 2), "a€");
}

TEST(Utf8, BytesOfFiles) {
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string one(1, static_cast<char>(byte)), expected = convertedByTheSystem(one);
    if (!expected.empty()) {
      EXPECT_EQ(fromBytes("a" + one + "z"), "a" + expected + "z") << byte;
    }
  }
  EXPECT_EQ(fromBytes("\x81"), "\u0081");  // a byte that the code page leaves free
  EXPECT_EQ(fromBytes("\xEF\xBB\xBF\xE9té €"), "été €");
  std::string_view text = "a\r\n\nb\r\r\nc";
  for (const char* line : {"a", "", "b\r", "c"}) EXPECT_EQ(takeLine(text), line);
  EXPECT_EQ(text, "");
}

TEST(Utf8, TextsInSentences) {
  const std::string forty = "é234567890123456789012345678901234567890";
  EXPECT_EQ(shortened(forty), forty);
  EXPECT_EQ(shortened("ab" + forty), "abé23456789012345678…12345678901234567890");
  EXPECT_EQ(shortened("1\r\n\x7F\t2"), "1    2");
  const std::pair<std::string_view, std::string_view> names[] = {
      {"a", "«\u00A0a\u00A0»"},           {" ", "une espace"},
      {"\t", "une tabulation"},           {"\n", "une fin de ligne"},
      {"\u00A0", "une espace insécable"}, {"\u202F", "une espace fine insécable"},
      {"\u2009", "une espace fine"},      {"\U0001F600", "«\u00A0\U0001F600\u00A0»"}};
  for (const auto& [character, name] : names) EXPECT_EQ(characterName(character), name);
  const std::pair<std::string, std::string> invisible[] = {
      {"\0"s, "0000"},    {"\x1F", "001F"},   {"\x7F", "007F"},   {"\u009F", "009F"}, {"\u00AD", "00AD"},
      {"\u200B", "200B"}, {"\u202E", "202E"}, {"\u2060", "2060"}, {"\u3000", "3000"}, {"\uFEFF", "FEFF"}};
  for (const auto& [character, code] : invisible) {
    EXPECT_EQ(characterName(character), "le caractère invisible U+" + code);
  }
}

}  // namespace
}  // namespace zelvion::text
