#include "files/recording_engine.h"

#include <algorithm>
#include <string>
#include <utility>

#include "files/recording_format.h"
#include "files/set_in_hand.h"
#include "files/simulated_rows.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/box_titles.h"

namespace tavrel {

namespace {

constexpr int kAboveBacklog = 3;  // a backlog up to this is not worth telling

std::string BacklogText(int count) {
  return "reading from Tavrel:  " + std::to_string(count);
}

}  // namespace

RecordingEngine::RecordingEngine(const Parts& parts)
    : state_(parts.state),
      link_(parts.link),
      files_(parts.files),
      settings_(parts.settings),
      messages_(parts.messages),
      dialogs_(parts.dialogs),
      screens_(parts.screens),
      clock_(parts.clock),
      columns_(parts.state, parts.files, parts.messages, parts.clock),
      stop_orders_({parts.state, parts.link, parts.messages}),
      controllers_(parts.state, parts.link, parts.files) {}

void RecordingEngine::PumpOnce() {
  const Messages::Deferral deferral(messages_);
  if (SendStopOrders()) {
    return;
  }
  if (!IsSlot(state_.PumpSlot)) {
    state_.PumpSlot = 1;
  }
  if (state_.PumpChannel < 1 || state_.PumpChannel > kInputs) {
    state_.PumpChannel = kInputs;
  }
  if (ServeFirst()) {
    return;
  }
  const bool is_whole_search = state_.PumpSlot == kSlots && state_.PumpChannel == kInputs;
  if (!FindWork()) {
    is_pressed_ = is_pressed_ && !is_whole_search;
    state_.PumpSlot = kSlots;
    state_.PumpChannel = kInputs;
    LearnOrder();
    return;
  }
  ServeSlot();
}

// Serves a slot out of its turn. The cursor stays where it was; only in the slot that was served
// it begins at the top of the set again. False if no buffer is in danger, or nothing can be done
// for those that are.
bool RecordingEngine::ServeFirst() {
  if (link_.Simulated) {
    return false;
  }
  WakeThoseInDanger();
  const int slot_before = state_.PumpSlot;
  const int channel_before = state_.PumpChannel;
  for (const int slot : order_.First(state_.ReadState, clock_.Elapsed())) {
    state_.PumpSlot = slot;
    state_.PumpChannel = kInputs;
    const bool has_work = SlotHasWork();
    if (has_work && order_.WantsReading(slot, clock_.Elapsed())) {
      ReadBufferCount(slot);
    } else if (has_work) {
      is_pressed_ = true;
      ServeSlot();
    }
    state_.PumpSlot = slot_before;
    state_.PumpChannel = slot == slot_before ? kInputs : channel_before;
    if (has_work) {
      return true;
    }
  }
  return false;
}

// A set that could not be written, or a next file that could not be made, is left to the
// ten-second tick.
void RecordingEngine::WakeThoseInDanger() {
  for (int slot = 1; slot <= kSlots; ++slot) {
    const bool waits = state_.ReadState[slot] == ReadState::kWaiting && !IsSetComplete(slot);
    if (waits && !WaitsForNextFile(slot) && order_.MayTryAgain(slot, clock_.Elapsed())) {
      state_.ReadState[slot] = ReadState::kReading;
    }
  }
}

// One step for the slot under the cursor, which has work.
void RecordingEngine::ServeSlot() {
  if (IsSetComplete(state_.PumpSlot)) {
    WriteSet(state_.PumpSlot);
    return;
  }
  if (state_.ColumnsInDoubt[state_.PumpSlot]) {
    MendColumns(state_.PumpSlot);
    return;
  }
  const bool may_have_dropped = order_.MayHaveDropped(state_.PumpSlot, clock_.Elapsed());
  if (may_have_dropped && !columns_.IsStillFull(state_.PumpSlot)) {
    ReadBufferCount(state_.PumpSlot);
    return;
  }
  ReadOneSample();
}

// Moves the cursor downward to the next slot that has something to do.
bool RecordingEngine::FindWork() {
  while (state_.PumpSlot >= 1) {
    if (SlotHasWork()) {
      return true;
    }
    --state_.PumpSlot;
    state_.PumpChannel = kInputs;
  }
  return false;
}

// True if the slot under the cursor has a set to write, or a channel to read at the cursor or
// below it; the cursor then stands on that channel.
bool RecordingEngine::SlotHasWork() {
  const int slot = state_.PumpSlot;
  const UnitRecord& unit = state_.Unit[slot];
  const bool is_reading = state_.ReadState[slot] >= ReadState::kReading;
  if (!is_reading || state_.SlotFile[slot].empty() || !unit.CanBeRecorded() ||
      NeedsConsentToSimulate(state_, link_, slot)) {
    return false;
  }
  if (link_.Simulated) {
    BeginSimulatedRows(slot);
  }
  if (state_.SampleCount[slot] > state_.SampleLimit[slot]) {
    EndFullSlot(slot);
    return false;
  }
  if (IsSetComplete(slot)) {
    return true;
  }
  if (state_.ColumnsInDoubt[slot]) {
    return columns_.Next(slot).kind != ColumnKeeper::Action::kWait;
  }
  while (state_.PumpChannel >= 1) {
    if (unit.IsRecorded(state_.PumpChannel) && !state_.SampleSeen[slot][state_.PumpChannel]) {
      return true;
    }
    --state_.PumpChannel;
  }
  return false;
}

// A slot that was to stop after one more set does so in the next file too.
void RecordingEngine::EndFullSlot(int slot) {
  const bool is_last_set = state_.ReadState[slot] == ReadState::kLastSet;
  state_.ReadState[slot] = ReadState::kIdle;
  EndOfRecording(slot);
  if (is_last_set && state_.ReadState[slot] == ReadState::kReading) {
    state_.ReadState[slot] = ReadState::kLastSet;
  }
}

void RecordingEngine::ReadOneSample() {
  if (ReadSampleOf(state_.PumpSlot, state_.PumpChannel).IsGood()) {
    --state_.PumpChannel;
  }
}

Reading RecordingEngine::ReadSampleOf(int slot, int channel) {
  // The instrument hands the value over whether or not its reply arrives.
  files_.KeepHeldSet(slot, channel);
  const auto asked = clock_.Elapsed();
  const Reading oldest = ReadAlone(link_, {state_.Unit[slot].UnitInet, reg::kOldestValue, channel});
  NoteExchange(slot, asked);
  if (!oldest.IsGood()) {
    NoteFailure(slot, channel);
    return oldest;
  }
  NoteSample(slot, channel, oldest.word, asked);
  if (oldest.word == kNoData) {
    // The inputs of a recording are sampled within one interval: those that have not been read
    // yet may have one value each.
    TakeBufferCount(slot, 1, asked);
  }
  const int simulated_word = channel * 10;
  TakeSample(slot, channel,
             link_.Simulated ? static_cast<std::int16_t>(simulated_word) : oldest.word);
  return oldest;
}

// A refusal is an answer too.
void RecordingEngine::NoteExchange(int slot, std::chrono::nanoseconds asked) {
  const bool has_answered =
      link_.ComResult == LinkResult::kGood || link_.ComResult == LinkResult::kRejected;
  if (has_answered) {
    order_.TakeAnswer(slot);
    NoteBack(slot, std::nullopt);
  } else {
    order_.TakeFailure(slot, asked);
    NoteSilence(slot, asked);
  }
}

// The journal does not tell of exchanges that fail for a short time, as on a bad line, but of an
// instrument that is away.
void RecordingEngine::NoteSilence(int slot, std::chrono::nanoseconds asked) {
  const auto since = silent_since_[slot].value_or(asked);
  silent_since_[slot] = since;
  if (asked - since < PumpOrder::kBadLine || is_silence_noted_[slot]) {
    return;
  }
  is_silence_noted_[slot] = true;
  files_.Journals().Note(slot, "silent",
                         {{"for", std::chrono::duration<double>(asked - since).count()}});
}

// `held`: sets that wait in the instrument, if it has said so.
void RecordingEngine::NoteBack(int slot, std::optional<int> held) {
  silent_since_[slot].reset();
  if (std::exchange(is_silence_noted_[slot], false)) {
    files_.Journals().Note(slot, "back", {{"held", held ? JsonValue(*held) : JsonValue()}});
  }
}

bool RecordingEngine::SendStopOrders() {
  const ControllerJournal::Actor actor(controllers_, "end action");
  return stop_orders_.SendDue();
}

// Asks how many sets wait for the slot.
void RecordingEngine::ReadBufferCount(int slot) {
  const int input = InputToCount(slot);
  const auto asked = clock_.Elapsed();
  const Reading count = ReadAlone(link_, {state_.Unit[slot].UnitInet, reg::kBuffered, input});
  if (count.IsGood()) {
    NoteBack(slot, SetsOf(slot, input, count.word));
    NoteWaiting(slot, input, count.word, asked);
    TakeBufferCount(slot, SetsOf(slot, input, count.word), asked);
    columns_.NoteStored(slot, input, count.word);
  } else if (count.status == LinkResult::kRejected) {
    order_.TakeRefusal(slot);
  } else {
    order_.TakeFailure(slot, asked);
    NoteSilence(slot, asked);
    state_.ReadState[slot] = ReadState::kWaiting;
  }
}

// An input whose value of the set in hand still waits counts that set too.
int RecordingEngine::InputToCount(int slot) const {
  int any = 0;
  for (int input = 1; input <= kInputs; ++input) {
    if (!state_.Unit[slot].IsRecorded(input)) {
      continue;
    }
    any = input;
    if (!state_.SampleSeen[slot][input]) {
      return input;
    }
  }
  return any;
}

// The sets of which something waits while `count` values wait for `input`.
int RecordingEngine::SetsOf(int slot, int input, int count) const {
  const bool is_half_read = HoldsSet(slot) && !IsSetComplete(slot);
  return is_half_read && state_.SampleSeen[slot][input] ? count + 1 : count;
}

void RecordingEngine::TakeBufferCount(int slot, int sets, std::chrono::nanoseconds asked) {
  order_.TakeReading(slot, sets, std::chrono::seconds(state_.RecInterval[slot]), asked);
}

void RecordingEngine::TakeUp(int slot, std::optional<std::int16_t> stored, Time asked) {
  const int reference = state_.Unit[slot].UnitRef;
  if (!stored || link_.Simulated || !state_.Unit[slot].IsRecorded(reference)) {
    order_.WantReading(slot);
    return;
  }
  NoteWaiting(slot, reference, *stored, asked);
  TakeBufferCount(slot, SetsOf(slot, reference, *stored), clock_.Elapsed());
  columns_.NoteStored(slot, reference, *stored);
}

void RecordingEngine::TakeSample(int slot, int channel, std::int16_t word) {
  if (word == kNoData) {
    state_.ReadState[slot] = ReadState::kWaiting;
    files_.KeepHeldSet(slot, 0);
    return;
  }
  state_.SampleSeen[slot][channel] = true;
  state_.SampleValue[slot][channel] = word;
  if (IsSetComplete(slot)) {
    WriteSet(slot);
    return;
  }
  files_.KeepHeldSet(slot, 0);
}

bool RecordingEngine::IsSetComplete(int slot) const {
  return HoldsWholeSet(state_, slot);
}

bool RecordingEngine::HoldsSet(int slot) const {
  return IsSlot(slot) && HoldsAnyOfSet(state_, slot);
}

// Writes the complete set in hand. If that fails the set stays in hand, the slot waits for the
// ten-second tick, and the user is told once.
void RecordingEngine::WriteSet(int slot) {
  if (!AppendSet(slot)) {
    state_.ReadState[slot] = ReadState::kWaiting;
    files_.KeepHeldSet(slot, 0);
    return;
  }
  if (!link_.Simulated) {
    order_.TakeSet(slot, clock_.Elapsed());
  }
  if (state_.ReadState[slot] == ReadState::kLastSet) {
    state_.ReadState[slot] = ReadState::kIdle;
  }
  CountBacklogDown(slot);
}

bool RecordingEngine::AppendSet(int slot) {
  const bool is_open = state_.SlotFileNo[slot].IsOpen();
  const bool was_told = state_.WriteFailed[slot];
  state_.WriteFailed[slot] = !files_.AppendSetInHand(slot);
  if (state_.WriteFailed[slot] != was_told) {
    files_.Journals().Note(slot, was_told ? "written again" : "refused",
                           {{"why", was_told ? "" : files_.Error()}});
  }
  if (!state_.WriteFailed[slot]) {
    columns_.SetWritten(slot);
    messages_.Recovered(slot);
    return true;
  }
  // Why a file is not open has been told when it was to be opened again.
  if (is_open && !was_told) {
    messages_.Report(slot, {state_.SlotFile[slot] + ": " + files_.ErrorText(), kWriteTitle});
  }
  return false;
}

void RecordingEngine::CountBacklogDown(int slot) {
  if (slot != state_.BacklogSlot) {
    return;
  }
  if (state_.BacklogCount <= kAboveBacklog) {
    HideBacklog(slot);
    return;
  }
  --state_.BacklogCount;
  state_.lbl_Info = BacklogText(state_.BacklogCount);
}

void RecordingEngine::HideBacklog(int slot) {
  if (slot == state_.BacklogSlot) {
    state_.BacklogCount = 0;
    state_.lbl_Info.clear();
  }
}

void RecordingEngine::TenSecondTick() {
  const Messages::Deferral deferral(messages_);
  stop_orders_.Repeat();
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (state_.SlotFile[slot].empty() || state_.ReadState[slot] == ReadState::kIdle) {
      continue;
    }
    // A medium that was pulled out and put back needs its file opened again before a write can
    // succeed. A full file needs not: what it waits for is the next one.
    const bool is_stale = state_.WriteFailed[slot] || !state_.SlotFileNo[slot].IsOpen();
    if (files_.IsFileLost(slot) || (is_stale && !WaitsForNextFile(slot))) {
      ReopenFile(slot);
    }
    columns_.Watch(slot);
    if (state_.ReadState[slot] == ReadState::kWaiting) {
      state_.ReadState[slot] = ReadState::kReading;
    }
  }
}

