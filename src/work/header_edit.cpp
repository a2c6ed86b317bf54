#include "work/header_edit.h"

#include "platform/file_system.h"

namespace tavrel {

int OwnerOfViewedFile(const RunState& state) {
  if (state.SlotFile[kViewedFile].empty()) {
    return kViewedFile;
  }
  const auto viewed = FindFile(state.SlotPath[kViewedFile], state.SlotFile[kViewedFile]);
  for (int slot = 1; viewed && slot <= kSlots; ++slot) {
    const auto place = static_cast<std::size_t>(slot);
    if (state.SlotFile.at(place).empty()) {
      continue;
    }
    const auto own = FindFile(state.SlotPath.at(place), state.SlotFile.at(place));
    if (own && IsSameFile(*own, *viewed)) {
      return slot;
    }
  }
  return kViewedFile;
}

}  // namespace tavrel
