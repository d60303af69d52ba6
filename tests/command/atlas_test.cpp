#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "command/call.h"

namespace zelvion::command {
namespace {

using testing::call;
using testing::callLine;
using testing::callUntil;

/// A folder that goes with the test.
class AtlasCalls : public ::testing::Test {
 protected:
  AtlasCalls() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zelvion-atlas-XXXXXX").string();
    EXPECT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  ~AtlasCalls() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
  }

  std::filesystem::path folder_;
};

std::size_t timesIn(const std::string& text, const std::string& part) {
  std::size_t times = 0;
  for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + 1)) ++times;
  return times;
}

TEST_F(AtlasCalls, CyclesAreProvenAndCounted) {
  const auto text = callLine("cycles -k 2..3 --bassins --points");
  EXPECT_EQ(text.status, kSuccess) << text.err;
  EXPECT_NE(
      text.out.find("Tout nombre finit sous 10⁴. Liste complète\u00A0: 10 cycles, dont 6 points fixes.\n"),
      std::string::npos)
      << text.out;
  EXPECT_NE(text.out.find("\nCycle 3\u00A0: 4 16 37 58 89 145 42 20\n"), std::string::npos);
  const auto csv = callLine("cycles -k 3 --bassins --csv");
  EXPECT_TRUE(
      csv.out.starts_with("k,cycle,ordre,plus_petit,plus_grand,chiffres,nombres,pas_max,depuis,sous,pas\n"));
  EXPECT_NE(csv.out.find("\n3,3,1,153,153,4,3333,13,177,"), std::string::npos) << csv.out;
  const auto json = callLine("cycles -k 3 --json --points");
  EXPECT_NE(
      json.out.find(
          R"({"k":3,"cycle":9,"ordre":3,"plus_petit":"55","plus_grand":"250","points":["55","250","133"]})"),
      std::string::npos)
      << json.out;
  // Of fewer digits, and said so.
  const auto few = callLine("cycles -k 12 --chiffres 3");
  EXPECT_NE(few.out.find("10³ − 1, tous comptés\u00A0; des nombres plus grands, il n’est rien dit ici."),
            std::string::npos)
      << few.out;
  EXPECT_EQ(callLine("cycles -k 13 --fils 1 --bassins").out,
            callLine("cycles -k 13 --fils 3 --bassins --memoire 1").out);
}