void RecordingEngine::FlushFiles() {
  const Messages::Deferral deferral(messages_);
  for (int slot = 1; slot <= kSlots; ++slot) {
    const bool is_recording = state_.ReadState[slot] != ReadState::kIdle;
    if (!state_.SlotFile[slot].empty() && (is_recording || state_.SlotDirty[slot])) {
      ReopenFile(slot);
    }
  }
}

// Opening by its name would give up the file that is open, which may be all that is left of it.
void RecordingEngine::ReopenFile(int slot) {
  if (state_.ReadState[slot] != ReadState::kIdle && files_.IsFileLost(slot)) {
    RestoreFile(slot);
    return;
  }
  const bool was_open = state_.SlotFileNo[slot].IsOpen();
  if (!files_.ReopenRecordingFile(slot)) {
    TellOfReopening(slot);
  } else if (!was_open) {
    messages_.Recovered(slot);
  }
}

void RecordingEngine::TellOfReopening(int slot) {
  if (state_.SlotFile[slot].empty()) {
    CloseGraphOf(slot);  // another program has it now, and that was told
    return;
  }
  messages_.Report(slot, {state_.SlotFile[slot] + ": " + files_.ErrorText(), kWriteTitle});
}

// While the next file cannot be made either, one of the two is told and not both in turn.
void RecordingEngine::RestoreFile(int slot) {
  const std::string old_name = state_.SlotFile[slot];
  const bool waits_for_next_file = WaitsForNextFile(slot);
  const auto told = files_.RestoreFile(slot);
  state_.WriteFailed[slot] = !told || waits_for_next_file;
  if (!told && !waits_for_next_file) {
    messages_.Report(slot, {old_name + ": " + files_.ErrorText(), kWriteTitle});
  }
  if (!told || told->empty()) {
    return;
  }
  messages_.Report(slot, {*told, kWriteTitle});
  if (state_.SlotFile[slot] != old_name) {
    static_cast<void>(SaveSettings(slot));
    CloseGraphOf(slot);
  }
}

