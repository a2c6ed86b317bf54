#ifndef TAVREL_STATE_RECORDING_ON_H_
#define TAVREL_STATE_RECORDING_ON_H_

#include "state/run_state.h"

namespace tavrel {

// True if the recording of at least one slot is on. The viewed file is none.
[[nodiscard]] inline bool IsAnyRecordingOn(const RunState& state) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (!state.SlotFile[slot].empty() && state.Unit[slot].UnitRecOn == 1) {
      return true;
    }
  }
  return false;
}

}  // namespace tavrel

#endif  // TAVREL_STATE_RECORDING_ON_H_
