#ifndef TAVREL_WORK_FORMS_TAV_WAIT_H_
#define TAVREL_WORK_FORMS_TAV_WAIT_H_

#include "widgets/modal_form.h"
#include "work/wait_bar.h"

class QProgressBar;

namespace tavrel {

// TavWait, the form of the wait bar. The user cannot close it.
class TavWait : public ModalForm {
  Q_OBJECT
 public:
  // `bar` outlives the form and is open when Run is called.
  explicit TavWait(WaitBar& bar);

  // After a step of the bar; closes the form behind the last.
  void ShowStep() { AfterEvent(); }

 protected:
  void UpdateWidgets() override;

 private:
  WaitBar& bar_;
  QProgressBar* prg_wait_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_WAIT_H_
