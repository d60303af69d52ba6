#include "command/run.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

#include "command/call.h"
#include "engine/text/utf8.h"

namespace zelvion::command {
namespace {

using testing::call;
using testing::Call;
using testing::callLine;

std::vector<std::string> subcommands() {
  const std::string help = callLine("--aide").out;
  const std::size_t begin = help.find("Sous-commandes");
  const std::string list = help.substr(begin, help.find("\n\n", begin) - begin);
  static const std::regex kName("\n  ([a-z-]+)");
  return {std::sregex_token_iterator(list.begin(), list.end(), kName, 1), std::sregex_token_iterator()};
}

// In a folder of its own: one of the examples writes where it is called.
class Help : public ::testing::Test {
 protected:
  Help() {
    if (::mkdtemp(folder_.data()) == nullptr) throw std::runtime_error("no folder to test in");
    std::filesystem::current_path(folder_);
  }
  ~Help() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
  std::string folder_ = (std::filesystem::temp_directory_path() / "zelvion-help-XXXXXX").string();
};

TEST_F(Help, ShowsExamplesThatAreTrue) {
  ASSERT_GE(subcommands().size(), 6U);
  for (const std::string& name : subcommands()) {
    const Call help = call({name, "--aide"});
    EXPECT_EQ(help.status, kSuccess) << name;
    EXPECT_EQ(help.err, "") << name;
    EXPECT_EQ(call({name, "--help"}).out, help.out) << name;
    EXPECT_EQ(call({"aide", name}).out, help.out) << name;
    EXPECT_EQ(call({name, "-h", "-o", "/nowhere/at/all"}).out, help.out) << name;
    static const std::regex kExample(" +\\$ velmoire ([^\n]*)\n((?:.*\n)*)");
    std::smatch example;
    ASSERT_TRUE(std::regex_search(help.out, example, kExample)) << name;
    std::string shown = std::regex_replace(example[2].str(), std::regex("(^|\n)  "), "$1");
    static const std::regex kPipe(" \\| velmoire ");
    const std::string calls = example[1];
    std::string printed;
    for (std::sregex_token_iterator one(calls.begin(), calls.end(), kPipe, -1), end; one != end; ++one) {
      printed = callLine(*one, printed).out;
    }
    EXPECT_EQ(printed, shown) << name;
  }
}

TEST_F(Help, IsWrittenAsTheFrenchDo) {
  std::string texts = callLine("--aide").out;
  for (const std::string& name : subcommands()) texts += call({name, "-h"}).out;
  EXPECT_EQ(callLine("aide").out, callLine("--aide").out);
  std::istringstream lines(texts);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_LE(text::length(line), 80U) << line;
    EXPECT_FALSE(line.ends_with(' ')) << line;
  }
  texts += callLine("").err + callLine("image -k 3 x").err;
  EXPECT_FALSE(std::regex_search(texts, std::regex(" [:;!?]| »|« |[a-z]'")));
  EXPECT_TRUE(callLine("--version").out.starts_with("velmoire (zelvion) 1.0.0"));
}

TEST(WrongCall, IsToldKindByKind) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "Il manque une sous-commande"},
      {"--csv", "L’option « --csv » n’existe pas"},
      {"quoi -k 3 5", "La sous-commande « quoi » n’existe pas. Il y a : image, iteres"},
      {"cycel -k 3 5", "La sous-commande « cycel » n’existe pas. Vouliez-vous dire « cycle » ?"},
      {"aide itérés", "Vouliez-vous dire « iteres » ?"},
      {"aide cycle cycles", "« cycles » est de trop"},
      {"cycle --piont 5", "L’option « --piont » n’existe pas. Vouliez-vous dire « --points » ?"},
      {"cycle -k 3 --ordre 5..2 5", "à l’envers"},
      {"cycle -k 3 --bfile --csv 5", "L’option --bfile"},
      {"image 5", "Il manque l’option -k K"},
      {"image -k 3", "Il manque un nombre"},
      {"image -k", "Il manque une valeur derrière l’option « -k »"},
      {"image --puissance", "Il manque une valeur derrière l’option « --puissance »"},
      {"image -k 3 5 -q", "L’option « -q » n’existe pas."},
      {"image -k 3 5 -é", "L’option « -é » n’existe pas."},
      {"image -k 3 -5", "les nombres s’écrivent sans signe"},
      {"image -k 3 5 --quoi", "L’option « --quoi » n’existe pas"},
      {"image -k 3 5 --csv=oui", "L’option --csv ne prend pas de valeur"},
      {"image -k 3 5 --csv --json", "--csv et --json s’excluent"},
      {"image -k 3 --csv", "Il manque un nombre"},
      {"image -k \xE9 5", "« é » n’est pas un nombre entier, avec « é » : il faut"},
      {"image -k 0 5", "« 0 » est hors des limites : il faut un nombre entier de 1 à 2147483647"},
      {"image -k 2147483648 5", "hors des limites"},
      {"image -k 99999999999999999999 5", "hors des limites"},
      {"image -k 3,5 5", "« 3,5 » n’est pas un nombre entier, avec « , » : il faut"},
      {"image --puissance= 5", "est vide"},
      {"cycle -k 3 -n 0 5", "La valeur de l’option --pas « 0 » est hors des limites"},
      {"cycle -k 3 --p=7 5", "« --p » est ambiguë : --puissance, --pas, --points"},
      {"points-fixes", "Il manque l’option -k K"},
      {"points-fixes -k 9..3", "« 9..3 » est à l’envers"},
      {"points-fixes -k 3..", "est vide"},
      {"points-fixes -k 3 5", "« 5 » est de trop : cette sous-commande ne prend que des options"},
      {"cycles 2..5", "« 2..5 » est de trop : la puissance se donne par l’option -k, écrivez -k 2..5."},
      {"atlas -k 3 4", "« 4 » est de trop"},
      {"points-fixes -k 3 --fils 0", "--fils « 0 » est hors des limites"},
      {"points-fixes -k 5000", "de 1 à 200"},
      {"narcissiques", "Il faut un ordre"},
      {"narcissiques 3 4", "Il faut un ordre"},
      {"narcissiques 0", "L’ordre « 0 » est hors des limites"},
      {"narcissiques x", "L’ordre « x » n’est pas un nombre entier, avec « x » :"}};
  for (const auto& [line, sentence] : rows) {
    const Call wrong = callLine(line);
    EXPECT_EQ(wrong.status, kWrongCall) << line;
    EXPECT_EQ(wrong.out, "") << line;
    const std::string plain = std::regex_replace(wrong.err, std::regex("\u00A0"), " ");
    EXPECT_NE(plain.find(sentence), std::string::npos) << line << "\n" << wrong.err;
    EXPECT_NE(plain.find(" --aide » dit ce qui est accepté."), std::string::npos) << line;
  }
}

