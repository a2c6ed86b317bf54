#ifndef TAVREL_SERVICE_FORMS_ALL_TERM_H_
#define TAVREL_SERVICE_FORMS_ALL_TERM_H_

#include <QCheckBox>
#include <QLabel>
#include <QTimer>

#include "service/forms/terminal_text.h"
#include "service/terminal.h"
#include "widgets/modal_form.h"

namespace tavrel {

// ALL_TERM, the terminal on the line. A timer of its own takes what comes, since the cycle stands
// still beneath it.
class AllTerm : public ModalForm {
  Q_OBJECT
 public:
  // `terminal` outlives the form and is open when Run is called.
  explicit AllTerm(Terminal& terminal);

 protected:
  void UpdateWidgets() override;

 private:
  Terminal& terminal_;
  TerminalText* term_;
  QLabel* label1_;
  QCheckBox* chk_echo_;
  QLabel* lbl_state_;
  QTimer poll_;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_ALL_TERM_H_
