#ifndef TAVREL_COMMON_FORMS_ALL_MSG_H_
#define TAVREL_COMMON_FORMS_ALL_MSG_H_

#include <array>

#include "common/forms/modal_form.h"
#include "common/message_form.h"

class QLabel;
class QPushButton;

namespace tavrel {

// ALL_MSG: up to three lines beside a picture, and one or two buttons.
class AllMsg : public ModalForm {
  Q_OBJECT
 public:
  // `message` outlives the form.
  explicit AllMsg(MessageForm& message);

 protected:
  void Show() override;
  [[nodiscard]] bool IsOpen() const override { return message_.IsOpen(); }
  void Leave() override { message_.CmdCancel_Click(); }

 private:
  void MakePictures();
  void MakeLines();
  void MakeButtons();
  void Arrange();

  MessageForm& message_;
  std::array<QLabel*, 3> msg_{};
  QLabel* img_attention_ = nullptr;
  QLabel* img_question_ = nullptr;
  QPushButton* cmd_ok_ = nullptr;
  QPushButton* cmd_cancel_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_COMMON_FORMS_ALL_MSG_H_
