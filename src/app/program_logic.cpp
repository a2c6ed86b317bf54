#include "app/program_logic.h"

#include "setup/unfinished_adjustment.h"

namespace tavrel {

// Here and not in the header: what joins all parts is compiled once.
ProgramLogic::ProgramLogic(const Machine& on) : machine(on) {}

ProgramLogic::~ProgramLogic() = default;

bool ProgramLogic::LoadMainForm() {
  if (!start_up.MainFormLoad()) {
    return false;
  }
  const Messages::Deferral deferral(messages);
  TellUnfinishedAdjustment(state, machine.clock, messages);
  return true;
}

}  // namespace tavrel
