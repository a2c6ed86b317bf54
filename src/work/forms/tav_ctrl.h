#ifndef TAVREL_WORK_FORMS_TAV_CTRL_H_
#define TAVREL_WORK_FORMS_TAV_CTRL_H_

#include "widgets/modal_form.h"
#include "widgets/number_edit.h"
#include "work/controller_settings.h"

class QGridLayout;
class QPushButton;

namespace tavrel {

// TavCtrl, the form of the controller's settings.
class TavCtrl : public ModalForm {
  Q_OBJECT
 public:
  // `settings` outlives the form.
  explicit TavCtrl(ControllerSettings& settings);

 protected:
  void UpdateWidgets() override;

 private:
  void AddBox(QGridLayout& grid, int index, const QString& caption);
  void GoToRefused();

  ControllerSettings& settings_;
  ByControllerBox<NumberEdit*> boxes_{};
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_CTRL_H_
