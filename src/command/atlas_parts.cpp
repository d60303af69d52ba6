#include "command/atlas_parts.h"

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <system_error>

#include "engine/atlas/range.h"
#include "engine/text/reason.h"
#include "engine/transform/transformation.h"

namespace zelvion::command {
namespace {

using Json = nlohmann::ordered_json;

Json texts(const std::vector<Decimal>& numbers) {
  Json list = Json::array();
  for (const Decimal& number : numbers) list.push_back(number.text());
  return list;
}

// What is read back; anything but what jsonOf writes throws an exception.
void demand(bool right) {
  if (!right) throw std::runtime_error("not what jsonOf writes");
}

std::int64_t integerOf(const Json& json, std::int64_t first, std::int64_t last) {
  demand(json.is_number_integer());
  const auto value = json.get<std::int64_t>();
  demand(value >= first && value <= last);
  return value;
}

std::vector<Decimal> numbersOf(const Json& list) {
  std::vector<Decimal> numbers;
  for (const Json& text : list) numbers.push_back(Decimal::parse(text.get<std::string>()));
  return numbers;
}

atlas::Cycle cycleOf(const Json& list, Transformation& transformation) {
  const std::vector<Decimal> points = numbersOf(list);
  demand(!points.empty() && std::set(points.begin(), points.end()).size() == points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    demand(transformation.image(silhouetteOf(points[i])) == points[(i + 1) % points.size()]);
  }
  return atlas::Cycle(points);
}

atlas::Basin basinOf(const Json& json, int digits, Transformation& transformation) {
  atlas::Basin basin{cycleOf(json.at("cycle"), transformation), numbersOf(json.at("sous")),
                     numbersOf(json.at("pas")), Decimal::parse(json.at("plus_loin").get<std::string>())};
  demand(basin.below.size() == static_cast<std::size_t>(digits) + 1);
  Decimal sum;
  for (const Decimal& count : basin.tails) sum += count;
  demand(!sum.isZero() && sum == basin.below.back());
  return basin;
}

AtlasPart partOf(const Json& json) {
  demand(json.at("velmoire") == "cycles");
  AtlasPart part;
  part.k = static_cast<std::int32_t>(integerOf(json.at("k"), 1, atlas::kMaxPower));
  part.part.count = static_cast<std::uint32_t>(integerOf(json.at("parties"), 1, atlas::kMaxParts));
  part.part.number = static_cast<std::uint32_t>(integerOf(json.at("partie"), 1, part.part.count));
  Transformation transformation(part.k);
  for (const Json& points : json.at("cycles")) part.cycles.push_back(cycleOf(points, transformation));
  if (!json.contains("bassins")) return part;
  const int digits = static_cast<int>(integerOf(json.at("chiffres"), 1, atlas::kMaxCountedDigits));
  part.basins = atlas::Basins{part.k, digits, {}};
  for (const Json& basin : json.at("bassins")) {
    part.basins->basins.push_back(basinOf(basin, digits, transformation));
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
  for (std::uint32_t number = 1; number <= whole.part.count; ++number) {
    if (places.contains(number)) continue;
    if (missing.size() > 200) {
      missing += "...";
      break;
    }
    missing += (missing.empty() ? "" : ", ") + std::to_string(number);
  }
  if (!missing.empty())
    throw std::runtime_error("Il manque, sur " + std::to_string(whole.part.count) + " parties : " + missing +
                             ".");
  whole.part = {};
  whole.cycles = atlas::joined(cycles);
  if (basins.empty()) return whole;
  try {
    whole.basins = atlas::joined(basins);
  } catch (const std::logic_error&) {
    throw std::runtime_error(
        "Réunis, ces fichiers ne comptent pas chaque nombre une fois : l'un d'eux est abîmé. Refaites ces "
        "parties.");
  }
  return whole;
}

}  // namespace zelvion::command
