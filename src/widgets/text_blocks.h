#pragma once

#include <QString>
#include <cstddef>
#include <string_view>

/// Qt lays out a block of a document at a time: a long text is parted into blocks of a few thousand bytes.
namespace zelvion {

struct TextBlock {
  std::size_t size;     ///< in bytes
  std::size_t lineEnd;  ///< the size of the line end behind it, 0 at a joint and at the end of the text
};

/// The block that `text` (UTF-8) begins with. Where no line ends it a joint does, which parts neither a
/// character from its marks nor a line from its end.
TextBlock firstTextBlock(std::string_view text);

/// The text of a block as the document has it.
QString inDocument(std::string_view block);

}  // namespace zelvion
