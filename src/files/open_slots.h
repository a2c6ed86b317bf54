#ifndef TAVREL_FILES_OPEN_SLOTS_H_
#define TAVREL_FILES_OPEN_SLOTS_H_

#include <string>

#include "frame/run_state.h"

namespace tavrel {

// True if a slot, or the viewer, has the file at `path` for its own. The file system says which
// files are the same, not the spelling of their names.
[[nodiscard]] bool IsOpenInSlot(const RunState& state, const std::string& path);

}  // namespace tavrel

#endif  // TAVREL_FILES_OPEN_SLOTS_H_
