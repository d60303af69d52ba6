#include <gtest/gtest.h>

#include "command/call.h"

namespace zelvion::command {
namespace {

using testing::call;
using testing::Call;
using testing::callLine;
using testing::callUntil;

TEST(FixedPoints, AreListedInEachFormat) {
  EXPECT_EQ(callLine("points-fixes -k 3..4").out,
            "k = 3\u00A0:\n  0\n  1\n  153\n  370\n  371\n  407\n"
            "  6 points fixes, liste complète\u00A0: aucun n’a plus de 4 chiffres.\n"
            "k = 4\u00A0:\n  0\n  1\n  1634\n  8208\n  9474\n"
            "  5 points fixes, liste complète\u00A0: aucun n’a plus de 5 chiffres.\n"
            "Puissances 3 à 4\u00A0: 7 en tout, sans 0 et 1 qui le sont toujours.\n");
  EXPECT_EQ(callLine("points-fixes -k 2 --csv").out, "k,chiffres,point_fixe\n2,1,0\n2,1,1\n");
  EXPECT_EQ(callLine("narcissiques -k 39 --json").out,
            "{\"ordre\":39,\"chiffres\":39,\"nombre\":\"115132219018763992565095597973971522400\"}\n"
            "{\"ordre\":39,\"chiffres\":39,\"nombre\":\"115132219018763992565095597973971522401\"}\n");
  EXPECT_EQ(callLine("narcissiques 2..3").out,
            "Ordre 2\u00A0:\n  aucun\nOrdre 3\u00A0:\n  153\n  370\n  371\n  407\n"
            "Ordres 2 à 3\u00A0: 4 nombres narcissiques en tout.\n");
}

TEST(FixedPoints, OfOrdersAbove60AreNoneAndItSaysWhy) {
  for (const char* line : {"narcissiques 61", "narcissiques 1000000", "narcissiques 61..999"}) {
    const Call none = callLine(line);
    EXPECT_EQ(none.status, kSuccess);
    EXPECT_TRUE(none.out.starts_with("À partir de l’ordre 61\u00A0: aucun, car 61 · 9^61 < 10^60")) << line;
  }
  const Call csv = callLine("narcissiques 61 --csv");
  EXPECT_EQ(csv.out, "ordre,chiffres,nombre\n");
  EXPECT_NE(csv.err.find("aucun"), std::string::npos);
}

TEST(FixedPoints, FoundBeforeAStopAreThere) {
  const Call stopped = callUntil({"points-fixes", "-k", "17..61"}, "21897142587612075");
  EXPECT_EQ(stopped.status, kInterrupted);
  EXPECT_EQ(stopped.out,
            "k = 17\u00A0:\n  0\n  1\n  233411150132317\n  21897142587612075\n  35641594208964132\n"
            "  35875699062250035\n"
            "  6 points fixes\u00A0; interrompu, la liste est complète jusqu’à 17 chiffres.\n");
}

}  // namespace
}  // namespace zelvion::command
