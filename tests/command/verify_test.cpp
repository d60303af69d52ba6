#include <gtest/gtest.h>

#include <algorithm>

#include "command/call.h"

namespace zelvion::command {
namespace {

using testing::call;
using testing::Call;
using testing::callLine;

TEST(Verify, FindsTrueWhatTheSearchesWrite) {
  for (const char* line : {"cycles -k 1..12 --csv --points", "cycles -k 2..9 --csv --bassins",
                           "points-fixes -k 1..20 --csv", "narcissiques 1..20 --csv"}) {
    const std::string table = callLine(line).out;
    const Call found = callLine("verifier --fautes --complet", table);
    const auto lines = std::ranges::count(table, '\n') - 1;
    EXPECT_TRUE(found.out.starts_with(std::to_string(lines) + " lignes, aucune faute, rien ne manque.\n"))
        << line << found.out;
    EXPECT_EQ(found.status, kSuccess) << line;
    std::string spreadsheet = "\xEF\xBB\xBF";
    for (const char c : table) spreadsheet += c == ',' ? "\";\"" : c == '\n' ? "\r\n" : std::string(1, c);
    EXPECT_NE(callLine("verifier", spreadsheet).status, kSuccess) << line;  // marks that are not balanced
    std::erase(spreadsheet, '"');
    EXPECT_EQ(callLine("verifier --fautes --complet", spreadsheet).out, found.out) << line;
  }
}

TEST(Verify, SaysOfEveryLineWhatIsFalseThere) {
  const auto verdict = [](const std::string& table, const std::string& options = {}) {
    const Call found = callLine("verifier --csv" + options, table);
    EXPECT_EQ(found.err, "");
    EXPECT_EQ(found.status, found.out.find("juste") == std::string::npos ? kFailure : kSuccess) << table;
    return found.out.substr(found.out.find('\n') + 1);
  };
  const std::string points = "k,ordre,plus_petit,plus_grand,points\n3,";
  EXPECT_EQ(verdict(points + "3,55,250,250 0133 55"), "2,3,juste,\n");
  EXPECT_EQ(verdict(points + "3,55,250,55 133 250"), "2,3,faux,\"l’image de 55 est 250, et non 133\"\n");
  EXPECT_EQ(verdict(points + "2,55,250,55 250 133"), "2,3,faux,\"l’ordre est 3, et non 2\"\n");
  EXPECT_EQ(verdict(points + "3,133,250,55 250 133"),
            "2,3,faux,\"le plus petit point est 55, et non 133\"\n");
  EXPECT_EQ(verdict(points + "3,55,133,55 250 133"),
            "2,3,faux,\"le plus grand point est 250, et non 133\"\n");
  EXPECT_EQ(verdict(points + "2,1,1,1 1"), "2,3,faux,1 est deux fois parmi les points\n");
  EXPECT_EQ(verdict(points + "0,,,"), "2,3,faux,il n’y a aucun point\n");
  EXPECT_EQ(verdict(points + "1,1,1"), "2,,faux,il y a 4 champs pour 5 titres\n");
  EXPECT_EQ(verdict("k,point_fixe\n0,1"), "2,,faux,la puissance est un entier à partir de 1\n");
  EXPECT_EQ(verdict("k,point_fixe\nx,1"), "2,,faux,\"«\u00A0x\u00A0» n’est pas un nombre, colonne k\"\n");
  EXPECT_EQ(verdict("ordre,nombre\n3,1"), "2,3,faux,\"1 a 1 chiffre, et non 3\"\n");
  EXPECT_EQ(verdict("chiffres,point_fixe\n4,153", " -k 3"),
            "2,3,faux,\"le nombre de chiffres est 3, et non 4\"\n");
  EXPECT_EQ(verdict("plus_petit\n004", " -k 2"), "2,2,juste,\n");
  EXPECT_EQ(verdict("plus_petit\n789", " -k 2"),
            "2,2,faux,\"789 n’est sur aucun cycle, il tombe sur un en 3 pas\"\n");
  EXPECT_EQ(verdict("plus_petit\n0\n145\n37", " -k 2 --complet --fautes"),
            "3,2,faux,\"le plus petit point est 4, et non 145\"\n"
            "4,2,faux,\"le plus petit point est 4, et non 37\"\n"
            ",2,manque,le point fixe 1\n,2,manque,\"le cycle d’ordre 8, de 4 à 145\"\n");
  EXPECT_EQ(verdict("k,points\n2,1\n2,1\n2,0\n2,4 16 37 58 89 145 42 20", " --complet --fautes"),
            "3,2,double,comme la ligne 2\n");
}

TEST(Verify, RefusesWhatItCannotRead) {
  EXPECT_NE(callLine("verifier", "a,b\n1,2\n").err.find("point_fixe"), std::string::npos);
  EXPECT_NE(callLine("verifier", "points\n1\n").err.find("-k"), std::string::npos);
  EXPECT_NE(callLine("verifier --complet -k 131", "points\n1\n").err.find("130"), std::string::npos);
  EXPECT_NE(callLine("verifier /").err.find("dossier"), std::string::npos);
  EXPECT_EQ(callLine("verifier").status, kWrongCall);
}

}  // namespace
}  // namespace zelvion::command
