#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "data_files.h"
#include "engine/fixedpoints/complete_search.h"
#include "form/catalogue/catalogue_rows.h"

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

}  // namespace
}  // namespace zelvion
