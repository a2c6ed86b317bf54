#ifndef TAVREL_SERVICE_FORMS_SP_TAVHS_H_
#define TAVREL_SERVICE_FORMS_SP_TAVHS_H_

#include <QGroupBox>
#include <QRadioButton>

#include "service/forms/service_form.h"
#include "service/output_test.h"
#include "widgets/lamp.h"

namespace tavrel {

// SP_TavHS, the form in which the outputs of an instrument are switched by hand.
class SpTavHs : public ServiceForm {
  Q_OBJECT
 public:
  // Both outlive the form; `test` is open when Run is called.
  SpTavHs(OutputTest& test, SteppedScreens& stepped);

 protected:
  void UpdateWidgets() override;

 private:
  struct Channel {
    QGroupBox* frame = nullptr;
    Numbered<QRadioButton*, 0, kOutputOptions - 1> options{};
    Lamp* heater = nullptr;
    Lamp* safety = nullptr;
  };

  [[nodiscard]] QWidget* MakeChannel(int ctrl);
  [[nodiscard]] Lamp* MakeLamp(int ctrl, OutputOption option);
  [[nodiscard]] QWidget* MakeWatchdog();
  [[nodiscard]] QWidget* MakeNotes();

  OutputTest& test_;
  ByController<Channel> channels_{};
  QLabel* lb_wait_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_SP_TAVHS_H_
