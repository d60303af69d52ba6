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

Records::Records(Output& output, std::span<const std::string_view> names)
    : output_(output), names_(names), json_(output.format() == Format::kJson) {
  if (json_) return;
  for (const std::string_view name : names) {
    if (name != names.front()) output << ',';
    output << name;
  }
  output.endLine();
}

void Records::beginValue() {
  if (json_) {
    output_ << (next_ == 0 ? "{\"" : ",\"") << names_[next_] << "\":";
  } else if (next_ > 0) {
    output_ << ',';
  }
}

void Records::endValue() {
  if (++next_ < names_.size()) return;
  if (json_) output_ << '}';
  output_.endLine();
  next_ = 0;
}

void Records::beginField() {
  beginValue();
  if (json_) output_ << '"';
}

void Records::endField() {
  if (json_) output_ << '"';
  endValue();
}

// A text with its marks escaped; in CSV it stands in quotation marks only where it must.
void Records::value(std::string_view text) {
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
