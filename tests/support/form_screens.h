#ifndef TAVREL_TESTS_SUPPORT_FORM_SCREENS_H_
#define TAVREL_TESTS_SUPPORT_FORM_SCREENS_H_

#include "app/program_screens.h"

namespace tavrel {

// The real forms of a program on a bench, joined to its logic as the program joins them.
class FormScreens {
 public:
  // `logic` outlives this.
  explicit FormScreens(ProgramLogic& logic) : forms_(logic, screens_, events_) {}

  // Shows a form and returns when it has closed.
  void Run(View view) { screens_.Show(view); }
  [[nodiscard]] bool Has(View view) const { return screens_.Has(view); }

  [[nodiscard]] MainCycle::TickHandlers Handlers() { return forms_.Handlers(); }
  [[nodiscard]] const TavWork* WorkForm() const { return forms_.WorkForm(); }

 private:
  QtEvents events_;
  QtScreens screens_;
  ProgramScreens forms_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FORM_SCREENS_H_
