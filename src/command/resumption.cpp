#include "command/resumption.h"

#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "engine/text/reason.h"
#include "engine/text/utf8.h"
#include "files/files.h"

namespace zelvion::command {
namespace {

constexpr std::string_view kHeader = "reprise";

[[noreturn]] void fail(const char* what, const std::string& file, const std::error_code& error) {
  throw std::runtime_error("Impossible " + std::string(what) + " la reprise « " + file +
                           " » : " + text::reasonOf(error) + ".");
}

std::string contentOf(const std::string& file) {
  try {
    return readWhole(file);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::no_such_file_or_directory) return {};
    fail("de lire", file, error.code());
  }
}

}  // namespace

Resumption::Resumption(std::string file, const std::string& call) : file_(std::move(file)) {
  const std::string header = sealed(kHeader, "velmoire " ZELVION_VERSION " " + call);
  const std::string content = contentOf(file_);
  if (content.empty()) {
    append(header);
    return;
  }
  std::string_view rest = content;
  if (!rest.starts_with(header)) {
    const auto other = unsealed(kHeader, rest.substr(0, rest.find('\n')));
    throw std::runtime_error("Le fichier « " + file_ + " » " +
                             (other ? "est la reprise de « " + *other + " »" : "n'est pas une reprise") +
                             " et reste comme il est : donnez-en un autre à l'option --reprise.");
  }
  if (::access(file_.c_str(), W_OK) != 0) fail("d'écrire", file_, {errno, std::generic_category()});
  cutShort_ = !content.ends_with('\n');
  for (rest.remove_prefix(header.size()); !rest.empty();) {
    auto part = partOf(text::takeLine(rest));
    if (!part) continue;
    const auto number = part->part.number;
    parts_[part->k].try_emplace(number, std::move(*part));
  }
}

std::optional<SearchPart> Resumption::search(std::int32_t k, std::uint32_t count, const Work& work) {
  auto& done = parts_[k];
  for (std::uint32_t number = 1; number <= count; ++number) {
    if (done.contains(number)) continue;
    auto part = work({number, count}, static_cast<std::uint32_t>(done.size()));
    if (!part) return std::nullopt;
    append(jsonOf(*part));
    done.emplace(number, std::move(*part));
  }
  std::vector<SearchPart> parts;
  for (auto& [number, part] : done) parts.push_back(std::move(part));
  parts_.erase(k);
  return joined(std::move(parts));
}

void Resumption::append(const std::string& line) {
  try {
    appendWhole(file_, (std::exchange(cutShort_, false) ? "\n" : "") + line);
    syncFile(file_);
  } catch (const std::system_error& error) {
    fail("d'écrire", file_, error.code());
  }
}

std::optional<Resumption> resumptionOf(const Arguments& arguments, const std::string& call) {
  const auto file = arguments.value("reprise");
  if (!file) return std::nullopt;
  if (arguments.has("partie"))
    throw WrongCall("L'option --reprise ne va pas avec --partie : une partie est faite d'un trait.");
  return Resumption(std::string(*file), call);
}

}  // namespace zelvion::command
