#include "command/csv_table.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zelvion::command {
namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

}  // namespace

CsvTable::CsvTable(std::istream& input) : input_(input) {
  std::string text;
  while (trimmed(text).empty() && std::getline(input_, text)) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (line_ == 0 && text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
    ++line_;
  }
  for (const char separator : {';', '\t'}) {
    if (std::ranges::count(text, separator) > std::ranges::count(text, separator_)) separator_ = separator;
  }
  split(text);
  titles_ = std::exchange(fields_, {});
}

std::optional<std::size_t> CsvTable::column(std::string_view title) const {
  const auto place = std::ranges::find(titles_, title);
  if (place == titles_.end()) return std::nullopt;
  return static_cast<std::size_t>(place - titles_.begin());
}

bool CsvTable::next() {
  for (std::string text; std::getline(input_, text);) {
    ++line_;
    if (trimmed(text).empty()) continue;
    split(text);
    return true;
  }
  if (input_.bad())
    throw std::runtime_error("Le tableau ne peut pas être lu au-delà de la ligne " + std::to_string(line_) +
                             ".");
  return false;
}

// A mark within quotation marks is doubled; elsewhere it is a character as any other.
void CsvTable::split(std::string_view text) {
  fields_.clear();
  while (true) {
    std::string& field = fields_.emplace_back();
    std::size_t end = text.find_first_not_of(' ');
    if (end != std::string_view::npos && text[end] == '"') {
      while ((text = text.substr(end + 1), end = text.find('"')) != std::string_view::npos) {
        field += text.substr(0, end);
        if (!text.substr(end).starts_with("\"\"")) break;
        field += text[end++];
      }
      text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    }
    end = std::min(text.find(separator_), text.size());
    field += text.substr(0, end);
    field = trimmed(field);
    if (end == text.size()) return;
    text.remove_prefix(end + 1);
  }
}

}  // namespace zelvion::command
