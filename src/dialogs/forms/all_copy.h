#ifndef TAVREL_DIALOGS_FORMS_ALL_COPY_H_
#define TAVREL_DIALOGS_FORMS_ALL_COPY_H_

#include "dialogs/copy_files.h"
#include "dialogs/forms/directory_view.h"
#include "widgets/modal_form.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace tavrel {

// ALL_COPY: the directory that the selected files are copied to.
class AllCopy : public ModalForm {
  Q_OBJECT
 public:
  // `copy_files` outlives the form.
  explicit AllCopy(CopyFiles& copy_files);

 protected:
  void UpdateWidgets() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MakeLists();
  void MakeFoot();
  void Arrange();
  void ShowPath();

  CopyFiles& copy_files_;
  QLabel* lb_path_ = nullptr;
  DirectoryView* directories_ = nullptr;
  QLabel* no_files_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QPushButton* cmd_copy_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_ALL_COPY_H_
