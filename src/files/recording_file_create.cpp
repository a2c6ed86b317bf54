#include "base/text.h"
#include "files/file_texts.h"
#include "files/journal_begin.h"
#include "files/new_file.h"
#include "files/recording_file.h"
#include "files/recording_format.h"
#include "platform/file_system.h"
#include "state/box_titles.h"
#include "state/user_language.h"

// The files that a slot begins: by the user's wish, because one is full, or because one is lost.
namespace tavrel {

bool RecordingFiles::CreateRecordingFile(int slot, std::int16_t interval) {
  if (!IsSlot(slot)) {
    return false;
  }
  std::string& active = state_.Settings.ActiveFiles[slot - 1];
  const std::string old_name = state_.SlotFile[slot].empty() ? active : state_.SlotFile[slot];
  UnitRecord unit = state_.Unit[slot];
  const WallTime now = clock_.Now();
  const std::string name = FreeName(slot, NewFileName(old_name, now, unit.UnitDesignation.Get()));
  if (name.empty()) {
    messages_.Report(slot,
                     {file_text::kNoNameToday.Text(UserLanguage(state_), {old_name}), kWriteTitle});
    if (!state_.SlotFileNo[slot].IsOpen()) {
      OpenRecordingFile(slot);
    }
    return false;
  }
  unit.UnitDate.Set(DateText(now));
  unit.UnitInterval = interval;
  unit.UnitMaxMinutes = 0;
  unit.UnitMarks = 0;
  unit.UnitXmax = NewFileXmax(unit.UnitXmax, RecIntervalOf(unit), unit.UnitChannels);
  CloseRecordingFile(slot);
  const std::string problem = journals_.MakeFile(state_.SlotFileNo[slot], slot, name, unit, {}, {});
  if (!problem.empty()) {
    Refuse(slot, kWriteTitle, name + ": " + problem);
    return false;
  }
  state_.SlotFile[slot] = name;
  active = name;
  state_.IndexValid = false;
  OpenRecordingFile(slot);
  return !state_.SlotFile[slot].empty();
}

std::string RecordingFiles::MakeNextFile(int slot) {
  if (!IsSlot(slot)) {
    return "";
  }
  std::string name = NextFreeName(slot);
  if (name.empty()) {
    messages_.Report(
        slot,
        {file_text::kNoNextName.Text(UserLanguage(state_), {state_.SlotFile[slot]}), kWriteTitle});
    return "";
  }
  UnitRecord unit = state_.Unit[slot];
  unit.UnitRecOn = 1;
  unit.UnitMarks = 0;
  RandomFile file;
  const JsonValue::Members before =
      BeforeFields({state_.SlotPath[slot], state_.SlotFile[slot], journals_.IdOf(slot),
                    !journals_.LacksLines(slot), state_.SampleCount[slot], 0, RecIntervalOf(unit)});
  const std::string problem = journals_.MakeFile(file, slot, name, unit, {}, {{"before", before}});
  if (!problem.empty()) {
    messages_.Report(slot, {name + ": " + problem, kWriteTitle});
    return "";
  }
  state_.IndexValid = false;
  HandHeldSetOn(slot, name);
  return name;
}

bool RecordingFiles::GoOnInFile(int slot, const std::string& name) {
  CloseRecordingFile(slot);
  state_.SlotFile[slot] = name;
  state_.Unit[slot].UnitRecOn = 1;
  state_.Unit[slot].UnitMarks = 0;
  state_.SampleCount[slot] = 0;
  state_.SlotDirty[slot] = false;
  ForgetShown(slot);
  const bool is_open = OpenSameFile(slot, state_.SlotFileNo[slot]);
  if (!is_open) {
    state_.SlotFileNo[slot].Close();
  }
  DeriveValues(slot);
  return is_open;
}

// The names of a day end after "~"; those of today may be free, and tomorrow others are.
std::string RecordingFiles::NextFreeName(int slot) const {
  const std::string name = FreeName(slot, NextFileName(UpperCase(state_.SlotFile[slot])));
  return !name.empty() ? name
                       : FreeName(slot, NewFileName("", clock_.Now(),
                                                    state_.Unit[slot].UnitDesignation.Get()));
}

std::string RecordingFiles::FreeName(int slot, std::string name) const {
  name = UpperCase(name);
  while (!name.empty() && (!IsNameForNewFile(name) || IsNameTaken(slot, name))) {
    name = NextFileName(name);
  }
  return name;
}

bool RecordingFiles::IsNameTaken(int slot, const std::string& name) const {
  for (int other = 1; other <= kSlots; ++other) {
    if (EqualNoCase(state_.SlotFile[other], name) ||
        EqualNoCase(state_.Settings.ActiveFiles[other - 1], name)) {
      return true;
    }
  }
  return slot >= kViewedFile && slot <= kSlots && HoldsName(state_.SlotPath[slot], name);
}

}  // namespace tavrel
