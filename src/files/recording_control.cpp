#include <string>

#include "files/file_texts.h"
#include "files/recording_engine.h"
#include "files/recording_format.h"
#include "files/set_in_hand.h"
#include "files/simulated_rows.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/box_titles.h"
#include "state/unfinished_work.h"
#include "state/user_language.h"

// Start, stop and end of a recording; the pump itself is in recording_engine.cpp.
namespace tavrel {

namespace {

constexpr const char* kStartTitle = "start recording";

}  // namespace

void RecordingEngine::StartRecording(int slot) {
  if (!IsSlot(slot) || state_.SlotFile[slot].empty() || state_.Unit[slot].UnitRecOn != 0) {
    return;
  }
  auto objection = WhyNotToStart(slot);
  if (!objection) {
    objection = WhyNotOnInstrument(state_.Unit[slot]);
  }
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
  state_.SampleSeen[slot].Fill(false);
  columns_.StartSeries(slot);
  screens_.Show(View::kTavWait);
  state_.WriteFailed[slot] = false;
  state_.Unit[slot].UnitRecOn = 1;
  state_.ReadState[slot] = ReadState::kReading;
  files_.Journals().Note(slot, "start", {});
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

std::optional<Notice> RecordingEngine::WhyNotToStart(int slot) {
  if (state_.SampleCount[slot] >= state_.SampleLimit[slot]) {
    return Notice{"max. length of file", "Check:", BoxIcon::kWarning};
  }
  if (!state_.Unit[slot].CanBeRecorded()) {
    return Notice{file_text::kOtherColumns.Text(UserLanguage(state_)), kStartTitle,
                  BoxIcon::kWarning};
  }
  // The rows to come stand behind it.
  if (HoldsWholeSet(state_, slot)) {
    if (!files_.AppendSetInHand(slot)) {
      return Notice{state_.SlotFile[slot] + ": " + files_.ErrorText(), kStartTitle,
                    BoxIcon::kWarning};
    }
    files_.DropHeldSet(slot);
  }
  return std::nullopt;
}

// The instrument takes the sampling value in its own unit, whatever the file means by it. The store
// of a simulated line is of no kind.
std::optional<Notice> RecordingEngine::WhyNotOnInstrument(const UnitRecord& unit) {
  if (link_.Simulated) {
    return std::nullopt;
  }
  const Reading kind = Read(link_, Register{unit.UnitInet, reg::kKind, 0});
  if (!kind.IsGood()) {
    return Notice{"failed", kStartTitle, BoxIcon::kWarning};
  }
  const bool is_fast = unit.UnitFast == 1;
  if (is_fast == (kind.word == 1)) {
    return std::nullopt;
  }
  const BothLanguages& text = is_fast ? file_text::kFileInSeconds : file_text::kFileInTens;
  return Notice{text.Text(UserLanguage(state_)), kStartTitle, BoxIcon::kWarning};
}

// Gives each recorded input its sampling value and clears its stored series.
bool RecordingEngine::PrepareInstrument(const UnitRecord& unit) {
  for (int input = 1; input <= kInputs; ++input) {
    if (!unit.IsRecorded(input)) {
      continue;
    }
    const bool is_prepared =
        IsGood(Write(link_, {unit.UnitInet, reg::kSampling, input}, unit.UnitInterval)) &&
        IsGood(Write(link_, {unit.UnitInet, reg::kBuffered, input}, 0));
    if (!is_prepared) {
      return false;
    }
  }
  return true;
}

void RecordingEngine::StopRecording(int slot) {
  if (!IsSlot(slot) || state_.Unit[slot].UnitRecOn != 1) {
    return;
  }
  if (!dialogs_.AskOk({"stop acquisition", " ", BoxIcon::kQuestion})) {
    return;
  }
  files_.Journals().Note(slot, "stop", {{"by", "user"}});
  StopInFile(slot);
}

void RecordingEngine::StopInFile(int slot) {
  const std::string unsaved = files_.SaveSetInHand(slot);
  if (unsaved.empty()) {
    files_.DropHeldSet(slot);
  } else {
    messages_.Report(slot, {unsaved, kWriteTitle});
  }
  EndInFile(slot);
}

bool RecordingEngine::GiveUpTest(int slot) {
  if (!IsSlot(slot) || state_.SlotFile[slot].empty()) {
    return true;
  }
  const std::string restored = RestoreIfLost(slot);
  if (!restored.empty()) {
    messages_.Report(slot, {restored, kWriteTitle});
  }
  if (state_.Unit[slot].UnitRecOn == 1) {
    files_.Journals().Note(slot, "stop", {{"by", "set-up"}});
  }
  StopInFile(slot);
  const bool is_left = HoldsWholeSet(state_, slot);
  EmptyHand(slot);
  set_aside_[slot].reset();
  return !is_left;
}

void RecordingEngine::EndInFile(int slot) {
  state_.Unit[slot].UnitRecOn = 0;
  state_.ReadState[slot] = ReadState::kIdle;
  state_.WriteFailed[slot] = false;
  HideBacklog(slot);
  columns_.Stop(slot);
  files_.WriteHeader(slot);
}

void RecordingEngine::EndOfRecording(int slot) {
  if (!IsSlot(slot)) {
    return;
  }
  switch (state_.Unit[slot].UnitEndAction) {
    case kSwitchControllerOff:
      SwitchControllerOff(slot);
      break;
    case kGoOnInNextFile:
      GoOnInNextFile(slot);
      break;
    default:
      files_.Journals().Note(slot, "end", {{"action", "end"}});
      StopInFile(slot);
  }
}

// The order is on the disk before the file says that the recording is over: a program that is
// killed in between gives it again. The slot's next step of a program would switch the controller
// on once more.
void RecordingEngine::SwitchControllerOff(int slot) {
  UnitRecord& unit = state_.Unit[slot];
  unit.UnitCtrlState = 0;
  state_.ProgRunning[slot] = false;
  stop_orders_.Give(slot, unit.UnitInet, unit.UnitCtrl);
  files_.Journals().Note(slot, "end", {{"action", "switch the controller off"}});
  StopInFile(slot);
  static_cast<void>(SendStopOrders());
}

// At every moment of this the settings on the disk name a file whose header says that the
// recording is on, so that it goes on after a crash: first the next file is made, then the
// settings name it, and only then the full one is marked as stopped. If the settings cannot be
// written, a restart finds the full file and goes on in another one.
void RecordingEngine::GoOnInNextFile(int slot) {
  const std::string next = files_.MakeNextFile(slot);
  if (next.empty()) {
    state_.ReadState[slot] = ReadState::kWaiting;
    state_.WriteFailed[slot] = true;
    return;
  }
  // Each input has its own series in the instrument: values that were taken already would leave
  // their columns one set ahead of the others if they were dropped. A doubt goes along as well.
  const auto columns = columns_.Of(slot);
  const auto seen = state_.SampleSeen[slot];
  const auto memory = state_.Columns[slot];
  const bool in_doubt = state_.ColumnsInDoubt[slot];
  const int asked = state_.AskedInput[slot];
  state_.Settings.ActiveFiles[slot - 1] = next;
  files_.Journals().Note(slot, "end", {{"action", "go on in a next file"}, {"next", next}});
  const bool is_saved = SaveSettings(slot);
  files_.DropHeldSet(slot);
  HideBacklog(slot);
  if (is_saved) {
    EndInFile(slot);
  } else {
    files_.WriteHeader(slot);
  }
  const bool is_open = files_.GoOnInFile(slot, next);
  columns_.GoOn(slot, columns);
  state_.SampleSeen[slot] = seen;
  state_.Columns[slot] = memory;
  state_.ColumnsInDoubt[slot] = in_doubt;
  state_.AskedInput[slot] = asked;
  state_.WriteFailed[slot] = !is_open;
  if (is_open) {
    messages_.Recovered(slot);
  } else {
    messages_.Report(slot, {next + ": " + files_.ErrorText(), kWriteTitle});
  }
  CloseGraphOf(slot);
}

// The set in hand stays there, and the instrument stores what comes.
bool RecordingEngine::WaitsForNextFile(int slot) const {
  return state_.WriteFailed[slot] && state_.SampleCount[slot] > state_.SampleLimit[slot] &&
         state_.Unit[slot].UnitEndAction == kGoOnInNextFile;
}

// The graph shows the file that the slot had.
void RecordingEngine::CloseGraphOf(int slot) {
  if (slot == state_.SelSlot && state_.ActiveView == View::kTavGraph) {
    state_.GraphMustClose = true;
  }
}

bool RecordingEngine::SaveSettings(int slot) {
  if (settings_.SettingsSave().empty()) {
    return true;
  }
  state_.SettingsChanged = true;
  messages_.Report(slot, {"Cannot write file.", kSettingsFile});
  return false;
}

}  // namespace tavrel
