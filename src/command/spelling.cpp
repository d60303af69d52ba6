#include "command/spelling.h"

#include <algorithm>
#include <vector>

#include "engine/text/utf8.h"

namespace zelvion::command {
namespace {

std::vector<std::string_view> charactersOf(std::string_view text) {
  std::vector<std::string_view> characters;
  for (; !text.empty(); text.remove_prefix(characters.back().size()))
    characters.push_back(text.substr(0, text::firstCharacterSize(text)));
  return characters;
}

// The optimal string alignment distance, row by row.
std::size_t distance(std::string_view from, std::string_view to) {
  const auto a = charactersOf(from);
  const auto b = charactersOf(to);
  std::vector<std::vector<std::size_t>> rows(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        rows[i][j] = i + j;
        continue;
      }
      const std::size_t changed = rows[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      rows[i][j] = std::min({changed, rows[i - 1][j] + 1, rows[i][j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
    }
  }
  return rows[a.size()][b.size()];
}

}  // namespace

std::string_view nearest(std::string_view word, std::span<const std::string_view> names) {
  constexpr std::size_t kLongest = 40;  // no name is nearly as long
  if (word.size() > kLongest) return {};
  std::string_view best;
  std::size_t least = std::min<std::size_t>(2, (text::length(word) + 1) / 3);  // more slips are unlikely
  for (const std::string_view name : names) {
    const std::size_t slips = distance(word, name);
    if (slips <= least && (best.empty() || slips < least)) {
      best = name;
      least = slips;
    }
  }
  if (!best.empty() || word.size() < 3) return best;
  const auto begun =
      std::ranges::find_if(names, [&](std::string_view name) { return name.starts_with(word); });
  return begun == names.end() ? best : *begun;
}

}  // namespace zelvion::command
