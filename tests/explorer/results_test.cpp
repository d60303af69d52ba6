#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QProcess>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>
#include <new>
#include <stdexcept>

#include "explorer/computation.h"
#include "explorer/cycle_table.h"
#include "explorer/export.h"
#include "explorer/path.h"
#include "explorer/pictures.h"

namespace zelvion::testing {
namespace {

QByteArray velmoire(const QStringList& words) {
  QProcess program;
  program.start(ZELVION_VELMOIRE, words);
  EXPECT_TRUE(program.waitForFinished(120'000));
  return program.readAllStandardOutput();
}

std::shared_ptr<const Power> counted(std::int32_t k) {
  Progress progress;
  return countedPower(*listedPower(k, progress), progress);
}

TEST(CycleTable, IsWhatTheCommandLineSays) {
  CycleTable table;
  const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::Fatal);
  for (int k = 1; k <= 12; ++k) {
    const auto power = counted(k);
    table.setPower(power);
    const QByteArray csv = velmoire({"cycles", "-k", QString::number(k), "--bassins", "--csv"});
    EXPECT_EQ(listBytes(*power), csv);
    const QList<QByteArray> lines = csv.trimmed().split('\n');
    ASSERT_EQ(table.rowCount(), lines.size() - 1);
    for (int row = 0; row < table.rowCount(); ++row) {
      const QList<QByteArray> fields = lines[row + 1].split(',');
      const std::array<std::pair<int, int>, 6> columns = {{{CycleTable::kRank, 1},
                                                           {CycleTable::kOrder, 2},
                                                           {CycleTable::kLeast, 3},
                                                           {CycleTable::kGreatest, 4},
                                                           {CycleTable::kCount, 6},
                                                           {CycleTable::kFarthest, 8}}};
      for (const auto& [column, field] : columns) {
        QString shown = table.index(row, column).data().toString();
        EXPECT_EQ(shown.remove(u'\u202F'), QString(fields[field])) << k << " " << row << " " << column;
      }
    }
  }
  EXPECT_EQ(table.index(0, CycleTable::kCount).data(CycleTable::kNumberRole), "1");
  table.setPower(nullptr);
  EXPECT_EQ(table.rowCount(), 0);
}

TEST(CycleTable, SortsByTheNumbers) {
  CycleTable table;
  table.setPower(counted(7));
  QSortFilterProxyModel sorted;
  sorted.setSourceModel(&table);
  sorted.setSortRole(CycleTable::kSortRole);
  for (const int column : {CycleTable::kLeast, CycleTable::kShare, CycleTable::kLongest}) {
    sorted.sort(column, Qt::DescendingOrder);
    const auto number = [&](int row) {
      return Decimal::parse(sorted.index(row, column).data(CycleTable::kSortRole).toString().toStdString());
    };
    for (int row = 1; row < sorted.rowCount(); ++row) EXPECT_GE(number(row - 1), number(row));
  }
}

TEST(Path, IsWhatTheCommandLineSays) {
  Progress progress;
  const std::vector<std::string> numbers = {
      "0", "789", "153", "64", std::string(40, '9'), std::string(32'766, '7')};
  for (const int k : {1, 3, 5, 20, 60, 100}) {
    for (const std::string& p : numbers) {
      if (k > 5 && p.size() > 100) continue;  // the command line writes p with each step
      const auto path = pathOf(k, p, progress);
      QString csv = "k,nombre,pas,itere\n";
      for (std::size_t step = 0; step < path->iterates.size(); ++step) {
        csv +=
            QString("%1,%2,%3,%4\n").arg(k).arg(p.c_str()).arg(step).arg(path->iterates[step].text().c_str());
      }
      EXPECT_TRUE(csv == velmoire({"iteres", "-k", QString::number(k), "-n", "1000000", "--csv", p.c_str()}))
          << k << " " << p.substr(0, 50);
      EXPECT_EQ(path->linear.path.size(), path->iterates.size());
    }
  }
  EXPECT_EQ(pathOf(3, "789", progress)->sentence(false), "789\u00A0: 4 pas, puis le point fixe 153");
  EXPECT_EQ(pathOf(3, "136", progress)->sentence(false),
            "136\u00A0: déjà sur le cycle d’ordre 2 qui passe par 136");
  progress.stop = true;
  EXPECT_EQ(pathOf(60, "789", progress), nullptr);
}

TEST(MapPicture, NamesEachMultisetByTheNumbersThatItHas) {
  const auto picture = mapPicture(counted(3), nullptr);
  QStringList names;
  for (int mark = 0; mark < picture->marks(); ++mark) names += picture->nameOf(mark);
  EXPECT_EQ(names.size(), 715);
  for (const char* name :
       {"Les chiffres 0000\u00A0: 0, le point fixe",
        "Les chiffres 9870\u00A0: 24 nombres, de 789 à 9\u202F870, à 4 pas du point fixe 153",
        "Les chiffres 5310\u00A0: 24 nombres, de 135 à 5\u202F310, dont 153, le point fixe\u00A0; "
        "les autres à 1 pas"}) {
    EXPECT_TRUE(names.contains(name)) << name;
  }
}

TEST(KeptPowers, StayWithinTheirBoundAndLoseTheOldest) {
  const auto two = counted(2), three = counted(3), four = counted(4);
  KeptPowers kept(two->bytes() + four->bytes() + three->bytes() - 1);
  for (const auto& power : {three, two, four}) kept.keep(power);
  EXPECT_EQ(kept.find(3), nullptr);
  EXPECT_EQ(kept.find(2), two);
  EXPECT_EQ(kept.find(4), four);
}

TEST(Computation, DeliversTheLatestAloneAndSaysWhatFailed) {
  Computation computation;
  QSignalSpy failures(&computation, &Computation::failed);
  QString delivered;
  const auto endless = [&](Progress& progress) -> Computation::Delivery {
    while (!progress.stop) std::this_thread::yield();
    return [&] { delivered += "late "; };
  };
  const auto quick = [&](const char* name) {
    return
        [&delivered, name](Progress&) -> Computation::Delivery { return [&, name] { delivered += name; }; };
  };
  computation.start(endless);
  computation.start(quick("dropped "));
  computation.start(quick("wanted"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !computation.isRunning(); }));
  EXPECT_EQ(delivered, "wanted");
  computation.start([](Progress&) -> Computation::Delivery { throw std::bad_alloc(); });
  EXPECT_TRUE(QTest::qWaitFor([&] { return failures.count() == 1; }));
  EXPECT_TRUE(failures[0][0].toString().startsWith("La mémoire ne suffit pas"));
  computation.start(endless);
  computation.stop();
  EXPECT_FALSE(computation.isRunning());
  computation.start(endless);  // the end of the object ends it
}

}  // namespace
}  // namespace zelvion::testing