TEST(Options, AreReadLikeThoseOfGnuTools) {
  const std::string expected = callLine("image -k 3 --csv 789").out;
  ASSERT_EQ(expected, "k,nombre,image\n3,789,1584\n");
  for (const char* line :
       {"image 789 -k3 --csv", "image --puissance=3 --csv 789", "image --puissance 3 789 --cs",
        "image --csv -k 3 -- 789", "image -k 2 -k 3 --csv 00789"}) {
    EXPECT_EQ(callLine(line).out, expected) << line;
  }
  const Call behind = callLine("image -k 3 -- -5 5");
  EXPECT_EQ(behind.status, kFailure);
  EXPECT_EQ(behind.out, "5 → 125\n");
}

// An end of a pipe, or a disk, that takes a few characters and then fails.
class FailingBuffer : public std::stringbuf {
 public:
  explicit FailingBuffer(int error) : error_(error) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (str().size() > 100'000) {
      errno = error_;
      return 0;
    }
    return std::stringbuf::xsputn(text, size);
  }

 private:
  int error_;
};

TEST(Output, EndsSilentlyAtAClosedPipeAndTellsAFullDisk) {
  for (const int error : {EPIPE, ENOSPC}) {
    std::istringstream in;
    FailingBuffer buffer(error);
    std::ostream out(&buffer);
    std::ostringstream err;
    Progress progress;
    Environment environment{in, out, err, false, 1, progress};
    const std::vector<std::string> words = {"image", "-k", "3", "1..1000000000"};
    EXPECT_EQ(run(words, environment), kFailure);
    EXPECT_EQ(err.str(),
              error == EPIPE
                  ? ""
                  : "velmoire\u00A0: Impossible d’écrire les résultats\u00A0: le disque est plein.\n");
    EXPECT_TRUE(buffer.str().starts_with("1 → 1\n2 → 8\n"));
  }
}

TEST(Output, GoesToAFile) {
  const std::string path = ::testing::TempDir() + "velmoire_output.csv";
  const Call written = call({"cycle", "-k", "2", "4", "--csv", "-o", path});
  EXPECT_EQ(written.status, kSuccess);
  EXPECT_EQ(written.out + written.err, "");
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  EXPECT_EQ(content.str(), callLine("cycle -k 2 4 --csv").out);
  // A call that fails before its first result leaves the file alone, any other one empties it.
  for (const char* line : {"image -k 3", "image -k 3 5 --csv --json", "cycles --reunir /nowhere/at/all"}) {
    std::vector<std::string> words = testing::wordsOf(line);
    words.insert(words.end(), {"-o", path});
    EXPECT_NE(call(words).status, kSuccess) << line;
    EXPECT_GT(std::ifstream(path).seekg(0, std::ios::end).tellg(), 0) << line;
  }
  EXPECT_EQ(call({"image", "-k", "3", "-", "-o", path}).status, kSuccess);
  EXPECT_EQ(std::ifstream(path).seekg(0, std::ios::end).tellg(), 0);
  std::remove(path.c_str());

  const Call refused = callLine("image -k 3 5 -o /nowhere/at/all");
  EXPECT_EQ(refused.status, kFailure);
  EXPECT_EQ(refused.out, "");
  EXPECT_NE(refused.err.find("/nowhere/at/all"), std::string::npos);
}

}  // namespace
}  // namespace zelvion::command
