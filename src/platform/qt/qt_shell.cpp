#include "platform/qt/qt_shell.h"

#include <QDesktopServices>
#include <QUrl>

namespace tavrel {

void QtShell::OpenDocument(const std::string& path) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

}  // namespace tavrel
