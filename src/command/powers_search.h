#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>

#include "command/parts.h"
#include "command/progress_line.h"
#include "command/subcommands.h"

namespace zelvion::command {

/// The search for the fixed points of some powers one after another: its numbers as they come, and its
/// progress.
class PowersSearch {
 public:
  PowersSearch(const Arguments& arguments, Output& output, Environment& environment, IntegerRange powers,
               std::span<const Column> columns);

  /// Writes the fixed points of the power `k` with `first` to `last` digits, as soon as they are known.
  /// Returns how many digits the list is complete up to.
  int search(int k, int first, int last);
  /// Those that lie in a part, of every length, without writing them; nothing if it was stopped. `done` of
  /// the parts are done.
  std::optional<SearchPart> searchPart(int k, Part part, std::uint32_t done = 0);
  /// Writes the fixed points of a power that are known.
  void write(const SearchPart& whole);
  /// Shows at once what was written.
  void flush();

  bool inText() const { return !records_; }
  bool stopped() const { return progress_.stop; }
  std::size_t numbers() const { return numbers_; }  ///< of the latest power
  std::size_t others() const { return others_; }    ///< than 0 and 1, of all powers

 private:
  void begin(int k, Part part, std::uint32_t done);
  void write(int k, const Decimal& number);
  ProgressLine::Standing standing() const;

  Output& output_;
  Progress& progress_;
  unsigned threads_;
  IntegerRange powers_;
  std::atomic<int> power_;
  std::atomic<std::uint32_t> part_{0};   ///< as many are done
  std::atomic<std::uint32_t> parts_{1};  ///< of so many
  std::optional<Records> records_;
  std::size_t numbers_ = 0;
  std::size_t others_ = 0;
  ProgressLine line_;
};

}  // namespace zelvion::command
