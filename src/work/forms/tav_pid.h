#ifndef TAVREL_WORK_FORMS_TAV_PID_H_
#define TAVREL_WORK_FORMS_TAV_PID_H_

#include <QComboBox>

#include "widgets/modal_form.h"
#include "widgets/number_edit.h"
#include "work/pid_parameters.h"

class QGridLayout;
class QPushButton;

namespace tavrel {

// TavPid, the form of the controller's PID parameters.
class TavPid : public ModalForm {
  Q_OBJECT
 public:
  // `parameters` outlives the form.
  explicit TavPid(PidParameters& parameters);

 protected:
  void UpdateWidgets() override;

 private:
  void MakeList(QGridLayout& grid);
  void AddBox(QGridLayout& grid, int index);
  void PressOk();

  PidParameters& parameters_;
  QComboBox* cbo_ = nullptr;
  ByPidBox<NumberEdit*> boxes_{};
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_PID_H_
