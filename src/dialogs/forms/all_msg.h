#ifndef TAVREL_DIALOGS_FORMS_ALL_MSG_H_
#define TAVREL_DIALOGS_FORMS_ALL_MSG_H_

#include <array>

#include "dialogs/message_box_logic.h"
#include "widgets/modal_form.h"

class QLabel;
class QPushButton;

namespace tavrel {

// ALL_MSG: up to three lines beside a picture, and one or two buttons.
class AllMsg : public ModalForm {
  Q_OBJECT
 public:
  // `message` outlives the form.
  explicit AllMsg(MessageBoxLogic& message);

 protected:
  void UpdateWidgets() override;

 private:
  void MakePictures();
  void MakeLines();
  void MakeButtons();
  void Arrange();

  MessageBoxLogic& message_;
  std::array<QLabel*, 3> msg_{};
  QLabel* img_attention_ = nullptr;
  QLabel* img_question_ = nullptr;
  QPushButton* cmd_ok_ = nullptr;
  QPushButton* cmd_cancel_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_ALL_MSG_H_
