#include "command/parts.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "command/subcommands.h"
#include "engine/text/utf8.h"

namespace zelvion::command {
namespace {

using Json = nlohmann::ordered_json;

Json texts(const std::vector<Decimal>& numbers) {
  Json list = Json::array();
  for (const Decimal& number : numbers) list.push_back(number.text());
  return list;
}

constexpr const char* kSearch = "velmoire";
constexpr const char* kSum = "somme";

// The checksum of a part's text, which detects a damaged file: FNV-1a (Fowler, Noll, Vo).
std::string sumOf(const Json& part) {
  std::uint64_t sum = 0xCBF29CE484222325;
  for (const char c : part.dump()) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return std::to_string(sum);
}

// These throw where the JSON is not as jsonOf() writes it, which its checksum has ruled out.
std::vector<Decimal> numbersOf(const Json& list) {
  std::vector<Decimal> numbers;
  for (const Json& text : list) numbers.push_back(Decimal::parse(text.get<std::string>()));
  return numbers;
}

atlas::Cycle cycleOf(const Json& list) { return atlas::Cycle(numbersOf(list)); }

Json checked(std::string_view text) {
  Json json = Json::parse(text);
  const std::string sum = json.at(kSum);
  json.erase(kSum);
  if (sum != sumOf(json)) throw std::runtime_error("damaged");
  return json;
}

// The result of `read` for a line with its checksum; nothing for a damaged one.
template <typename Read>
auto readChecked(std::string_view text, const Read& read) -> std::optional<decltype(read(Json()))> {
  try {
    return read(checked(text));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

SearchPart partOf(const Json& json) {
  SearchPart part;
  part.k = json.at("k");
  part.part = {json.at("partie"), json.at("parties")};
  if (json.at(kSearch) == "points-fixes") {
    part.points = numbersOf(json.at("points"));
    return part;
  }
  for (const Json& points : json.at("cycles")) part.cycles.push_back(cycleOf(points));
  if (!json.contains("bassins")) return part;
  part.basins = atlas::Basins{part.k, json.at("chiffres"), {}};
  for (const Json& basin : json.at("bassins")) {
    part.basins->basins.push_back({cycleOf(basin.at("cycle")), numbersOf(basin.at("sous")),
                                   numbersOf(basin.at("pas")), numbersOf(basin.at("moindres"))});
  }
  return part;
}

std::string sealed(Json json) {
  json[kSum] = sumOf(json);
  return json.dump() + "\n";
}

SearchPart readFile(const std::string& file, std::string_view search) {
  std::ifstream stream = openForReading(file);
  const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  auto part = command::partOf(text);
  if (!part || part->search() != search)
    throw std::runtime_error("Le fichier « " + file +
                             " » ne contient pas une partie entière, écrite par « velmoire " +
                             std::string(search) + " --partie » : refaites cette partie.");
  return std::move(*part);
}

}  // namespace

Part readPart(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash != std::string_view::npos) {
    const IntegerRange number = readRange(text.substr(0, slash), "Le numéro d'une partie", 1, kMaxParts);
    const IntegerRange count = readRange(text.substr(slash + 1), "Le nombre de parties", 1, kMaxParts);
    if (number.first == number.last && count.first == count.last && number.first <= count.first) {
      return {static_cast<std::uint32_t>(number.first), static_cast<std::uint32_t>(count.first)};
    }
  }
  throw WrongCall("La partie " + text::quoted(text) +
                  " n'est pas de la forme I/N, avec I de 1 à N, par exemple 3/64.");
}

std::string sealed(std::string_view key, std::string_view text) { return sealed(Json{{key, text}}); }

std::optional<std::string> unsealed(std::string_view key, std::string_view json) {
  return readChecked(json, [&](const Json& checked) { return checked.at(key).get<std::string>(); });
}

std::string jsonOf(const SearchPart& part) {
  Json json = {
      {kSearch, part.search()}, {"k", part.k}, {"partie", part.part.number}, {"parties", part.part.count}};
  if (part.points) {
    json["points"] = texts(*part.points);
    return sealed(std::move(json));
  }
  json["cycles"] = Json::array();
  for (const atlas::Cycle& cycle : part.cycles) json["cycles"].push_back(texts(cycle.points()));
  if (part.basins) {
    json["chiffres"] = part.basins->digits;
    json["bassins"] = Json::array();
    for (const atlas::Basin& basin : part.basins->basins) {
      json["bassins"].push_back({{"cycle", texts(basin.cycle.points())},
                                 {"sous", texts(basin.below)},
                                 {"pas", texts(basin.tails)},
                                 {"moindres", texts(basin.leastByTail)}});
    }
  }
  return sealed(std::move(json));
}

std::optional<SearchPart> partOf(std::string_view json) {
  return readChecked(json, [](const Json& checked) { return partOf(checked); });
}

SearchPart joined(std::vector<SearchPart> parts) {
  SearchPart whole{parts.front().k, {}, {}, {}, {}};
  std::vector<std::vector<atlas::Cycle>> cycles;
  std::vector<atlas::Basins> basins;
  for (SearchPart& part : parts) {
    if (part.points) {
      if (!whole.points) whole.points.emplace();
      std::ranges::move(*part.points, std::back_inserter(*whole.points));
    }
    cycles.push_back(std::move(part.cycles));
    if (part.basins) basins.push_back(std::move(*part.basins));
  }
  if (whole.points) std::ranges::sort(*whole.points);
  whole.cycles = atlas::joined(cycles);
  if (!basins.empty()) whole.basins = atlas::joined(basins);
  return whole;
}

SearchPart joinedFiles(const Arguments& arguments, std::string_view search) {
  if (arguments.has("puissance") || arguments.has("partie") || arguments.has("reprise"))
    throw WrongCall(
        "Avec --reunir, la puissance et les parties sont celles des fichiers : n'en donnez pas d'autres.");
  const auto& files = arguments.operands();
  if (files.empty()) throw WrongCall("Il manque les fichiers à réunir.");
  std::map<std::uint32_t, std::string> places;
  std::vector<SearchPart> parts;
  for (const std::string& file : files) {
    SearchPart part = readFile(file, search);
    const SearchPart& first = parts.empty() ? part : parts.front();
    const auto other = [&](const std::string& what) {
      throw std::runtime_error("Le fichier « " + file + " » est d'un autre travail que « " + files.front() +
                               " » : " + what + ".");
    };
    if (part.k != first.k) other("k = " + std::to_string(part.k) + " au lieu de " + std::to_string(first.k));
    if (part.part.count != first.part.count)
      other(std::to_string(part.part.count) + " parties au lieu de " + std::to_string(first.part.count));
    if (part.basins.has_value() != first.basins.has_value()) other("l'un est avec les bassins, l'autre sans");
    if (part.basins && part.basins->digits != first.basins->digits)
      other("les nombres comptés n'y ont pas autant de chiffres");
    const auto [place, isNew] = places.emplace(part.part.number, file);
    if (!isNew)
      throw std::runtime_error("La partie " + std::to_string(part.part.number) + " est en double : dans « " +
                               place->second + " » et dans « " + file + " ».");
    parts.push_back(std::move(part));
  }
  const std::uint32_t count = parts.front().part.count;
  std::string missing;
  for (std::uint32_t number = 1; number <= count && missing.size() < 200; ++number) {
    if (!places.contains(number)) missing += (missing.empty() ? "" : ", ") + std::to_string(number);
  }
  if (!missing.empty())
    throw std::runtime_error("Il manque, sur " + std::to_string(count) + " parties : " + missing +
                             (missing.size() < 200 ? "." : ", …"));
  return joined(std::move(parts));
}

}  // namespace zelvion::command
