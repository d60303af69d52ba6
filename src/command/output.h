#pragma once

#include <functional>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace zelvion::command {

/// The reader of the results has closed its end: nobody misses what would follow.
class ClosedPipe : public std::exception {};

/// The form of the results.
enum class Format { kText, kCsv, kJson };

/// Where the results go, in large pieces. What cannot be written throws std::system_error, or ClosedPipe.
class Output {
 public:
  /// `format` is for whoever writes; `prepare` is called once, before anything is written.
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
    if (buffer_.size() >= kFull) write();
  }
  /// For texts that are appended in place.
  std::string& buffer() noexcept { return buffer_; }
  /// Hands on what was written so far.
  void flush();
  /// The same at the end: also what is empty is the result then.
  void finish();

 private:
  static constexpr std::size_t kFull = 1 << 16;
  void write();

  Format format_;
  std::ostream& target_;
  std::function<void()> prepare_;
  std::string buffer_;
};

/// Records with named fields as CSV, its names in the first line, or as JSON, one object a line. Every field
/// is a text, numbers too since they have any length, or a list: an array in JSON, parted by blanks in CSV.
/// Not for Format::kText.
class Records {
 public:
  /// Writes the first line. `names` have to outlive the records.
  Records(Output& output, std::span<const std::string_view> names);

  /// The next field of the record; the last one closes its line.
  Records& field(std::string_view text);
  Records& field(std::size_t number);
  Records& list(std::span<const std::string> texts);
  /// For a field that is appended to output.buffer() in place, between two calls; digits only.
  void beginField();
  void endField();

 private:
  void beginValue();
  void endValue();
  void value(std::string_view text);

  Output& output_;
  std::span<const std::string_view> names_;
  bool json_;
  std::size_t next_ = 0;  ///< the field
};

}  // namespace zelvion::command
