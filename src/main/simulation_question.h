#ifndef TAVREL_MAIN_SIMULATION_QUESTION_H_
#define TAVREL_MAIN_SIMULATION_QUESTION_H_

#include "link/link.h"
#include "platform/dialogs.h"
#include "state/run_state.h"

namespace tavrel {

// Asks, once for each time that the line becomes a simulated one, whether simulated values may
// follow the rows of recordings that stand still until that is answered. After a "no" the settings
// dialog asks again.
class SimulationQuestion {
 public:
  // All outlive this, and what is asked.
  SimulationQuestion(RunState& state, const Link& link, Dialogs& dialogs)
      : state_(state), link_(link), dialogs_(dialogs) {}

  // Called behind each tick; asks without stopping the cycle, and only on the main sheet.
  void AskIfDue();

 private:
  [[nodiscard]] bool AnyStandsStill() const;

  RunState& state_;
  const Link& link_;
  Dialogs& dialogs_;
  bool was_asked_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_SIMULATION_QUESTION_H_
