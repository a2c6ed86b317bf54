#include "platform/qt/qt_choosers.h"

#include <QFileDialog>
#include <QFont>
#include <QFontDialog>
#include <QStringList>

#include "platform/file_system.h"
#include "platform/qt/window_in_front.h"

namespace tavrel {
namespace {

constexpr float kUsualSize = 11;  // points, where the settings hold none

QString Text(const std::string& utf8) {
  return QString::fromStdString(utf8);
}

void Prepare(QFileDialog& dialog, const FileChoice& choice) {
  const bool saves = choice.Mode == FileMode::kSave;
  dialog.setObjectName("FileDialog");
  const QString usual_title = saves ? "Save As" : "Open";
  dialog.setWindowTitle(choice.Title.empty() ? usual_title : Text(choice.Title));
  dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked without regard to case instead
  dialog.setOption(QFileDialog::HideNameFilterDetails, false);
  dialog.setDefaultSuffix(Text(choice.DefaultExtension));
  if (!choice.Filter.empty()) {
    dialog.setNameFilters(QtFilter(choice.Filter).split(";;"));
  }
  if (DirectoryExists(choice.Directory)) {
    dialog.setDirectory(Text(choice.Directory));
  }
  if (!choice.FileName.empty()) {
    dialog.selectFile(Text(choice.FileName));
  }
}

// The path as the disk spells it, if a file of that name in any case is there.
std::optional<std::string> Existing(const std::string& path) {
  FileChoice split;
  split.Take(path);
  return FindFile(StripSeparator(split.Directory), split.FileName);
}

}  // namespace

void RunFileDialog(FileChoice& choice,
                   const std::function<bool(const std::string& path)>& may_replace) {
  QFileDialog dialog(WindowInFront());
  Prepare(dialog, choice);
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const std::string path = dialog.selectedFiles().first().toStdString();
    const std::optional<std::string> existing = Existing(path);
    if (choice.Mode == FileMode::kOpen || !existing || may_replace(*existing)) {
      choice.Take(existing.value_or(path));
      return;
    }
  }
  choice.Cancel();
}

bool RunFontDialog(FontChoice& choice) {
  QFont font(Text(choice.Name));
  font.setPointSizeF(choice.Size > 0 ? choice.Size : kUsualSize);
  bool chosen = false;
  const QFont next = QFontDialog::getFont(&chosen, font, WindowInFront(), "Font");
  if (chosen) {
    choice.Name = next.family().toStdString();
    choice.Size = static_cast<float>(next.pointSizeF());
  }
  return chosen;
}

QString QtFilter(const std::string& filter) {
  QStringList filters;
  for (const FileKind& kind : FileKinds(filter)) {
    QStringList patterns;
    for (const std::string& pattern : kind.Patterns) {
      patterns << Text(pattern);
    }
    filters << Text(kind.Text) + " (" + patterns.join(' ') + ")";
  }
  return filters.join(";;");
}

}  // namespace tavrel
