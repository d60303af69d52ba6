#include <gtest/gtest.h>

#include <algorithm>

#include "command/call.h"

namespace zelvion::command {
namespace {

using testing::Call;
using testing::callLine;
using testing::callUntil;

struct Row {
  const char* line;
  std::string out;
};

TEST(Formats, AreWhatTheyWere) {
  const Row rows[] = {
      {"image -k 3 789 0", "789 → 1584\n0 → 0\n"},
      {"image -k 3 789 --json", "{\"k\":3,\"nombre\":\"789\",\"image\":\"1584\"}\n"},
      {"iteres -k 3 789 370",
       "  0  789\n  1  1584\n  2  702\n  3  351\n  4  153\n153 est un point fixe, atteint en 4 pas.\n\n"
       "  0  370\n370 est un point fixe, atteint en 0 pas.\n"},
      {"iteres -k 3 919",
       "  0  919\n  1  1459\n  2  919\n919 revient\u00A0: cycle d’ordre 2, atteint en 0 pas.\n"},
      {"iteres -k 3 -n 2 789", "0  789\n1  1584\n2  702\nPas encore de retour en 2 pas.\n"},
      {"iteres -k 3 -n 1 789 --csv", "k,nombre,pas,itere\n3,789,0,789\n3,789,1,1584\n"},
      {"iteres -k 3 153 --json", "{\"k\":3,\"nombre\":\"153\",\"pas\":0,\"itere\":\"153\"}\n"},
      {"cycle -k 3 135 153 919",
       "135\u00A0: 1 pas, point fixe 153\n153\u00A0: 0 pas, point fixe 153\n"
       "919\u00A0: 0 pas, cycle d’ordre 2, de 919 à 1459\n"},
      {"cycle -k 3 --points 1459", "1459\u00A0: 0 pas, cycle d’ordre 2, de 919 à 1459\n  919\n  1459\n"},
      {"cycle -k 3 1459 --csv", "k,nombre,pas,ordre,plus_petit,plus_grand\n3,1459,0,2,919,1459\n"},
      {"cycle -k 3 1459 --csv --points",
       "k,nombre,pas,ordre,plus_petit,plus_grand,points\n3,1459,0,2,919,1459,919 1459\n"},
      {"cycle -k 3 1459 --json --points",
       "{\"k\":3,\"nombre\":\"1459\",\"pas\":0,\"ordre\":2,\"plus_petit\":\"919\",\"plus_grand\":"
       "\"1459\",\"points\":[\"919\",\"1459\"]}\n"},
      {"silhouette 0 1002 --csv",
       "nombre,chiffres,recensement,silhouette\n0,1,0 0 0 0 0 0 0 0 0 1,0 0 0 0 0 0 0 0 0\n"
       "1002,4,0 0 0 0 0 0 0 1 1 2,0 0 0 0 0 0 0 1 1\n"},
      {"silhouette 97 --json",
       "{\"nombre\":\"97\",\"chiffres\":2,\"recensement\":[1,0,1,0,0,0,0,0,0,0],"
       "\"silhouette\":[1,0,1,0,0,0,0,0,0]}\n"},
      {"cycle -k 3 --vers 133 1..9 55",
       "4\u00A0: 4 pas, cycle d’ordre 3, de 55 à 250\n"
       "55\u00A0: 0 pas, cycle d’ordre 3, de 55 à 250\n"},
      {"cycle -k 3 --vers 371 --pas-min 7 1..9", "2\u00A0: 7 pas, point fixe 371\n"},
      {"cycle -k 5 --ordre 5..10 --pas-min 9 1..9", "5\u00A0: 9 pas, cycle d’ordre 10, de 9044 à 133682\n"},
      {"cycle -k 3 --bfile 0..4", "0 0\n1 0\n2 7\n3 3\n4 4\n"},
      {"antecedents -k 3 --csv 153 0 1000000 --chiffres 3",
       "k,nombre,chiffres,antecedents,plus_petit,plus_de\n3,153,3,6,135,2\n3,0,3,1,0,0\n"
       "3,1000000,3,0,11389" +
           std::string(1370, '9') + ",1374\n"},
      {"antecedents -k 3 709344",
       "709344\u00A0: aucun antécédent d’au plus 4 chiffres\u00A0; le plus petit de tous est "
       "39 suivi de 972 fois 9\n"},
      {"antecedents -k 3 9000000000 --json",
       R"({"k":3,"nombre":"9000000000","chiffres":4,"antecedents":"0","plus_petit":"","plus_de":1000000})"
       "\n"},
      {"antecedents -k 3 --silhouettes 153 2 --json",
       R"({"k":3,"nombre":"153","chiffres":4,"silhouette":[0,0,0,0,1,0,1,0,1],"nombres":"24"})"
       "\n"
       R"({"k":3,"nombre":"2","chiffres":4,"silhouette":[0,0,0,0,0,0,0,0,2],"nombres":"6"})"
       "\n"},
      {"antecedents -k 3 --silhouettes 2 7",
       "2\u00A0: silhouettes des antécédents d’au plus 4 chiffres, combien de nombres l’ont\n"
       "  (0, 0, 0, 0, 0, 0, 0, 0, 2)  6\n"
       "7\u00A0: silhouettes des antécédents d’au plus 4 chiffres, combien de nombres l’ont\n  aucun\n"},
      {"silhouette 97",
       "97\u00A0: recensement (1, 0, 1, 0, 0, 0, 0, 0, 0, 0), silhouette (1, 0, 1, 0, 0, 0, 0, 0, 0)\n"}};
  for (const auto& [line, out] : rows) {
    const Call done = callLine(line);
    EXPECT_EQ(done.out, out) << line;
    EXPECT_EQ(done.err, "") << line;
    EXPECT_EQ(done.status, kSuccess) << line;
  }
}

TEST(Numbers, ComeInRangesAndLines) {
  const std::string expected = "8 → 8\n9 → 9\n10 → 1\n11 → 2\n";
  EXPECT_EQ(callLine("image -k 1 8..11").out, expected);
  EXPECT_EQ(callLine("image -k 1 008..9 10 11..11").out, expected);
  EXPECT_EQ(callLine("image -k 1 8 - 11", "9\r\n\n \t\n 10").out, expected);
  EXPECT_EQ(callLine("image -k 1 -", "08..9\n10\n0011\n").out, expected);
  std::string lines;
  for (int number = 0; number <= 20'000; ++number) lines += std::to_string(number) + "\n";
  EXPECT_EQ(callLine("cycle -k 6 -", lines).out, callLine("cycle -k 6 0..20000").out);
  EXPECT_EQ(callLine("image -k 1 99999999999999999999..100000000000000000000").out,
            "99999999999999999999 → 180\n100000000000000000000 → 1\n");
  const std::string large(3'000'000, '9');
  EXPECT_EQ(callLine("image -k 2 -", large).out, large + " → 243000000\n");
  EXPECT_EQ(callLine("image -k 2 -").out, "");
  // A byte-order mark in front is passed over, and without an operand the input is read.
  for (const char* line : {"image -k 1 -", "image -k 1"})
    EXPECT_EQ(callLine(line,
                       "\xEF\xBB\xBF"
                       "8..9\r\n10\r\n11")
                  .out,
              expected)
        << line;
}

TEST(Numbers, ThatCannotBeReadAreToldAndTheNextOneFollows) {
  const Call arguments = callLine("image -k 3 12a4 5 7..6 ..9 3x..9 2");
  EXPECT_EQ(arguments.status, kFailure);
  EXPECT_EQ(arguments.out, "5 → 125\n2 → 8\n");
  EXPECT_NE(arguments.err.find("argument 1\u00A0: Le nombre «\u00A012a4\u00A0» ne peut pas être lu"),
            std::string::npos);
  EXPECT_NE(arguments.err.find("«\u00A0a\u00A0» en position 3"), std::string::npos);
  EXPECT_NE(arguments.err.find("argument 3\u00A0: L’intervalle «\u00A07..6\u00A0» est à l’envers"),
            std::string::npos);
  EXPECT_NE(arguments.err.find("argument 4\u00A0: Le nombre est vide"), std::string::npos);
  EXPECT_NE(arguments.err.find("argument 5\u00A0: Le nombre «\u00A03x\u00A0»"), std::string::npos);

  const Call lines = callLine("cycle -k 2 -", "1\n\n4 4\n+7\n10\n");
  EXPECT_EQ(lines.status, kFailure);
  EXPECT_EQ(lines.out, "1\u00A0: 0 pas, point fixe 1\n10\u00A0: 1 pas, point fixe 1\n");
  EXPECT_NE(lines.err.find("ligne 3\u00A0"), std::string::npos);
  EXPECT_NE(lines.err.find("ligne 4\u00A0"), std::string::npos);
  EXPECT_EQ(std::ranges::count(lines.err, '\n'), 2);

  const Call tooLong = callLine("image -k 2000000 9 1");
  EXPECT_EQ(tooLong.status, kFailure);
  EXPECT_EQ(tooLong.out, "1 → 1\n");
  EXPECT_NE(tooLong.err.find("1 908 486 chiffres"), std::string::npos) << tooLong.err;

  const Call endless = callLine("cycle -k 3 -n 3 789 153");
  EXPECT_EQ(endless.status, kFailure);
  EXPECT_EQ(endless.out, "153\u00A0: 0 pas, point fixe 153\n");
  EXPECT_NE(endless.err.find("Aucun retour en 3 pas"), std::string::npos);
}

// Gives a character at a time, and tells what was written before each.
class SlowBuffer : public std::streambuf {
 public:
  SlowBuffer(std::string text, const std::ostringstream& out) : text_(std::move(text)), out_(out) {}
  std::vector<std::string> seen;

 protected:
  int_type underflow() override {
    seen.push_back(out_.str());
    if (next_ == text_.size()) return traits_type::eof();
    setg(&text_[next_], &text_[next_], &text_[next_] + 1);
    ++next_;
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::string text_;
  const std::ostringstream& out_;
  std::size_t next_ = 0;
};

TEST(Numbers, AreAnsweredBeforeMoreInputIsWaitedFor) {
  std::ostringstream out;
  std::ostringstream err;
  SlowBuffer buffer("5\n12\n", out);
  std::istream in(&buffer);
  Progress progress;
  Environment environment{in, out, err, false, 1, progress};
  const std::vector<std::string> words = {"image", "-k", "2", "-"};
  EXPECT_EQ(run(words, environment), kSuccess);
  ASSERT_GE(buffer.seen.size(), 6U);
  EXPECT_EQ(buffer.seen[1], "");
  EXPECT_EQ(buffer.seen[2], "5 → 25\n");
  EXPECT_EQ(buffer.seen.back(), "5 → 25\n12 → 5\n");
}

TEST(Stop, KeepsWhatIsThereAndHasItsOwnStatus) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"image", "-k", "3", "1..99999999999999999999"},
        {"cycle", "-k", "3", "1..99999999999999999999"},
        {"silhouette", "1..99999999999999999999"}}) {
    const Call stopped = callUntil(words);
    EXPECT_EQ(stopped.status, kInterrupted) << words[0];
    EXPECT_GT(stopped.out.size(), 60'000U) << words[0];
    EXPECT_EQ(stopped.out.back(), '\n') << words[0];
    EXPECT_EQ(stopped.err, "") << words[0];
  }
}

}  // namespace
}  // namespace zelvion::command
