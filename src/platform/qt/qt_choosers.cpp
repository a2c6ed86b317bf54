#include "platform/qt/qt_choosers.h"

#include <QFileDialog>
#include <QFont>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QStringList>

#include "platform/file_system.h"
#include "platform/font_size.h"
#include "platform/qt/window_in_front.h"

namespace tavrel {
namespace {

constexpr double kUsualSize = 11;  // points, where the settings hold none

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

// The font that is in use for a choice: where the machine lacks the family that is another one.
// The dialog knows whole points only, and a style only by the family's own name for it: without one
// it shows the first of its list, which may be oblique.
QFont ShownFont(const FontChoice& choice) {
  const QFont wanted = choice.Name.empty() ? QFont() : QFont(Text(choice.Name));
  const QString name = wanted.family();
  const QString family =
      QFontDatabase::families().contains(name) ? name : QFontInfo(wanted).family();
  QFont font(family);
  const double held = HeldFontSize(static_cast<double>(choice.Size));
  font.setPointSize(qRound(held > 0 ? held : kUsualSize));
  font.setStyleName(QFontInfo(font).styleName());
  return font;
}

}  // namespace

void RunFileDialog(FileChoice& choice,
                   const std::function<bool(const std::string& path)>& may_replace) {
  QFileDialog dialog(WindowInFront());
  Prepare(dialog, choice);
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const std::string path = dialog.selectedFiles().first().toStdString();
    const std::optional<std::string> existing = FindPath(path);
    if (choice.Mode == FileMode::kOpen || !existing || may_replace(*existing)) {
      choice.Take(existing.value_or(path));
      return;
    }
  }
  choice.Cancel();
}

// What was not changed stays as it is in the settings: the name of a font that this machine lacks,
// the half of a point.
bool RunFontDialog(FontChoice& choice, const QString& title) {
  const QFont shown = ShownFont(choice);
  bool chosen = false;
  const QFont next = QFontDialog::getFont(&chosen, shown, WindowInFront(), title);
  if (!chosen) {
    return false;
  }
  if (next.family() != shown.family()) {
    choice.Name = next.family().toStdString();
  }
  if (next.pointSize() != shown.pointSize()) {
    choice.Size = static_cast<float>(next.pointSize());
  }
  return true;
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
