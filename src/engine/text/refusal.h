#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace zelvion {

/// What the program does not do, told in a French sentence for the user: what(). Exceptions of other classes
/// carry no such sentence.
class Refusal : public std::runtime_error {
 public:
  explicit Refusal(const std::string& sentence) : std::runtime_error(sentence) {}
  /// A refusal for the character that begins at byte `place` of `text`; all before it are single bytes.
  Refusal(const std::string& sentence, std::string text, std::size_t place)
      : std::runtime_error(sentence), text_(std::move(text)), place_(place) {}

  /// The text with the refused character, empty where none is meant, and the place of that character.
  const std::string& text() const noexcept { return text_; }
  std::size_t place() const noexcept { return place_; }

 private:
  std::string text_;
  std::size_t place_ = 0;
};

}  // namespace zelvion
