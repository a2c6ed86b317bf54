#include "files/open_slots.h"

#include <filesystem>

#include "common/text.h"
#include "platform/file_system.h"

namespace tavrel {

namespace {

std::string OrHere(const std::string& directory) {
  return directory.empty() ? "." : directory;
}

// True if `path` is, or would be, the file `name` of `directory`.
bool IsPlaceOf(const std::string& path, const std::string& directory, const std::string& name) {
  const std::filesystem::path place(path);
  return EqualNoCase(place.filename().string(), name) &&
         IsSameFile(OrHere(place.parent_path().string()), OrHere(directory));
}

}  // namespace

bool IsFileOfSlot(const RunState& state, int slot, const std::string& path) {
  const auto place = static_cast<std::size_t>(slot);
  const std::string& name = state.SlotFile.at(place);
  const std::string& directory = state.SlotPath.at(place);
  if (name.empty() || path.empty()) {
    return false;
  }
  const auto open_file = state.SlotFileNo.at(place).Identity();
  if ((open_file && open_file == IdentityOf(path)) || IsPlaceOf(path, directory, name)) {
    return true;
  }
  const auto own = FindFile(directory, name);
  return own && IsSameFile(*own, path);
}

bool IsOpenInSlot(const RunState& state, const std::string& path) {
  for (int slot = kViewedFile; slot <= kSlots; ++slot) {
    if (IsFileOfSlot(state, slot, path)) {
      return true;
    }
  }
  return false;
}

}  // namespace tavrel
