#ifndef TAVREL_WORK_FORMS_TAV_CTRL_H_
#define TAVREL_WORK_FORMS_TAV_CTRL_H_

#include <array>

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
  void Show() override;
  [[nodiscard]] bool IsOpen() const override { return settings_.IsOpen(); }
  void Leave() override { settings_.Quit(); }

 private:
  void AddBox(QGridLayout& grid, int index, const QString& caption);
  QPushButton* MakeButton(const char* name, const char* caption,
                          void (ControllerSettings::*press)());
  void GoToRefused();

  ControllerSettings& settings_;
  std::array<NumberEdit*, kControllerBoxes> boxes_{};
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_CTRL_H_
