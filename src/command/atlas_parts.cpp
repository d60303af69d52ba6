#include "command/atlas_parts.h"

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

#include "engine/atlas/range.h"
#include "engine/text/reason.h"

namespace zelvion::command {
namespace {

using Json = nlohmann::ordered_json;

Json texts(const std::vector<Decimal>& numbers) {
  Json list = Json::array();
  for (const Decimal& number : numbers) list.push_back(number.text());
  return list;
}

constexpr const char* kSum = "somme";

// The sum of a part's text without it, which tells a damaged file: FNV-1a (Fowler, Noll, Vo).
std::string sumOf(const Json& part) {
  std::uint64_t sum = 0xCBF29CE484222325;
  for (const char c : part.dump()) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return std::to_string(sum);
}

// What is read back has the sum that jsonOf wrote, so that it is right; else these throw an exception.
std::vector<Decimal> numbersOf(const Json& list) {
  std::vector<Decimal> numbers;
  for (const Json& text : list) numbers.push_back(Decimal::parse(text.get<std::string>()));
  return numbers;
}

atlas::Cycle cycleOf(const Json& list) { return atlas::Cycle(numbersOf(list)); }

AtlasPart partOf(Json json) {
  const std::string sum = json.at(kSum);
  json.erase(kSum);
  if (sum != sumOf(json)) throw std::runtime_error("damaged");
  AtlasPart part;
  part.k = json.at("k");
  part.part = {json.at("partie"), json.at("parties")};
  for (const Json& points : json.at("cycles")) part.cycles.push_back(cycleOf(points));
  if (!json.contains("bassins")) return part;
  part.basins = atlas::Basins{part.k, json.at("chiffres"), {}};
  for (const Json& basin : json.at("bassins")) {
    part.basins->basins.push_back({cycleOf(basin.at("cycle")), numbersOf(basin.at("sous")),
                                   numbersOf(basin.at("pas")),
                                   Decimal::parse(basin.at("plus_loin").get<std::string>())});
  }
  return part;
}

AtlasPart readPart(const std::string& file) {
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream)
    throw std::runtime_error("Le fichier « " + file + " » ne peut pas être ouvert : " +
                             text::reasonOf({errno, std::generic_category()}) + ".");
  try {
    return partOf(Json::parse(stream));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    throw std::runtime_error(
        "Le fichier « " + file +
        " » ne contient pas une partie entière, écrite par « velmoire cycles --partie » : "
        "refaites cette partie.");
  }
}

}  // namespace

std::string jsonOf(const AtlasPart& part) {
  Json json = {
      {"velmoire", "cycles"}, {"k", part.k}, {"partie", part.part.number}, {"parties", part.part.count}};
  json["cycles"] = Json::array();
  for (const atlas::Cycle& cycle : part.cycles) json["cycles"].push_back(texts(cycle.points()));
  if (part.basins) {
    json["chiffres"] = part.basins->digits;
    json["bassins"] = Json::array();
    for (const atlas::Basin& basin : part.basins->basins) {
      json["bassins"].push_back({{"cycle", texts(basin.cycle.points())},
                                 {"sous", texts(basin.below)},
                                 {"pas", texts(basin.tails)},
                                 {"plus_loin", basin.farthest.text()}});
    }
  }
  json[kSum] = sumOf(json);
  return json.dump() + "\n";
}

AtlasPart joinedParts(std::span<const std::string> files) {
  std::map<std::uint32_t, std::string> places;
  std::vector<std::vector<atlas::Cycle>> cycles;
  std::vector<atlas::Basins> basins;
  AtlasPart whole;
  for (const std::string& file : files) {
    AtlasPart part = readPart(file);
    const auto other = [&](const std::string& what) {
      throw std::runtime_error("Le fichier « " + file + " » est d'un autre travail que « " + files.front() +
                               " » : " + what + ".");
    };
    if (places.empty()) {
      whole.k = part.k;
      whole.part = part.part;
    } else {
      if (part.k != whole.k)
        other("k = " + std::to_string(part.k) + " au lieu de " + std::to_string(whole.k));
      if (part.part.count != whole.part.count)
        other(std::to_string(part.part.count) + " parties au lieu de " + std::to_string(whole.part.count));
      if (part.basins.has_value() == basins.empty()) other("l'un est avec les bassins, l'autre sans");
      if (part.basins && part.basins->digits != basins.front().digits)
        other("les nombres comptés n'y ont pas autant de chiffres");
    }
    const auto [place, isNew] = places.emplace(part.part.number, file);
    if (!isNew)
      throw std::runtime_error("La partie " + std::to_string(part.part.number) + " est en double : dans « " +
                               place->second + " » et dans « " + file + " ».");
    cycles.push_back(std::move(part.cycles));
    if (part.basins) basins.push_back(std::move(*part.basins));
  }
  std::string missing;
  for (std::uint32_t number = 1; number <= whole.part.count && missing.size() < 200; ++number) {
    if (!places.contains(number)) missing += (missing.empty() ? "" : ", ") + std::to_string(number);
  }
  if (!missing.empty())
    throw std::runtime_error("Il manque, sur " + std::to_string(whole.part.count) + " parties : " + missing +
                             (missing.size() < 200 ? "." : ", …"));
  whole.part = {};
  whole.cycles = atlas::joined(cycles);
  if (!basins.empty()) whole.basins = atlas::joined(basins);
  return whole;
}

}  // namespace zelvion::command
