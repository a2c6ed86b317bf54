#ifndef TAVREL_WORK_PROGRAM_RUNNER_H_
#define TAVREL_WORK_PROGRAM_RUNNER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "base/language.h"

#include "files/recording_engine.h"
#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "state/run_state.h"
#include "work/program.h"

namespace tavrel {

// How the start of a program ended.
enum class ProgramStart {
  kStarted,      // ProgRunning is true; step 1 goes out on the next free tick
  kRunsAlready,  // it beeped: the keyboard belongs on cmd_ProgOff
  kNotStarted,   // not connected, Cancel, or a box has told why
};

// Steps controller programs, minute by minute. The instrument knows only its present setpoint,
// state and ramp, so a program runs only while this process does; where it stands is told by
// UnitProgName, UnitProgStep and UnitProgWait of the slot's header.
class ProgramRunner {
 public:
  struct Parts {  // all outlive the runner
    RunState& state;
    Link& link;
    RecordingEngine& engine;
    Dialogs& dialogs;
    Events& events;
    const Clock& clock;
  };
  explicit ProgramRunner(const Parts& parts) : parts_(parts) {}

  // cmd_ProgOn: lets the user choose a program file and starts it on `slot` 1..12. What does not
  // start leaves the slot as it was. No register is touched yet.
  ProgramStart Start(int slot);

  // cmd_ProgOff: asks, and stops the program. True if none runs afterwards. No register is
  // written: the controller goes on with what the last step gave it.
  bool Stop(int slot);

  // The work of one minute, called by the measuring cycle for the slots 1..12 in turn. A slot
  // is passed over, and its waiting time stands still, while it has no open file, while its
  // instrument does not answer, and while the output test holds its controller. A program ends if
  // its slot was given to another controller: that one was not meant.
  void StepProgram(int slot);

  // Where the program of a slot is and when it goes on, for the user: "step 2 of 5, next 220 °C at
  // 14:20". Empty while none runs and before its first step has gone out.
  [[nodiscard]] std::string ProgressText(int slot, Language language) const;

  // Steps of the program that was started last on the slot, 0 before the first.
  [[nodiscard]] int ProgSteps(int slot) const;

 private:
  // A program as it was loaded, and the controller that it was started for.
  struct Loaded {
    std::vector<ProgramStep> steps;
    std::int16_t inet = 0;
    std::int16_t ctrl = 0;
  };

  [[nodiscard]] ProgramStart Load(int slot);
  void Begin(int slot, std::vector<ProgramStep> steps);
  [[nodiscard]] bool MayStep(int slot) const;
  [[nodiscard]] const ProgramStep* NextStep(int slot) const;
  [[nodiscard]] std::string TimeOfNextStep(int slot) const;
  [[nodiscard]] bool SendStep(int slot, const ProgramStep& step);
  [[nodiscard]] bool SendRamp(const UnitRecord& unit, const ProgramStep& step);
  [[nodiscard]] bool Send(const UnitRecord& unit, const char* letter, std::int16_t value);

  Parts parts_;
  BySlot<Loaded> ProgTable;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_PROGRAM_RUNNER_H_
