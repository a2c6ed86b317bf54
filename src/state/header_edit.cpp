#include "state/header_edit.h"

#include "platform/file_system.h"
#include "state/open_slots.h"

namespace tavrel {

int OwnerOfViewedFile(const RunState& state) {
  if (state.SlotFile[kViewedFile].empty()) {
    return kViewedFile;
  }
  const std::string& directory = state.SlotPath[kViewedFile];
  const std::string& name = state.SlotFile[kViewedFile];
  const std::string viewed = FindFile(directory, name).value_or(JoinPath(directory, name));
  return SlotOfFile(state, viewed);
}

}  // namespace tavrel
