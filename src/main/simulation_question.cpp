#include "main/simulation_question.h"

#include "files/simulated_rows.h"

namespace tavrel {

void SimulationQuestion::AskIfDue() {
  if (!link_.Simulated) {
    was_asked_ = false;
    return;
  }
  if (was_asked_ || state_.ActiveView != View::kMainSheet || !AnyStandsStill()) {
    return;
  }
  was_asked_ = true;
  dialogs_.AskBeside(ConsentQuestion(state_, link_), [this](bool yes) {
    // The answer may come when an instrument is on the line again.
    if (yes && link_.Simulated) {
      state_.SimulatedRowsAllowed = true;
    }
  });
}

bool SimulationQuestion::AnyStandsStill() const {
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (StandsStillInSimulation(state_, link_, slot)) {
      return true;
    }
  }
  return false;
}

}  // namespace tavrel
