#include "main/attachment.h"

#include "base/file_names.h"
#include "main/main_texts.h"
#include "platform/file_system.h"
#include "state/open_slots.h"
#include "state/user_language.h"

namespace tavrel {

bool Attachment::Waits(int slot) const {
  return WaitsForFile(parts_.state, slot);
}

void Attachment::AttachAll() {
  bool any_is_taken = false;
  for (int slot = 1; slot <= kSlots; ++slot) {
    parts_.state.SelSlot = slot;
    AttachSlot(slot);
    any_is_taken = any_is_taken || !parts_.state.SlotFile[slot].empty() || Waits(slot);
  }
  TellOfDropped();
  if (!any_is_taken) {
    MakeDefaultSlot();
  }
}

void Attachment::AttachSlot(int slot) {
  std::string& key = parts_.state.Settings.ActiveFiles[slot - 1];
  if (key.empty()) {
    parts_.sheet.HideRow(slot);
    return;
  }
  parts_.state.SlotPath[slot] = DataDirectory(parts_.state);
  if (Open(slot) || parts_.files.WasRefusedByError(slot)) {
    ShowSlot(slot);
    return;
  }
  dropped_.push_back(key);
  key.clear();
  parts_.sheet.HideRow(slot);
}

bool Attachment::Open(int slot) {
  RunState& state = parts_.state;
  state.SlotFile[slot] = state.Settings.ActiveFiles[slot - 1];
  parts_.files.OpenRecordingFile(slot);
  return !state.SlotFile[slot].empty();
}

// Before the settings are saved without the names, so that the user is told where they are.
void Attachment::TellOfDropped() {
  if (dropped_.empty()) {
    return;
  }
  const std::string backup = parts_.settings.KeepDroppedNames();
  if (backup.empty()) {
    return;
  }
  std::string tests;
  for (const std::string& name : dropped_) {
    tests += name + "\n";
  }
  const std::string text = main_text::kDropped.Text(UserLanguage(parts_.state), {tests, backup});
  parts_.messages.Report(kViewedFile, {text, kSettingsFile});
}

void Attachment::RetryWaiting() {
  RunState& state = parts_.state;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (!Waits(slot)) {
      continue;
    }
    if (state.SlotPath[slot].empty()) {
      state.SlotPath[slot] = DataDirectory(state);
    }
    if (Open(slot)) {
      parts_.messages.Recovered(slot);
      parts_.engine.TakeUp(slot, std::nullopt);
    }
    ShowSlot(slot);
  }
}

void Attachment::ShowSlot(int slot) {
  if (Waits(slot)) {
    parts_.sheet.ShowWaitingRow(slot);
  } else if (parts_.state.SlotFile[slot].empty()) {
    parts_.sheet.HideRow(slot);
  } else {
    parts_.sheet.ShowRow(slot);
  }
}

std::optional<std::set<int>> Attachment::WaitingInstruments() const {
  const RunState& state = parts_.state;
  std::set<int> inets;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (!Waits(slot)) {
      continue;
    }
    const auto inet =
        RecordingFiles::InetOf(state.SlotPath[slot], state.Settings.ActiveFiles[slot - 1]);
    if (!inet) {
      return std::nullopt;
    }
    inets.insert(*inet);
  }
  return inets;
}

// The first start of all. A file of that name that is there already and valid is taken as it
// is; anything else of that name is left alone and the new file gets the next letter.
void Attachment::MakeDefaultSlot() {
  constexpr int kFirst = 1;
  RunState& state = parts_.state;
  std::string name = kDefaultFile;
  state.SlotPath[kFirst] = DataDirectory(state);
  bool is_kept = false;
  if (FindFile(state.SlotPath[kFirst], name)) {
    state.SlotFile[kFirst] = name;
    parts_.files.OpenRecordingFile(kFirst);
    is_kept = !state.SlotFile[kFirst].empty() || parts_.files.WasRefusedByError(kFirst);
  }
  if (!is_kept) {
    name = parts_.files.FreeName(kFirst, name);
    state.SlotFile[kFirst] = name;
    state.Unit[kFirst] = DefaultUnitRecord();
    parts_.files.WriteHeader(kFirst);
    parts_.files.CloseRecordingFile(kFirst);
    if (state.SlotFile[kFirst].empty()) {
      return;
    }
    parts_.files.OpenRecordingFile(kFirst);
  }
  state.Settings.ActiveFiles[kFirst - 1] = name;
  state.SettingsChanged = true;
  ShowSlot(kFirst);
}

}  // namespace tavrel
