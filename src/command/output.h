#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace zelvion::command {

/// The reader of the results has closed its end, so nobody wants the rest.
class ClosedPipe : public std::exception {};

/// The form of the results.
enum class Format { kText, kCsv, kJson };

/// What many lines have in common: the texts before, between and behind their two numbers.
struct Frame {
  std::string before;
  std::string between;
  std::string behind;
};
/// Stands for such a number.
inline constexpr std::string_view kPlace = "#";

/// Where the results go, in large pieces. A failed write throws std::system_error, or ClosedPipe.
class Output {
 public:
  /// `format` is for the callers; `prepare` is called once, before the first write.
  Output(std::ostream& target, Format format, std::function<void()> prepare = {})
      : format_(format), target_(target), prepare_(std::move(prepare)) {}

  Format format() const noexcept { return format_; }

  Output& operator<<(std::string_view text) {
    buffer_ += text;
    return *this;
  }
  Output& operator<<(char character) {
    buffer_ += character;
    return *this;
  }
  /// Closes a line.
  void endLine() {
    buffer_ += '\n';
    handOn();
  }
  /// The frame of the lines that `write` writes here with kPlace for each of the two numbers; nothing is
  /// handed on.
  Frame frame(const std::function<void()>& write);
  /// Writes a frame's lines with its two numbers.
  void fill(const Frame& frame, std::string_view first, std::string_view second);
  void fill(const Frame& frame, std::string_view first, std::uint64_t second);
  /// For texts that are appended in place.
  std::string& buffer() noexcept { return buffer_; }
  /// Flushes to the target.
  void flush();
  /// Flushes at the end, and prepares the target even for an empty result.
  void finish();

 private:
  static constexpr std::size_t kFull = 1 << 16;
  void write();
  void handOn() {
    if (buffer_.size() >= kFull && !isFraming_) write();
  }

  Format format_;
  std::ostream& target_;
  std::function<void()> prepare_;
  std::string buffer_;
  bool isFraming_ = false;
};

/// A column of a CSV table, or field of a JSON object.
struct Column {
  /// What JSON makes of it: a number of what always fits, and a text of a number of any length.
  enum class Kind { kCount, kNumber };

  std::string_view name;
  Kind kind;
  bool isList;
  std::string_view help;
};

constexpr Column count(std::string_view name, std::string_view help) {
  return {name, Column::Kind::kCount, false, help};
}
constexpr Column number(std::string_view name, std::string_view help) {
  return {name, Column::Kind::kNumber, false, help};
}
constexpr Column listOf(Column column) { return {column.name, column.kind, true, column.help}; }

/// Records with named fields as CSV, its names in the first line, or as JSON, one object a line. A list is an
/// array in JSON and parted by blanks in CSV; an empty count is null in JSON. Not for Format::kText.
class Records {
 public:
  /// Writes the first line. `columns` have to outlive the records.
  Records(Output& output, std::span<const Column> columns);

  /// The next field of the record; the last one closes its line.
  Records& field(std::string_view text);
  Records& field(std::size_t number);
  Records& list(std::span<const std::string> texts);

 private:
  void beginValue();
  void endValue();
  void value(std::string_view text);

  Output& output_;
  std::span<const Column> columns_;
  bool json_;
  std::size_t next_ = 0;  ///< the field
};

}  // namespace zelvion::command
