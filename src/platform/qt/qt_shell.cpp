#include "platform/qt/qt_shell.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <memory>

namespace tavrel {
namespace {

// The opener of the desktop ends with an error where no program takes the document. Some openers
// stay until the document is closed: nothing waits for them, and they outlive this program.
void RunOpener(const QString& opener, const QString& path, const std::function<void()>& failed) {
  auto* process = new QProcess;
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  QObject::connect(process, &QProcess::finished, qApp,
                   [process, failed](int code, QProcess::ExitStatus status) {
                     process->deleteLater();
                     if (code != 0 || status != QProcess::NormalExit) {
                       failed();
                     }
                   });
  QObject::connect(process, &QProcess::errorOccurred, qApp,
                   [process, failed](QProcess::ProcessError error) {
                     if (error == QProcess::FailedToStart) {
                       process->deleteLater();
                       failed();
                     }
                   });
  process->start(opener, {path});
}

}  // namespace

void QtShell::OpenDocument(const std::string& path, std::function<void()> failed) {
  const QString document = QString::fromStdString(path);
  const QString opener = QStandardPaths::findExecutable("xdg-open");
  if (!opener.isEmpty()) {
    RunOpener(opener, document, failed);
  } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(document))) {
    failed();
  }
}

}  // namespace tavrel