TEST_F(AtlasCalls, RecordsGoOnBeyondTheNumbersCounted) {
  EXPECT_TRUE(
      callLine("records -k 1..3")
          .out.ends_with("\n13 pas\u00A0: 177\n14 pas\u00A0: 12558\n15 pas\u00A0: 44499999999999999999\n"
                         "16 pas\u00A0: plus de 100\u202F000 chiffres\n"));
  EXPECT_EQ(callLine("records -k 1 --bfile").out,
            "0 0\n1 10\n2 19\n3 199\n4 1" + std::string(22, '9') + "\n");
  const auto json = callLine("records -k 2 --json").out;
  EXPECT_NE(json.find(R"({"k":2,"pas":13,"chiffres":199,"nombre":"57799)"), std::string::npos) << json;
  // Not all numbers counted: no number has 3 steps among those, and nothing is said of longer ones.
  EXPECT_EQ(callLine("records -k 12 --chiffres 3 --bfile").out, "0 0\n1 10\n2 369\n");
  EXPECT_TRUE(callLine("records -k 12 --chiffres 3").out.ends_with("\n363 pas\u00A0: 278\n"));
  EXPECT_EQ(callLine("records -k 2..3 --bfile").status, kWrongCall);
}

TEST_F(AtlasCalls, DotHasAnArrowForEveryPointOrSilhouette) {
  EXPECT_EQ(timesIn(callLine("cycles -k 3 --dot").out, "->"), 715U);
  EXPECT_EQ(timesIn(callLine("cycles -k 7 --dot").out, "->"), 272U);
}

TEST_F(AtlasCalls, PartsJoinToTheWholeToTheLetter) {
  const std::pair<std::string, std::string> rows[] = {
      {"cycles", "--bassins"}, {"cycles", "--fils=2"}, {"points-fixes", "--fils=2"}};
  for (const auto& [search, option] : rows) {
    std::vector<std::string> words = {search, "--reunir", "--fils=1", "--csv"};
    for (const char* number : {"3", "1", "5", "2", "4"}) {
      const std::string file = path(number + search + option + ".json");
      const auto part =
          call({search, "-k", "11", "--partie", std::string(number) + "/5", "-o", file, option});
      ASSERT_EQ(part.status, kSuccess) << part.err;
      words.push_back(file);
    }
    const auto whole = call({search, "-k", "11", "--csv", option});
    const auto joined = call(words);
    EXPECT_EQ(joined.out, whole.out);
    EXPECT_EQ(joined.status, kSuccess) << joined.err;
    const std::string first = words[4];
    words[4] = words[5];
    EXPECT_NE(call(words).err.find("La partie 1 est en double"), std::string::npos);
    words.erase(words.begin() + 4);
    EXPECT_NE(call(words).err.find("Il manque, sur 5 parties\u00A0: 3."), std::string::npos)
        << call(words).err;
    EXPECT_EQ(call(words).status, kFailure);
  }
}

TEST_F(AtlasCalls, PartsOfOtherWorkOrDamagedAreTold) {
  const auto partTo = [&](const std::string& file, const std::string& options) {
    EXPECT_EQ(callLine("cycles " + options + " -o " + path(file)).status, kSuccess);
  };
  partTo("a", "-k 5 --bassins --partie 1/2");
  partTo("b", "-k 6 --bassins --partie 2/2");
  partTo("c", "-k 5 --partie 2/2");
  partTo("d", "-k 5 --bassins --partie 2/3");
  partTo("e", "-k 5 --chiffres 3 --partie 2/2");
  partTo("f", "-k 5 --bassins --partie 2/2");
  EXPECT_EQ(callLine("points-fixes -k 5 --partie 2/2 -o " + path("h")).status, kSuccess);
  const auto joined = [&](const std::string& file) {
    return callLine("cycles --reunir " + path("a") + " " + path(file));
  };
  const std::pair<const char*, const char*> rows[] = {{"b", "k = 6 au lieu de 5"},
                                                      {"c", "sans"},
                                                      {"d", "3 parties au lieu de 2"},
                                                      {"e", "chiffres"},
                                                      {"h", "écrite par «\u00A0velmoire cycles"},
                                                      {"z", "être lu"}};
  for (const auto& [file, told] : rows) {
    const auto result = joined(file);
    EXPECT_EQ(result.status, kFailure) << file;
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(told), std::string::npos) << result.err;
  }
  EXPECT_EQ(joined("f").status, kSuccess);
  // The result may take the place of a part, and a whole without basins is none with them.
  partTo("g", "-k 5 --partie 1/2");
  const std::string both = "cycles --reunir " + path("g") + " " + path("c");
  EXPECT_EQ(callLine(both + " --bassins").status, kFailure);
  EXPECT_EQ(callLine(both + " -o " + path("g")).status, kSuccess);
  EXPECT_EQ(timesIn(read("g"), "\n"), 2U + 17);
  const std::string good = read("f");
  const std::pair<std::string, std::string> damages[] = {{R"("sous":["0",)", R"("sous":["1",)"},
                                                         {R"("pas":[")", R"("pas":["1",")"},
                                                         {"54748", "54747"},
                                                         {R"("chiffres":6)", R"("chiffres":60)"},
                                                         {R"(["194979"],)", ""},
                                                         {R"("moindres":[")", R"("moindres":["1)"},
                                                         {R"("parties":2)", R"("parties":-1)"},
                                                         {good.substr(good.size() / 2), ""},
                                                         {good, ""}};
  for (const auto& [what, by] : damages) {
    ASSERT_NE(good.find(what), std::string::npos) << what;
    write("f", std::string(good).replace(good.find(what), what.size(), by));
    EXPECT_EQ(joined("f").status, kFailure) << what << " -> " << by;
    EXPECT_EQ(joined("f").out, "");
    EXPECT_NE(joined("f").err.find("refaites"), std::string::npos) << joined("f").err;
  }
}

TEST_F(AtlasCalls, ResumedSearchesKeepWhatIsWhole) {
  const std::pair<std::string, std::string> rows[] = {{"cycles -k 9..10 --chiffres 5", "cycles -k 9..10"},
                                                      {"points-fixes -k 12..14", "points-fixes -k 12"}};
  for (const auto& [line, other] : rows) {
    const std::string whole = callLine(line).out;
    const std::string resumed = line + " --fils 3 --reprise " + path("kept");
    EXPECT_EQ(callLine(resumed).out, whole);
    const std::string kept = read("kept");
    // Cut anywhere behind the first line, or with a digit changed, it comes to the same.
    const std::size_t first = kept.find('\n') + 1;
    for (const std::size_t cut :
         {first, first + 1, (first + kept.size()) / 2, kept.size() - 1, kept.size()}) {
      write("kept", kept.substr(0, cut));
      EXPECT_EQ(callLine(resumed).out, whole) << cut;
      EXPECT_EQ(callLine(resumed).out, whole) << cut;
    }
    std::string damaged = kept;
    damaged.replace(damaged.find("\"0\"", first), 3, "\"2\"");
    write("kept", damaged);
    EXPECT_EQ(callLine(resumed).out, whole);
    // A file of another call stays as it is.
    for (const std::string& content : {kept, std::string("k,nombre\n"), kept.substr(0, first - 5)}) {
      write("kept", content);
      const auto refused = callLine((content == kept ? other : line) + " --reprise " + path("kept"));
      EXPECT_EQ(refused.status, kFailure);
      EXPECT_EQ(refused.out, "");
      EXPECT_NE(refused.err.find(content == kept ? "est la reprise de" : "n’est pas une reprise"),
                std::string::npos)
          << refused.err;
      EXPECT_EQ(read("kept"), content);
    }
    std::filesystem::remove(path("kept"));
  }
  EXPECT_EQ(callLine("points-fixes -k 5 -o " + path("x") + " --reprise " + path("./x")).status, kWrongCall);
  EXPECT_EQ(callLine("points-fixes -k 5 --reprise " + path("none/x")).status, kFailure);
}

TEST_F(AtlasCalls, PowersFinishedBeforeAStopAreGiven) {
  const auto stopped = callUntil({"cycles", "-k", "2..60"}, "Puissance 3");
  EXPECT_EQ(stopped.status, kInterrupted);
  EXPECT_EQ(stopped.out, callLine("cycles -k 2..3").out);
  EXPECT_NE(stopped.err.find("la puissance 4"), std::string::npos) << stopped.err;
}

TEST_F(AtlasCalls, WrongCallsAreTold) {
  for (const char* line : {"cycles",
                           "cycles -k 0",
                           "cycles -k 131",
                           "cycles -k 3 4",
                           "cycles -k 3 --partie 3",
                           "cycles -k 3 --partie 3/2",
                           "cycles -k 3 --partie 0/2",
                           "cycles -k 2..3 --partie 1/2",
                           "cycles -k 3 --csv --partie 1/2",
                           "cycles --reunir",
                           "cycles -k 3 --reunir x",
                           "cycles --reunir --chiffres 3 x",
                           "points-fixes --reunir",
                           "points-fixes -k 3..4 --partie 1/2",
                           "points-fixes -k 3 --partie 1/2 --reprise x",
                           "points-fixes -k 3 --partie 1/2 --csv",
                           "cycles -k 3 --dot --csv",
                           "cycles -k 3 --chiffres 0",
                           "atlas",
                           "atlas 3..2",
                           "atlas 2 3",
                           "atlas 6 --image x",
                           "atlas 2..3 --image x"}) {
    const auto wrong = callLine(line);
    EXPECT_EQ(wrong.status, kWrongCall) << line;
    EXPECT_EQ(wrong.out, "");
    EXPECT_NE(wrong.err, "");
  }
  for (const char* line : {"atlas 2 -o /dev/null/atlas", "atlas 2 --image /dev/null/atlas"}) {
    const auto failed = callLine(line);
    EXPECT_EQ(failed.status, kFailure) << line;
    EXPECT_NE(failed.err.find("«\u00A0/dev/null/atlas\u00A0»\u00A0: son chemin"), std::string::npos)
        << failed.err;
  }
}

TEST_F(AtlasCalls, PagesTellWhatTheyShow) {
  const auto written = call({"atlas", "1..4", "-o", path("atlas")});
  ASSERT_EQ(written.status, kSuccess) << written.err;
  for (const auto& entry : std::filesystem::directory_iterator(path("atlas"))) {
    const std::string name = entry.path().filename().string();
    if (!name.ends_with(".html")) continue;
    const std::string page = read("atlas/" + name);
    for (const char* noNumber : {"nan\"", " nan", ",nan", "-nan", "Hnan", "Vnan"}) {
      EXPECT_EQ(timesIn(page, noNumber), 0U) << name;
    }
    for (const char* outside : {"http://", "https://", "<script", "<link", "@import"}) {
      const std::size_t names = timesIn(page, "xmlns=\"http://www.w3.org/2000/svg\"");
      EXPECT_EQ(timesIn(page, outside), std::string(outside) == "http://" ? names : 0)
          << name << " " << outside;
    }
  }
  const std::string page = read("atlas/k3.html");
  for (const char* fact : {"33,3\u00A0%", "177", "55 → 250 → 133", "370", "13 pas"}) {
    EXPECT_NE(page.find(fact), std::string::npos) << fact;
  }
  EXPECT_EQ(timesIn(read("atlas/k4-cycles.csv"), "\n"), 1U + 14);
  EXPECT_TRUE(read("atlas/k4-pas.csv").ends_with("\n")) << read("atlas/k4-pas.csv");

  ASSERT_EQ(call({"atlas", "3", "--image", path("k3.svg")}).status, kSuccess);
  const std::string map = read("k3.svg");
  EXPECT_EQ(timesIn(map, "h0"), 715U - 16);     // a point for each silhouette beside the 16 on cycles
  EXPECT_EQ(timesIn(map, "<circle"), 16U + 4);  // those, and four rings
}

}  // namespace
}  // namespace zelvion::command