std::optional<std::chrono::seconds> RecordingEngine::BuffersLast() const {
  std::optional<std::chrono::seconds> shortest;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (const auto time = BufferLasts(slot)) {
      shortest = std::min(shortest.value_or(*time), *time);
    }
  }
  return shortest;
}

std::optional<std::chrono::seconds> RecordingEngine::SilentBufferLasts(int slot) const {
  return IsSlot(slot) && is_silence_noted_[slot] ? BufferLasts(slot) : std::nullopt;
}

std::optional<std::chrono::seconds> RecordingEngine::BufferLasts(int slot) const {
  if (state_.ReadState[slot] == ReadState::kIdle || state_.SlotFile[slot].empty()) {
    return std::nullopt;
  }
  const int room = order_.Fill(slot).LeastRoom(clock_.Elapsed()).value_or(0);
  return std::chrono::seconds(std::int64_t{room} * state_.RecInterval[slot]);
}

// What is to be told to the user; empty if nothing is.
std::string RecordingEngine::RestoreIfLost(int slot) {
  if (!IsSlot(slot) || state_.Unit[slot].UnitRecOn != 1 || !files_.IsFileLost(slot)) {
    return "";
  }
  state_.SettingsChanged = true;  // they may have to name another file
  return files_.RestoreFile(slot).value_or("");
}

std::string RecordingEngine::SaveSetInHand(int slot) {
  const std::string text = RestoreIfLost(slot);
  const std::string unsaved = files_.SaveSetInHand(slot);
  return text.empty() || unsaved.empty() ? text + unsaved : text + "\n" + unsaved;
}

}  // namespace tavrel
