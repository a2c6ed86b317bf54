#ifndef TAVREL_SERVICE_FORMS_ALL_WDOG_H_
#define TAVREL_SERVICE_FORMS_ALL_WDOG_H_

#include "service/forms/service_form.h"
#include "service/watchdog_test.h"

class QGridLayout;
class QPushButton;

namespace tavrel {

// All_Wdog, the form of the watchdog test.
class AllWdog : public ServiceForm {
  Q_OBJECT
 public:
  // Both outlive the form; `test` is open when Run is called.
  AllWdog(WatchdogTest& test, SteppedScreens& stepped);

 protected:
  void UpdateWidgets() override;

 private:
  [[nodiscard]] QGridLayout* MakeLimits();

  WatchdogTest& test_;
  QLabel* lbl_delay_ = nullptr;
  QLabel* lbl_error_ = nullptr;
  QPushButton* cmd_again_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_ALL_WDOG_H_
