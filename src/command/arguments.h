#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zelvion::command {

/// A call that cannot be understood; what() is a French sentence.
class WrongCall : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// An option of a subcommand.
struct Option {
  char letter;             ///< 0 if it has a name only
  std::string_view name;   ///< without the two hyphens
  std::string_view value;  ///< how the help calls its value; empty if it takes none
  std::string_view help;
};

struct IntegerRange {
  std::int32_t first;
  std::int32_t last;
};
/// "A..B", or "A" if there is no other.
std::string textOf(IntegerRange range);

/// The words of a call, parted into options and operands by the conventions of the GNU tools: options and
/// operands in any order, "-k3", "-k 3", "--puissance=3", "--puissance 3", "--puis 3" where no other name
/// begins so; "-" is an operand and "--" ends the options. The last of repeated options wins. (No library is
/// used: those at hand have English messages, global state, do not tell which word is wrong, or take longer
/// to start than a whole search.)
class Arguments {
 public:
  /// Throws WrongCall at an unknown option, at one whose value is missing, and at a value for one that takes
  /// none.
  Arguments(std::span<const Option> options, std::span<const std::string> words);

  bool has(std::string_view name) const { return values_.contains(name); }
  /// The value of an option, if it was given.
  std::optional<std::string_view> value(std::string_view name) const;
  const std::vector<std::string>& operands() const { return operands_; }

  /// The value of an option as an integer; `otherwise` if it was not given. Throws WrongCall at anything but
  /// digits and outside `least` to `greatest`.
  std::int32_t integer(std::string_view name, std::int32_t otherwise, std::int32_t least,
                       std::int32_t greatest) const;
  /// The value of an option as an integer or a range "A..B" of them, which has to be given. Throws WrongCall.
  IntegerRange range(std::string_view name, std::int32_t least, std::int32_t greatest) const;
  /// The power in the option "puissance", which has to be given, up to `greatest`. Throws WrongCall.
  std::int32_t power(std::int32_t greatest = std::numeric_limits<std::int32_t>::max()) const;

 private:
  const Option& named(std::string_view name) const;
  const Option& lettered(std::string_view cluster) const;
  const Option& given(std::string_view name) const;

  std::span<const Option> options_;
  std::map<std::string_view, std::string, std::less<>> values_;
  std::vector<std::string> operands_;
};

/// `text` as a range "A..B" or a single integer. `what` begins the sentence of the WrongCall that is thrown
/// at anything else, at a descending range, and outside `least` to `greatest`.
IntegerRange readRange(std::string_view text, const std::string& what, std::int32_t least,
                       std::int32_t greatest);

}  // namespace zelvion::command
