#include "command/arguments.h"

#include <algorithm>
#include <charconv>

#include "command/spelling.h"
#include "engine/text/utf8.h"

namespace zelvion::command {
namespace {

using text::quoted;

std::string longForm(const Option& option) {
  return "--" + std::string(option.name) + (option.value.empty() ? "" : "=" + std::string(option.value));
}

std::string spelling(const Option& option) {
  return option.letter == 0 ? longForm(option)
                            : std::string("-") + option.letter + " " + std::string(option.value);
}

std::int32_t readInteger(std::string_view text, const std::string& what, std::int32_t least,
                         std::int32_t greatest) {
  const std::string limits =
      " : il faut un nombre entier de " + std::to_string(least) + " à " + std::to_string(greatest) + ".";
  if (text.empty()) throw WrongCall(what + " est vide" + limits);
  const auto other = std::ranges::find_if_not(text, [](char c) { return c >= '0' && c <= '9'; });
  if (other != text.end()) {
    const std::string_view rest = text.substr(static_cast<std::size_t>(other - text.begin()));
    throw WrongCall(what + " " + quoted(text) + " n'est pas un nombre entier, avec " +
                    text::characterName(rest.substr(0, text::firstCharacterSize(rest))) + limits);
  }
  std::int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || value < least || value > greatest)
    throw WrongCall(what + " " + quoted(text) + " est hors des limites" + limits);
  return value;
}

}  // namespace

std::string textOf(IntegerRange range) {
  const std::string first = std::to_string(range.first);
  return range.first == range.last ? first : first + ".." + std::to_string(range.last);
}

Arguments::Arguments(std::span<const Option> options, std::span<const std::string> words)
    : options_(options) {
  const auto valueBehind = [&](std::size_t& i, const Option& option) {
    if (i + 1 == words.size())
      throw WrongCall("Il manque une valeur derrière l'option " + quoted(words[i]) + " : écrivez " +
                      spelling(option) + ".");
    return words[++i];
  };
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (word == "--") {
      operands_.insert(operands_.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
      return;
    }
    if (word.size() < 2 || word.front() != '-') {
      operands_.emplace_back(word);
    } else if (word.starts_with("--")) {
      const std::size_t equals = word.find('=');
      const Option& option = named(word.substr(2, equals == std::string_view::npos ? equals : equals - 2));
      if (equals == std::string_view::npos) {
        values_[option.name] = option.value.empty() ? "" : valueBehind(i, option);
      } else if (option.value.empty()) {
        throw WrongCall("L'option --" + std::string(option.name) +
                        " ne prend pas de valeur : " + quoted(word) + " n'est pas accepté.");
      } else {
        values_[option.name] = word.substr(equals + 1);
      }
    } else {
      for (std::string_view cluster = word.substr(1); !cluster.empty();) {
        const Option& option = lettered(cluster);
        cluster.remove_prefix(1);
        if (option.value.empty()) {
          values_[option.name];
        } else {
          values_[option.name] = cluster.empty() ? valueBehind(i, option) : cluster;
          cluster = {};
        }
      }
    }
  }
}

const Option& Arguments::named(std::string_view name) const {
  const Option* found = nullptr;
  std::string candidates;
  for (const Option& option : options_) {
    if (option.name == name) return option;
    if (name.empty() || !option.name.starts_with(name)) continue;
    candidates += (candidates.empty() ? "--" : ", --") + std::string(option.name);
    // Two names may belong to one option, as for the help.
    if (found == nullptr || found->letter != option.letter || option.letter == 0) found = &option;
  }
  if (candidates.find(',') != std::string::npos)
    throw WrongCall("L'option " + quoted("--" + std::string(name)) + " est ambiguë : " + candidates + ".");
  if (found != nullptr) return *found;
  std::vector<std::string_view> names;
  for (const Option& option : options_) names.push_back(option.name);
  const std::string near(nearest(name, names));
  throw WrongCall("L'option " + quoted("--" + std::string(name)) + " n'existe pas." +
                  (near.empty() ? "" : " Vouliez-vous dire " + quoted("--" + near) + " ?"));
}

const Option& Arguments::lettered(std::string_view cluster) const {
  const auto found =
      std::ranges::find_if(options_, [&](const Option& option) { return option.letter == cluster.front(); });
  if (found != options_.end()) return *found;
  const std::string_view letter = cluster.substr(0, text::firstCharacterSize(cluster));
  const bool isDigit = letter >= "0" && letter <= "9";
  throw WrongCall("L'option " + quoted("-" + std::string(letter)) + " n'existe pas" +
                  (isDigit ? " ; les nombres s'écrivent sans signe." : "."));
}

std::optional<std::string_view> Arguments::value(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

const Option& Arguments::given(std::string_view name) const {
  const Option& option = named(name);
  if (!has(name)) {
    throw WrongCall("Il manque l'option " + spelling(option) + " : " + std::string(option.help) + ".");
  }
  return option;
}

std::int32_t Arguments::integer(std::string_view name, std::int32_t otherwise, std::int32_t least,
                                std::int32_t greatest) const {
  const auto text = value(name);
  if (!text) return otherwise;
  return readInteger(*text, "La valeur de l'option --" + std::string(name), least, greatest);
}

IntegerRange Arguments::range(std::string_view name, std::int32_t least, std::int32_t greatest) const {
  given(name);
  return readRange(*value(name), "La valeur de l'option --" + std::string(name), least, greatest);
}

std::int32_t Arguments::power(std::int32_t greatest) const {
  given("puissance");
  return integer("puissance", 0, 1, greatest);
}

IntegerRange readRange(std::string_view text, const std::string& what, std::int32_t least,
                       std::int32_t greatest) {
  const std::size_t dots = text.find("..");
  if (dots == std::string_view::npos) {
    const std::int32_t value = readInteger(text, what, least, greatest);
    return {value, value};
  }
  const IntegerRange range = {readInteger(text.substr(0, dots), what, least, greatest),
                              readInteger(text.substr(dots + 2), what, least, greatest)};
  if (range.first > range.last)
    throw WrongCall(what + " " + quoted(text) + " est à l'envers : le plus petit nombre vient d'abord.");
  return range;
}

}  // namespace zelvion::command
