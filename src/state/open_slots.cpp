#include "state/open_slots.h"

#include <filesystem>

#include "base/text.h"
#include "platform/file_system.h"
#include "state/settings_store.h"

namespace tavrel {

namespace {

std::string OrHere(const std::string& directory) {
  return directory.empty() ? "." : directory;
}

// True if `path` is, or would be, the file `name` of `directory`.
bool IsAt(const std::string& path, const std::string& directory, const std::string& name) {
  const std::filesystem::path place(path);
  return EqualNoCase(place.filename().string(), name) &&
         IsSameFile(OrHere(place.parent_path().string()), OrHere(directory));
}

// Whether or not the file is there now.
bool IsFileNamed(const std::string& path, const std::string& directory, const std::string& name) {
  if (IsAt(path, directory, name)) {
    return true;
  }
  const auto own = FindFile(directory, name);
  return own && IsSameFile(*own, path);
}

}  // namespace

bool WaitsForFile(const RunState& state, int slot) {
  return IsSlot(slot) && state.SlotFile[slot].empty() &&
         !state.Settings.ActiveFiles[slot - 1].empty();
}

bool IsAwaitedFile(const RunState& state, int slot, const std::string& path) {
  return WaitsForFile(state, slot) &&
         IsFileNamed(path, DataDirectory(state), state.Settings.ActiveFiles[slot - 1]);
}

bool IsFileOfSlot(const RunState& state, int slot, const std::string& path) {
  const std::string& name = state.SlotFile[slot];
  if (name.empty() || path.empty()) {
    return false;
  }
  const auto open_file = state.SlotFileNo[slot].Identity();
  return (open_file && open_file == IdentityOf(path)) ||
         IsFileNamed(path, state.SlotPath[slot], name);
}

int SlotOfFile(const RunState& state, const std::string& path) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (IsFileOfSlot(state, slot, path)) {
      return slot;
    }
  }
  return kViewedFile;
}

bool IsOpenInSlot(const RunState& state, const std::string& path) {
  for (int slot = kViewedFile; !path.empty() && slot <= kSlots; ++slot) {
    if (IsFileOfSlot(state, slot, path) || IsAwaitedFile(state, slot, path)) {
      return true;
    }
  }
  return false;
}

}  // namespace tavrel
