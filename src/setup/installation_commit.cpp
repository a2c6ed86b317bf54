#include "setup/installation_commit.h"

#include "base/language.h"
#include "platform/file_system.h"

namespace tavrel {

void InstallationCommit::Run(const TestRows& rows) {
  RunState& state = parts_.state;
  const Messages::Deferral deferral(parts_.messages);
  for (int slot = 1; slot <= kSlots; ++slot) {
    parts_.hide_row(slot);
    if (!rows[slot].IsKept() && IsOtherTest(Unit(slot), rows[slot].Unit)) {
      CommitSlot(slot, rows[slot]);
    }
    parts_.show_row(slot);
  }
  SaveSettings();
  state.ForgetShownSlot();
  state.SheetReset = false;
  state.SheetSlot = 0;
  state.TickRefresh.MakeDue();
}

void InstallationCommit::CommitSlot(int slot, const TestRow& row) {
  parts_.messages.Recovered(slot);  // what was told of the test before is worth telling again
  Unit(slot).UnitDesignation = row.Unit.UnitDesignation;
  EndTest(slot);
  if (row.IsInstalled()) {
    BeginTest(slot, row.Unit);
  } else {
    FreeSlot(slot);
  }
}

// A program ends as by its button: the controller goes on with what its last step gave it.
void InstallationCommit::EndTest(int slot) {
  RunState& state = parts_.state;
  state.ProgRunning[slot] = false;
  if (state.SlotFile[slot].empty()) {
    return;
  }
  const bool is_whole = parts_.engine.GiveUpTest(slot);
  if (is_whole && !state.SlotFile[slot].empty() && state.SampleCount[slot] == 0) {
    const auto path = FindFile(state.SlotPath[slot], state.SlotFile[slot]);
    empty_files_.push_back(path.value_or(""));
  }
}

void InstallationCommit::FreeSlot(int slot) {
  RunState& state = parts_.state;
  parts_.files.EmptySlot(slot);
  Unit(slot).UnitInet = 0;
  state.Settings.ActiveFiles[slot - 1].clear();
  state.SlotDirty[slot] = false;
  state.IndexValid = false;
}

void InstallationCommit::BeginTest(int slot, const UnitRecord& row) {
  RunState& state = parts_.state;
  RebuildRecord(Unit(slot), row, LanguageOf(state.Settings.HelpLang));
  const std::string old_path = state.SlotPath[slot];
  state.SlotPath[slot] = DataDirectory(state);
  if (!parts_.files.CreateRecordingFile(slot, Unit(slot).UnitInterval)) {
    GoBack(slot, old_path);
  }
}

// No file for the new test, which the user has been told. The settings still name the old file, and
// the slot has it again: now, or as soon as it can be opened.
void InstallationCommit::GoBack(int slot, const std::string& old_path) {
  RunState& state = parts_.state;
  state.SlotPath[slot] = old_path;
  if (!state.SlotFile[slot].empty()) {
    parts_.files.OpenRecordingFile(slot);
  } else if (state.Settings.ActiveFiles[slot - 1].empty()) {
    Unit(slot).UnitInet = 0;
  }
}

// A restart has to find the new names; before that the old ones have to be there.
void InstallationCommit::SaveSettings() {
  if (!parts_.settings.SettingsSave().empty()) {
    parts_.state.SettingsChanged = true;
    parts_.messages.Report(0, {"Cannot write file.", kSettingsFile});
    return;
  }
  for (const std::string& path : empty_files_) {
    parts_.files.DropEmptyFile(path);
  }
}

}  // namespace tavrel
