#include "widgets/open_page.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace zelvion {

bool openPage(const std::string& address) {
  QProcess browser;
  browser.setProgram("xdg-open");
  browser.setArguments({QString::fromStdString(address)});
  browser.setStandardInputFile(QProcess::nullDevice());
  browser.setStandardOutputFile(QProcess::nullDevice());
  browser.setStandardErrorFile(QProcess::nullDevice());
  return browser.startDetached();
}

std::string manualAddress() {
  const QDir place(QCoreApplication::applicationDirPath());
  for (const char* folder : {"docs", "../../docs", "/usr/share/doc/zelvion"}) {
    const QFileInfo manual(place.filePath(folder), "mode-d-emploi.html");
    if (manual.exists()) return QUrl::fromLocalFile(manual.canonicalFilePath()).toEncoded().toStdString();
  }
  return {};
}

}  // namespace zelvion
