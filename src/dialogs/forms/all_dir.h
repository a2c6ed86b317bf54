#ifndef TAVREL_DIALOGS_FORMS_ALL_DIR_H_
#define TAVREL_DIALOGS_FORMS_ALL_DIR_H_

#include "dialogs/choose_directory.h"
#include "dialogs/forms/directory_view.h"
#include "widgets/modal_form.h"

class QLabel;
class QPushButton;

namespace tavrel {

// ALL_DIR: the lists of drives and directories, and the button that takes the selected one.
class AllDir : public ModalForm {
  Q_OBJECT
 public:
  // `choice` outlives the form.
  explicit AllDir(DirectoryChoice& choice);

 protected:
  void UpdateWidgets() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ShowPath();

  DirectoryChoice& choice_;
  DirectoryView* view_ = nullptr;
  QLabel* path_ = nullptr;  // the whole path of the selected directory
  QPushButton* cmd_ok_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_ALL_DIR_H_
