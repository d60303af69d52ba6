#include <gtest/gtest.h>

#include <QLibraryInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSettings>
#include <QTemporaryDir>

namespace zelvion::testing {
namespace {

/// The program, which must end or speak within some seconds.
class Program : public QProcess {
 public:
  Program(const QString& platform, const QStringList& arguments, const QString& program = ZELVION_PROGRAM,
          const QString& preloaded = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!preloaded.isEmpty()) environment.insert("LD_PRELOAD", preloaded);
    environment.insert("QT_QPA_PLATFORM", platform);
    environment.insert("DISPLAY", ":4789");
    setProcessEnvironment(environment);
    start(program, arguments);
  }
  ~Program() override {
    kill();
    waitForFinished();
  }
};

TEST(Application, SaysThatItsScreenIsOutOfReach) {
  Program program("xcb", {});
  ASSERT_TRUE(program.waitForFinished());
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 1);
  EXPECT_EQ(
      QString(program.readAllStandardError()).trimmed(),
      "zelvion ne peut pas ouvrir sa fenêtre\u00a0: l’écran «\u00a0:4789\u00a0» (DISPLAY) ne répond pas.");
}

TEST(Application, CarriesItsIconAndTheToolkitsFrenchTexts) {
  const QTemporaryDir folder;
  const QString copy = folder.filePath("zelvion");
  ASSERT_TRUE(QFile::copy(ZELVION_PROGRAM, copy));
  QSettings hidden(folder.filePath("qt.conf"), QSettings::IniFormat);
  hidden.setValue("Paths/Prefix", "/");
  hidden.setValue("Paths/Plugins", QLibraryInfo::path(QLibraryInfo::PluginsPath));
  hidden.setValue("Paths/Translations", folder.filePath("absent"));
  hidden.sync();
  Program program("offscreen", {}, copy, ZELVION_PROBE);
  ASSERT_TRUE(program.waitForFinished());
  EXPECT_EQ(QString(program.readAllStandardOutput()), "128 16 256 32 48 64 &Annuler\tCtrl+Z\n");
}

TEST(Application, HasNoArguments) {
  Program program("offscreen", {"-platform", "xcb"});
  program.setReadChannel(QProcess::StandardError);
  ASSERT_TRUE(program.waitForReadyRead());
  EXPECT_TRUE(QString(program.readAllStandardError()).contains("«\u00a0-platform\u00a0»"));
  EXPECT_FALSE(program.waitForFinished(500)) << "the window is open all the same";
}

}  // namespace
}  // namespace zelvion::testing
