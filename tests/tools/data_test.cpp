#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "data_files.h"
#include "engine/fixedpoints/complete_search.h"
#include "engine/text/utf8.h"
#include "form/catalogue_rows.h"
#include "form/velmoire.h"

namespace zelvion {
namespace {

std::string committed(const std::string& name) {
  std::ifstream file(std::string(ZELVION_DATA) + "/" + name, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  EXPECT_TRUE(file) << name;
  return content.str();
}

std::vector<std::string> numbersIn(const std::string& text) {
  static const std::regex kNumber("[0-9]+");
  return {std::sregex_token_iterator(text.begin(), text.end(), kNumber), std::sregex_token_iterator()};
}

std::vector<std::string> narcissistic(int order) {
  std::vector<std::string> numbers;
  for (const Decimal& number : narcissisticNumbers(order)) numbers.push_back(number.text());
  return numbers;
}

TEST(DataFiles, AreWhatTheEnginesWrite) {
  for (const auto& [name, content] : dataFiles()) EXPECT_EQ(committed(name), content) << name;
}

TEST(Catalogue, LacksOneNumberOfAll) {
  for (const CatalogueRow& row : kCatalogue) {
    std::vector<std::string> numbers = narcissistic(row.order);
    if (row.order == 17) std::erase(numbers, "35875699062250035");
    EXPECT_EQ(numbersIn(std::string(row.text)), numbers) << row.order;
  }
}

TEST(DataFiles, HoldAllSilhouettesUpTo9999) {
  std::set<std::string> all;
  for (int number = 1; number <= 9999; ++number) all.insert(Velmoire::Classenbre(std::to_string(number)));
  std::vector<std::string> listed = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
  for (const std::string name : {"Listenbre2.txt", "Listenbre3.txt", "Listenbre4.txt"}) {
    const std::string text = committed(name);
    EXPECT_EQ(text.find('\n'), text.size() - 1) << name;
    EXPECT_TRUE(text.ends_with(";\n") || text.ends_with(";\r\n")) << name;
    const std::vector<std::string> row = numbersIn(text);
    EXPECT_TRUE(std::is_sorted(row.begin(), row.end())) << name;
    listed.insert(listed.end(), row.begin(), row.end());
  }
  EXPECT_EQ(listed.size(), 714U);
  EXPECT_EQ(std::set<std::string>(listed.begin(), listed.end()), all);
}

}  // namespace
}  // namespace zelvion
