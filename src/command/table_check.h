#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "command/csv_table.h"

namespace zelvion::command {

/// What the lines of a table are, as its columns tell.
enum class Listed { kCycleRows, kFixedPointRows, kNarcissisticRows };

/// Says of a table's lines, one after another, whether they are true. The titles of the columns are those
/// that the subcommands write; other columns are not looked at.
class TableCheck {
 public:
  /// `given` is the power of a table that has no column for it. Throws std::runtime_error, with a French
  /// sentence, at a table that lists nothing known. `table` has to outlive the object.
  TableCheck(const CsvTable& table, std::optional<std::int32_t> given);
  ~TableCheck();
  TableCheck(const TableCheck&) = delete;
  TableCheck& operator=(const TableCheck&) = delete;

  Listed listed() const noexcept { return listed_; }
  /// Whether a column is looked at.
  bool checks(std::string_view title) const;

  /// Checks the line that the table is at, and returns what it lists: a cycle by its least point, or a
  /// number. Throws Refusal, which says what is false there, or anything at all once `stop` is set.
  std::string check(const std::atomic<bool>& stop);
  /// The power of that line; 0 if it could not be read.
  std::int32_t k() const noexcept { return k_; }

 private:
  class Power;

  std::string_view powerTitle() const { return listed_ == Listed::kNarcissisticRows ? "ordre" : "k"; }
  std::string_view numberTitle() const {
    return listed_ == Listed::kNarcissisticRows ? "nombre" : "point_fixe";
  }
  std::string digits(std::string_view title) const;
  void expect(std::string_view title, const std::string& what, const std::string& right) const;
  void expectImage(const std::string& number, const std::string& image);
  std::int32_t readPower() const;
  std::string checkPoints(const std::atomic<bool>& stop);
  std::string checkLeast(const std::atomic<bool>& stop);
  std::string checkNumber();
  void expectCycle(std::size_t order, const std::string& least, const std::string& greatest) const;

  const CsvTable& table_;
  std::optional<std::int32_t> given_;
  Listed listed_;
  std::int32_t k_ = 0;
  std::unique_ptr<Power> power_;
};

}  // namespace zelvion::command
