#ifndef TAVREL_APP_PROGRAM_SCREENS_H_
#define TAVREL_APP_PROGRAM_SCREENS_H_

#include <functional>
#include <memory>

#include "app/program_logic.h"
#include "platform/qt/qt_events.h"
#include "platform/qt/qt_screens.h"

namespace tavrel {

class ModalForm;
class TavGraph;
class TavWait;
class TavWork;

// The modal forms joined to the logic of their screens: a form is made when its number is shown
// and goes when its screen has closed; worksheet and graph are hidden instead and shown again.
class ProgramScreens {
 public:
  // All outlive this. Adds the forms to `screens`. While one that waits for the user is in front,
  // `events` shows the normal pointer, whatever the rule has set that opens it.
  ProgramScreens(ProgramLogic& logic, QtScreens& screens, QtEvents& events);
  ~ProgramScreens();
  ProgramScreens(const ProgramScreens&) = delete;
  ProgramScreens& operator=(const ProgramScreens&) = delete;

  // What these forms and the logic beneath them do on the ticks of the cycle.
  [[nodiscard]] MainCycle::TickHandlers Handlers();

  // The worksheet, null before it was shown for the first time.
  [[nodiscard]] const TavWork* WorkForm() const { return work_form_.get(); }

 private:
  void Run(ModalForm& form);
  template <typename Form, typename Screen>
  void RunForm(Screen& screen);
  template <typename Form, typename Screen>
  void AddForm(View view, Screen& screen);
  template <typename Form, typename Screen>
  void AddFormToOpen(View view, Screen& screen);
  template <typename Form, typename Screen>
  void AddServiceForm(Screen& screen);
  void AddServiceForms();
  void AddFileForms();
  void ShowNumbering();
  void AddChannels();
  void ShowWorksheet();
  void ShowGraph();
  void ShowWaitBar();
  void RefreshWorksheet();
  void AdvanceWaitBar();

  ProgramLogic& logic_;
  QtScreens& screens_;
  QtEvents& events_;
  std::unique_ptr<TavWork> work_form_;    // a child of the main form: goes before it
  std::unique_ptr<TavGraph> graph_form_;  // a child of work_form_: goes before that
  TavWait* wait_form_ = nullptr;          // while it is shown
};

}  // namespace tavrel

#endif  // TAVREL_APP_PROGRAM_SCREENS_H_
