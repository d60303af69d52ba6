#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvion::command {

/// A CSV table with a line of titles, read a line at a time: as Records writes it, or as a spreadsheet does,
/// with semicolons or tabs for commas, quotation marks, CR LF and a byte-order mark. Blank lines are passed
/// over.
class CsvTable {
 public:
  /// Reads the titles, whose blanks do not count. `input` has to outlive the object.
  explicit CsvTable(std::istream& input);

  const std::vector<std::string>& titles() const { return titles_; }
  /// The place of a column, if there is one.
  std::optional<std::size_t> column(std::string_view title) const;

  /// Goes to the next line, the first below the titles to begin with. False at the end; throws
  /// std::runtime_error, with a French sentence, if the input ends in an error.
  bool next();
  /// The number of the line in the file; the titles have 1 as a rule.
  std::size_t line() const { return line_; }
  /// Its fields, without blanks around them, whether there are as many as titles or not.
  const std::vector<std::string>& fields() const { return fields_; }

 private:
  void split(std::string_view text);

  std::istream& input_;
  char separator_ = ',';
  std::size_t line_ = 0;
  std::vector<std::string> titles_;
  std::vector<std::string> fields_;
};

}  // namespace zelvion::command
