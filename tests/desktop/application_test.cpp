#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>

namespace zelvion::testing {
namespace {

/// The program, which must end or speak within some seconds.
class Program : public QProcess {
 public:
  Program(const QString& platform, const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", platform);
    environment.insert("DISPLAY", ":4789");
    setProcessEnvironment(environment);
    start(ZELVION_PROGRAM, arguments);
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

TEST(Application, HasNoArguments) {
  Program program("offscreen", {"-platform", "xcb"});
  program.setReadChannel(QProcess::StandardError);
  ASSERT_TRUE(program.waitForReadyRead());
  EXPECT_TRUE(QString(program.readAllStandardError()).contains("«\u00a0-platform\u00a0»"));
  EXPECT_FALSE(program.waitForFinished(500)) << "the window is open all the same";
}

}  // namespace
}  // namespace zelvion::testing
