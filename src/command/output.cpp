#include "command/output.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <system_error>

namespace zelvion::command {

void Output::write() {
  if (prepare_) std::exchange(prepare_, nullptr)();
  errno = 0;
  target_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
  if (target_) return;
  if (errno == EPIPE) throw ClosedPipe();
  throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
}

void Output::flush() {
  if (!buffer_.empty()) write();
  errno = 0;
  if (target_.flush()) return;
  if (errno == EPIPE) throw ClosedPipe();
  throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
}

void Output::finish() {
  write();
  flush();
}

Frame Output::frame(const std::function<void()>& write) {
  std::string kept = std::exchange(buffer_, {});
  isFraming_ = true;
  write();
  isFraming_ = false;
  const std::string lines = std::exchange(buffer_, std::move(kept));
  const std::size_t first = lines.find(kPlace);
  const std::size_t second = lines.find(kPlace, first + 1);
  return {lines.substr(0, first), lines.substr(first + 1, second - first - 1), lines.substr(second + 1)};
}

void Output::fill(const Frame& frame, std::string_view first, std::string_view second) {
  buffer_.append(frame.before).append(first).append(frame.between).append(second).append(frame.behind);
  handOn();
}

void Output::fill(const Frame& frame, std::string_view first, std::uint64_t second) {
  std::array<char, 20> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), second).ptr;
  fill(frame, first, std::string_view(digits.data(), end));
}

Records::Records(Output& output, std::span<const Column> columns)
    : output_(output), columns_(columns), json_(output.format() == Format::kJson) {
  if (json_) return;
  for (const Column& column : columns) output << (&column == columns.data() ? "" : ",") << column.name;
  output.endLine();
}

void Records::beginValue() {
  if (json_) {
    output_ << (next_ == 0 ? "{\"" : ",\"") << columns_[next_].name << "\":";
  } else if (next_ > 0) {
    output_ << ',';
  }
}

void Records::endValue() {
  if (++next_ < columns_.size()) return;
  if (json_) output_ << '}';
  output_.endLine();
  next_ = 0;
}

// Writes an escaped text; in CSV it is quoted only where it must be.
void Records::value(std::string_view text) {
  if (json_ && columns_[next_].kind == Column::Kind::kCount) {
    output_ << (text.empty() ? "null" : text);
    return;
  }
  if (std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; })) {  // nearly always
    output_ << (json_ ? "\"" : "") << text << (json_ ? "\"" : "");
    return;
  }
  const bool quote = json_ || text.find_first_of("\",\r\n") != std::string_view::npos;
  if (quote) output_ << '"';
  for (const char c : text) {
    if (json_ && static_cast<unsigned char>(c) < 0x20) {
      std::array<char, 8> code{};
      std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(c));
      output_ << code.data();
      continue;
    }
    if (json_ && (c == '"' || c == '\\')) output_ << '\\';
    if (!json_ && c == '"') output_ << '"';
    output_ << c;
  }
  if (quote) output_ << '"';
}

Records& Records::field(std::string_view text) {
  beginValue();
  value(text);
  endValue();
  return *this;
}

Records& Records::field(std::size_t number) {
  std::array<char, 20> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return field(std::string_view(digits.data(), end));
}

Records& Records::list(std::span<const std::string> texts) {
  beginValue();
  if (json_) output_ << '[';
  bool first = true;
  for (const std::string& text : texts) {
    if (!first) output_ << (json_ ? ',' : ' ');
    if (json_) {
      value(text);
    } else {
      output_ << text;
    }
    first = false;
  }
  if (json_) output_ << ']';
  endValue();
  return *this;
}

}  // namespace zelvion::command
