#ifndef TAVREL_STATE_OPEN_SLOTS_H_
#define TAVREL_STATE_OPEN_SLOTS_H_

#include <string>

#include "state/run_state.h"

// Whose file is it? The one answer for all that writes, replaces or deletes files: a recording that
// is written over is lost.
namespace tavrel {

// True if `slot` (0 is the viewer) has the file at `path` for its own: by the file itself, through
// links, other names and other spellings of the directory, even if others have renamed it; and by
// its place, whatever the case of the name, so that nothing takes the place of a file whose medium
// is away. False for a slot that is not in use.
[[nodiscard]] bool IsFileOfSlot(const RunState& state, int slot, const std::string& path);

// The first of the slots 1..12 that has the file at `path` for its own; kViewedFile if none has it.
[[nodiscard]] int SlotOfFile(const RunState& state, const std::string& path);

// True if a key of the settings names a file for the slot that could not be opened yet.
[[nodiscard]] bool WaitsForFile(const RunState& state, int slot);

// True if the slot waits for a file, and that at `path` is, or would be, this one.
[[nodiscard]] bool IsAwaitedFile(const RunState& state, int slot, const std::string& path);

// True if a slot, or the viewer, has it, or a slot waits for it: a key of the settings names it,
// but it could not be opened yet.
[[nodiscard]] bool IsOpenInSlot(const RunState& state, const std::string& path);

}  // namespace tavrel

#endif  // TAVREL_STATE_OPEN_SLOTS_H_
