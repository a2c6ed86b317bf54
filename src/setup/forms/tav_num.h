#ifndef TAVREL_SETUP_FORMS_TAV_NUM_H_
#define TAVREL_SETUP_FORMS_TAV_NUM_H_

#include <QComboBox>
#include <QLabel>
#include <array>

#include "setup/numbering.h"
#include "state/stepped_screen.h"
#include "widgets/modal_form.h"

class QPushButton;

namespace tavrel {

// TavNum, the form in which an instrument gets its number. The cycle gives it its turns while it
// lives.
class TavNum : public ModalForm {
  Q_OBJECT
 public:
  // Both outlive the form; `numbering` is open when Run is called.
  TavNum(Numbering& numbering, SteppedScreens& stepped);

 protected:
  void UpdateWidgets() override;

 private:
  void Arrange();
  [[nodiscard]] QLabel* MakeLine(const char* name);

  Numbering& numbering_;
  QComboBox* cbo_tav_no_ = nullptr;
  ByInet<QPushButton*> cmd_tav_no_{};  // by number 1..6
  QWidget* com_icon_ = nullptr;
  QLabel* lbl_state_ = nullptr;
  QLabel* lbl_buffer_ = nullptr;
  QLabel* lbl_note_ = nullptr;
  SteppedScreens::Turn turn_;
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_FORMS_TAV_NUM_H_
