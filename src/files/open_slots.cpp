#include "files/open_slots.h"

#include "platform/file_system.h"

namespace tavrel {

bool IsOpenInSlot(const RunState& state, const std::string& path) {
  for (std::size_t slot = 0; slot < kSlotTable; ++slot) {
    const std::string& name = state.SlotFile.at(slot);
    if (name.empty()) {
      continue;
    }
    const auto own = FindFile(state.SlotPath.at(slot), name);
    if (own && IsSameFile(*own, path)) {
      return true;
    }
  }
  return false;
}

}  // namespace tavrel
