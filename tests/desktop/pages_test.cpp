#include "desktop/window_test.h"

namespace zelvion::testing {
namespace {

const QString kSite = "https://tolque.example";

TEST_F(WindowTest, LinksOpenTheirPages) {
  QTemporaryDir folder;
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", folder.path().toUtf8() + ":" + path);
  QFile browser(folder.filePath("xdg-open")), log(folder.filePath("log"));
  EXPECT_TRUE(browser.open(QIODevice::WriteOnly) &&
              browser.setPermissions(QFile::ExeOwner | QFile::ReadOwner));
  browser.write("#!/bin/sh\necho \"$#:$*\" >> '" + log.fileName().toUtf8() + "'\n");
  browser.close();
  QString wanted;
  const auto expectPage = [&](const QString& page) {
    wanted += "1:" + page + "\n";
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.size() >= wanted.size(); })) << page.toStdString();
  };
  press("Command16");
  expectPage(kSite + "/mathfon/velmoire.php");
  press("Command17");
  expectPage(kSite + "/index.php");
  press("Command18");
  expectPage(kSite + "/systdyn.php");
  const auto items = window->findChild<QMenu*>("mnuAide")->actions();
  items[2]->trigger();
  QCoreApplication::processEvents();
  expectPage(kSite + "/zelvion.php");
  expect([&](QWidget& dialog) {
    click(part(dialog, "Command1"));
    expectPage(kSite + "/mathfon/velmoire.php");
    click(part(dialog, "Command2"));
    expectPage(kSite + "/systdyn.php");
    key(Qt::Key_Escape);
  });
  items[0]->trigger();
  QCoreApplication::processEvents();
  const QString manual = fileOf("docs/mode-d-emploi.html");
  QDir().mkdir(fileOf("docs"));
  EXPECT_TRUE(QFile(manual).open(QIODevice::WriteOnly));
  key(Qt::Key_F1);
  expectPage(QUrl::fromLocalFile(manual).toEncoded());
  EXPECT_TRUE(log.open(QIODevice::ReadOnly));
  EXPECT_EQ(QString(log.readAll()), wanted);

  qputenv("PATH", folder.filePath("absent").toUtf8());
  expectBox("zelvion", "*" + kSite + "/index.php*xdg-open*", [this](QWidget& box) {
    at<QPushButton>("Command10").click();  // as assistive tools can, but not now
    kReturn(box);
  });
  press("Command17");
  expectNoMore();
  EXPECT_EQ(textOf(at("entier")), "789");
  qputenv("PATH", path);
}

}  // namespace
}  // namespace zelvion::testing
