#include <string>
#include <utility>

#include "files/recording_engine.h"
#include "files/recording_format.h"
#include "files/simulated_rows.h"
#include "frame/unfinished_work.h"

// Start, stop and end of a recording; the pump itself is in recording_engine.cpp.
namespace tavrel {

namespace {

constexpr const char* kStartTitle = "start recording";
constexpr std::int16_t kControllerOff = 0;

enum EndAction : std::int16_t { kSwitchControllerOff = 1, kGoOnInNextFile = 2 };

}  // namespace

void RecordingEngine::StartRecording(int slot) {
  if (!IsSlot(slot) || state_.SlotFile[slot].empty() || state_.Unit[slot].UnitRecOn != 0) {
    return;
  }
  const auto objection = WhyNotToStart(slot);
  if (objection) {
    dialogs_.Message(*objection);
    return;
  }
  if (!MaySimulate(slot)) {
    return;
  }
  // The instrument samples from its preparation on, so the file has to tell it before the program
  // ends.
  const UnfinishedWork start(state_);
  if (!PrepareInstrument(state_.Unit[slot])) {
    dialogs_.Message({"failed", kStartTitle, BoxIcon::kWarning});
    return;
  }
  TakeBufferCount(slot, 0, clock_.Elapsed());
  // The instrument's series are empty now; what is left of an older set belongs to none of them.
  state_.SampleSeen[slot].fill(false);
  columns_.StartSeries(slot);
  screens_.Show(View::kTavWait);
  state_.WriteFailed[slot] = false;
  state_.Unit[slot].UnitRecOn = 1;
  state_.ReadState[slot] = ReadState::kReading;
  files_.WriteHeader(slot);
  if (state_.ReadState[slot] == ReadState::kReading) {
    files_.KeepHeldSet(slot, 0);  // what lay there belonged to an older recording
  }
}

bool RecordingEngine::MaySimulate(int slot) {
  if (!NeedsConsentToSimulate(state_, link_, slot)) {
    return true;
  }
  state_.SimulatedRowsAllowed = dialogs_.AskOk(ConsentQuestion(state_, link_)) && link_.Simulated;
  return state_.SimulatedRowsAllowed;
}

std::optional<Notice> RecordingEngine::WhyNotToStart(int slot) const {
  if (state_.SampleCount[slot] >= state_.SampleLimit[slot]) {
    return Notice{"max. length of file", "Check:", BoxIcon::kWarning};
  }
  if (!state_.Unit[slot].CanBeRecorded()) {
    return Notice{"This file has another number of columns than there are recorded inputs.",
                  kStartTitle, BoxIcon::kWarning};
  }
  return std::nullopt;
}

// Gives each recorded input its sampling value and clears its stored series.
bool RecordingEngine::PrepareInstrument(const UnitRecord& unit) {
  link_.ComInet = unit.UnitInet;
  for (int input = 1; input <= kInputs; ++input) {
    if (!unit.IsRecorded(input)) {
      continue;
    }
    if (!WriteRegister("S", input, unit.UnitInterval) || !WriteRegister("R", input, 0)) {
      return false;
    }
  }
  return true;
}

// To the instrument of ComInet. True if it was acknowledged.
bool RecordingEngine::WriteRegister(const char* letter, int index, std::int16_t value) {
  link_.ComLetter = letter;
  link_.ComIndex = static_cast<std::int16_t>(index);
  link_.ComValue = value;
  link_.WriteReg();
  return link_.IsGood(link_.ComInet);
}

void RecordingEngine::StopRecording(int slot) {
  if (!IsSlot(slot) || state_.Unit[slot].UnitRecOn != 1) {
    return;
  }
  if (!dialogs_.AskOk({"stop acquisition", " ", BoxIcon::kQuestion})) {
    return;
  }
  if (state_.WriteFailed[slot] && IsSetComplete(slot)) {
    static_cast<void>(AppendSet(slot));
  }
  StopInFile(slot);
}

void RecordingEngine::StopInFile(int slot) {
  state_.Unit[slot].UnitRecOn = 0;
  state_.ReadState[slot] = ReadState::kIdle;
  state_.WriteFailed[slot] = false;
  HideBacklog(slot);
  columns_.Stop(slot);
  files_.DropHeldSet(slot);
  files_.WriteHeader(slot);
}

void RecordingEngine::EndOfRecording(int slot) {
  if (!IsSlot(slot)) {
    return;
  }
  switch (state_.Unit[slot].UnitEndAction) {
    case kSwitchControllerOff:
      state_.Unit[slot].UnitCtrlState = 0;
      state_.ProgRunning[slot] = false;  // its next step would switch the controller on again
      StopInFile(slot);
      SwitchControllerOff(slot);
      break;
    case kGoOnInNextFile:
      GoOnInNextFile(slot);
      break;
    default:
      StopInFile(slot);
  }
}

void RecordingEngine::SwitchControllerOff(int slot) {
  const UnitRecord& unit = state_.Unit[slot];
  stop_orders_[slot] = {unit.UnitInet, unit.UnitCtrl, false};
  OrderStop(slot);
}

// Without an acknowledge the order is due again on the ten-second tick.
void RecordingEngine::OrderStop(int slot) {
  link_.ComInet = stop_orders_[slot].inet;
  state_.StopPending[slot] = !WriteRegister("Z", stop_orders_[slot].controller, kControllerOff);
}

// The waits for several silent instruments must not add up in one step: only the first order that
// is due is sent. False if there is none.
bool RecordingEngine::RepeatStopOrder() {
  for (int slot = 1; slot <= kSlots; ++slot) {
    const bool is_due = std::exchange(stop_orders_[slot].is_due, false);
    if (is_due && state_.StopPending[slot]) {
      OrderStop(slot);
      return true;
    }
  }
  return false;
}

void RecordingEngine::DropStopOrder(int inet, int controller) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    const StopOrder& order = stop_orders_[slot];
    if (order.inet == inet && order.controller == controller) {
      state_.StopPending[slot] = false;
    }
  }
}

// At every moment of this the settings on the disk name a file whose header says that the
// recording is on, so that it goes on after a crash: first the next file is made, then the
// settings name it, and only then the full one is marked as stopped.
void RecordingEngine::GoOnInNextFile(int slot) {
  const std::string next = files_.MakeNextFile(slot);
  if (!next.empty()) {
    state_.Settings.ActiveFiles[slot - 1] = next;
    SaveSettings(slot);
  }
  // Each input has its own series in the instrument: values that were taken already would leave
  // their columns one set ahead of the others if they were dropped. A doubt goes along as well.
  const auto columns = columns_.Of(slot);
  const auto seen = state_.SampleSeen[slot];
  const auto memory = state_.Columns[slot];
  const bool in_doubt = state_.ColumnsInDoubt[slot];
  const int asked = state_.AskedInput[slot];
  StopInFile(slot);
  if (next.empty()) {
    return;
  }
  state_.SlotFile[slot] = next;
  files_.OpenRecordingFile(slot);
  columns_.GoOn(slot, columns);
  state_.SampleSeen[slot] = seen;
  state_.Columns[slot] = memory;
  state_.ColumnsInDoubt[slot] = in_doubt;
  state_.AskedInput[slot] = asked;
  if (slot == state_.SelSlot && state_.ActiveView == View::kTavGraph) {
    state_.GraphMustClose = true;
  }
}

void RecordingEngine::SaveSettings(int slot) {
  if (!settings_.SettingsSave().empty()) {
    state_.SettingsChanged = true;
    messages_.Report(slot, {"Cannot write file.", kSettingsFile});
  }
}

}  // namespace tavrel
