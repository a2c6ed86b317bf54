#ifndef TAVREL_WORK_WAIT_BAR_H_
#define TAVREL_WORK_WAIT_BAR_H_

#include <optional>

#include "platform/clock.h"
#include "platform/events.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "state/user_language.h"

namespace tavrel {

// TavWait, the bar of ten seconds that is shown while an instrument takes in new parameters.
// Nothing but the measuring cycle closes it.
class WaitBar : public ModalScreen {
 public:
  static constexpr int kFull = 100;

  // All outlive this.
  WaitBar(RunState& state, Events& events, const Clock& clock)
      : ModalScreen(state, View::kTavWait), state_(state), events_(events), clock_(clock) {}

  // Before the form is shown: the bar is empty and the pointer waits.
  void Open();

  // A step of the cycle, once a second: the bar rises by a tenth, and a full one goes. So it is
  // full after nine seconds and is seen full for one.
  void Advance();

  [[nodiscard]] Language TextLanguage() const { return UserLanguage(state_); }
  [[nodiscard]] int prgWait() const { return value_; }  // 0..kFull

  // The user cannot close it.
  void Quit() override {}

 private:
  void Unload();

  RunState& state_;
  Events& events_;
  const Clock& clock_;
  int value_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_WAIT_BAR_H_
