#ifndef TAVREL_DIALOGS_FORMS_ALL_OPEN_H_
#define TAVREL_DIALOGS_FORMS_ALL_OPEN_H_

#include <QTimer>

#include "dialogs/forms/directory_view.h"
#include "dialogs/forms/file_grid.h"
#include "dialogs/open_file.h"
#include "widgets/modal_form.h"

class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace tavrel {

// ALL_OPEN: the files of a directory with their contents, and beside them the directories to
// look into. Enter opens the file, or lists the directory if the keyboard is in that part.
class AllOpen : public ModalForm {
  Q_OBJECT
 public:
  // `open_file` outlives the form.
  explicit AllOpen(OpenFile& open_file);

 protected:
  void UpdateWidgets() override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void MakeGrid();
  void MakePath();
  void MakeCommands();
  void Arrange();
  void FollowFocus();
  void ShowVerifying(bool is_verifying);

  OpenFile& open_file_;
  FileGrid* grid_ = nullptr;
  QGroupBox* fr_path_ = nullptr;
  DirectoryView* directories_ = nullptr;
  QLabel* no_files_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QPushButton* cmd_new_ = nullptr;
  QPushButton* cmd_copy_ = nullptr;
  QPushButton* cmd_verify_ = nullptr;
  QString verify_caption_;  // while files are verified
  QPushButton* cmd_back_ = nullptr;
  QPushButton* cmd_open_ = nullptr;
  QTimer first_display_;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_ALL_OPEN_H_
