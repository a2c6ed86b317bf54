#ifndef TAVREL_STATE_HEADER_EDIT_H_
#define TAVREL_STATE_HEADER_EDIT_H_

#include "state/run_state.h"

namespace tavrel {

// The slot 1..12 whose file is also the one opened for viewing; 0 if there is none.
[[nodiscard]] int OwnerOfViewedFile(const RunState& state);

// Carries out a user's change of the header of `slot`; it reaches the file with the next header
// that is written. The file opened for viewing may be the one that a slot records into: its
// header is then the slot's, for the copy of the viewer has fallen behind, and the change is
// made in both but written from the slot's only.
template <typename Edit>
void EditHeader(RunState& state, int slot, Edit edit) {
  edit(state.Unit[slot]);
  const int owner = slot == kViewedFile ? OwnerOfViewedFile(state) : slot;
  if (slot == kViewedFile && owner != kViewedFile) {
    edit(state.Unit[owner]);
  }
  state.SlotDirty[owner] = true;
}

}  // namespace tavrel

#endif  // TAVREL_STATE_HEADER_EDIT_H_
