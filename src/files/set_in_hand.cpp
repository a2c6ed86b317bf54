#include "files/set_in_hand.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>

#include "files/file_texts.h"
#include "files/held_set.h"
#include "files/reasons.h"
#include "files/recording_file.h"
#include "platform/file_system.h"
#include "state/box_titles.h"
#include "state/user_language.h"

namespace tavrel {

namespace {

// Inputs of the set that have arrived.
int SeenInputs(const RunState& state, int slot) {
  int seen = 0;
  for (int input = 1; input <= kInputs; ++input) {
    const bool has_come = state.SampleSeen[slot][input];
    seen += state.Unit[slot].IsRecorded(input) && has_come ? 1 : 0;
  }
  return seen;
}

// For writing. A link in its place goes, so that nobody's file behind it is written over.
bool OpenHeldSet(RandomFile& file, const std::string& path) {
  DeleteLink(path);
  return file.Open(path, FileAccess::kCreate);
}

}  // namespace

bool HoldsWholeSet(const RunState& state, int slot) {
  const int recorded = state.Unit[slot].RecordedInputs();
  return recorded > 0 && SeenInputs(state, slot) == recorded;
}

bool HoldsAnyOfSet(const RunState& state, int slot) {
  return SeenInputs(state, slot) > 0;
}

// A recording that was cut off goes on with what it held. Where rows are missing at the end of the
// file they were lost with the power: the values that are held belong behind them all the same, for
// the instrument has handed them over.
void RecordingFiles::TakeHeldSet(int slot, const std::optional<HeldSet>& held) {
  if (!held || held->SampleCount < state_.SampleCount[slot]) {
    KeepOrderOf(slot, held);
    return;
  }
  state_.Columns[slot] = held->Columns;
  state_.Columns[slot].IsOpened = true;
  TellLostRows(slot, held->SampleCount);
  bool any_seen = false;
  for (int input = 1; input <= kInputs; ++input) {
    const bool is_seen = held->Seen[input] && state_.Unit[slot].IsRecorded(input);
    state_.SampleSeen[slot][input] = is_seen;
    state_.SampleValue[slot][input] = held->Value[input];
    any_seen = any_seen || is_seen;
  }
  const bool is_asked = held->AskedInput != 0 && state_.Unit[slot].IsRecorded(held->AskedInput);
  state_.AskedInput[slot] = is_asked ? held->AskedInput : 0;
  const bool is_compared = held->Columns.Compared != ColumnMemory::Comparison::kNone;
  state_.ColumnsInDoubt[slot] = any_seen || is_asked || is_compared;
}

// A held set of an earlier row tells nothing about the set in hand, but the order in which the
// inputs are sampled is the same in all sets, and so is what is uncertain.
void RecordingFiles::KeepOrderOf(int slot, const std::optional<HeldSet>& held) {
  if (!held) {
    return;
  }
  ColumnMemory& columns = state_.Columns[slot];
  columns.Order = held->Columns.Order;
  columns.IsUncertain = held->Columns.IsUncertain;
  const std::int64_t rows = state_.SampleCount[slot] - held->SampleCount;
  if (held->Columns.LastSet != 0) {
    columns.LastSet = held->Columns.LastSet + rows * state_.RecInterval[slot];
  }
}

std::optional<HeldSet> RecordingFiles::ReadHeldSet(int slot) {
  RandomFile file;
  std::array<std::byte, kHeldSetBytes + 1> bytes{};
  if (!file.Open(HeldSetPath(slot), FileAccess::kRead)) {
    return std::nullopt;
  }
  const std::int64_t got = file.ReadAt(0, bytes);
  return got > 0 ? DecodeHeldSet(std::span(bytes).first(static_cast<std::size_t>(got)))
                 : std::nullopt;
}

void RecordingFiles::TellLostRows(int slot, std::int32_t rows) {
  const std::int32_t lost = rows - state_.SampleCount[slot];
  if (lost <= 0) {
    return;
  }
  // The first set of a file stands in it twice.
  const std::int32_t sets = state_.SampleCount[slot] == 0 && lost > 1 ? lost - 1 : lost;
  journals_.Note(slot, "lost",
                 {{"before", state_.SampleCount[slot]},
                  {"sets", sets},
                  {"exact", true},
                  {"least", sets},
                  {"most", sets},
                  {"cause", "power"},
                  {"what", std::string(reason::kPowerOff.English)}});
  const BothLanguages& text = lost == 1 ? file_text::kRowLost : file_text::kRowsLost;
  const std::string row = std::to_string(state_.SampleCount[slot]);
  messages_.Report(
      slot, {text.Text(UserLanguage(state_), {state_.SlotFile[slot], row, std::to_string(lost)}),
             kReadTitle});
}

std::string RecordingFiles::HeldSetPath(int slot) const {
  return JoinPath(state_.SlotPath[slot], HeldSetName(state_.SlotFile[slot]));
}

// Simulated values are not worth keeping, and what is kept of an instrument's set stays.
bool RecordingFiles::KeepHeldSet(int slot, int asked_input) {
  if (state_.SimulatedRowsAllowed || state_.BegunInSimulation[slot]) {
    return false;
  }
  RandomFile& file = held_set_files_[slot];
  if (!file.IsOpen() && !OpenHeldSet(file, HeldSetPath(slot))) {
    return false;
  }
  const HeldSetBytes bytes =
      EncodeHeldSet({state_.SampleCount[slot], asked_input, state_.SampleSeen[slot],
                     state_.SampleValue[slot], state_.Columns[slot], journals_.LacksLines(slot)});
  if (!file.WriteAt(0, std::as_bytes(std::span(bytes)))) {
    file.Close();
    return false;
  }
  return true;
}

// What is held goes along into the next file.
void RecordingFiles::HandHeldSetOn(int slot, const std::string& name) {
  const int asked = state_.ColumnsInDoubt[slot] ? state_.AskedInput[slot] : 0;
  const HeldSetBytes bytes = EncodeHeldSet(
      {0, asked, state_.SampleSeen[slot], state_.SampleValue[slot], state_.Columns[slot]});
  RandomFile file;
  if (OpenHeldSet(file, JoinPath(state_.SlotPath[slot], HeldSetName(name)))) {
    static_cast<void>(file.WriteAt(0, std::as_bytes(std::span(bytes))));
  }
}

void RecordingFiles::ReleaseHeldSet(int slot) {
  const auto& seen = state_.SampleSeen[slot];
  const bool any_seen = std::find(seen.begin(), seen.end(), true) != seen.end();
  const bool is_needed = any_seen || state_.ColumnsInDoubt[slot] ||
                         state_.Columns[slot].IsNeeded() || journals_.LacksLines(slot);
  if (state_.Unit[slot].UnitRecOn != 1) {
    return;  // what lies there belongs to a set that the disk has refused
  }
  if (is_needed) {
    KeepHeldSet(slot, state_.ColumnsInDoubt[slot] ? state_.AskedInput[slot] : 0);
  } else {
    DropHeldSet(slot);
  }
}

void RecordingFiles::DropHeldSet(int slot) {
  held_set_files_[slot].Close();
  if (state_.SlotFile[slot].empty()) {
    return;
  }
  // A file that stays where it cannot be deleted is out of date with the next row.
  static_cast<void>(DeleteFile(HeldSetPath(slot)));
}

bool RecordingFiles::AppendSetInHand(int slot) {
  const UnitRecord& unit = state_.Unit[slot];
  std::array<std::int16_t, kInputs> words{};
  std::size_t count = 0;
  for (int input = 1; input <= kInputs; ++input) {
    if (unit.IsRecorded(input)) {
      words[count] = state_.SampleValue[slot][input];
      ++count;
    }
  }
  // The first set of a file stands in it twice.
  const int copies = state_.SampleCount[slot] + 1 <= 2 ? 2 : 1;
  if (!AppendRow(slot, std::span(words.data(), count), copies)) {
    return false;
  }
  state_.SampleSeen[slot].Fill(false);
  return true;
}

// A medium that was pulled out and put back needs its file opened again before a write succeeds.
std::string RecordingFiles::SaveSetInHand(int slot) {
  if (!IsSlot(slot) || state_.SlotFile[slot].empty() || !HoldsWholeSet(state_, slot)) {
    return "";
  }
  if (AppendSetInHand(slot) || (ReopenRecordingFile(slot) && AppendSetInHand(slot))) {
    DropHeldSet(slot);
    return "";
  }
  if (state_.SlotFile[slot].empty()) {
    return "";  // another program has the file, and with it what is kept beside it
  }
  const std::string why = ErrorText();
  RandomFile& held = held_set_files_[slot];
  if (held.IsNameless()) {
    held.Close();
  }
  const bool is_kept = KeepHeldSet(slot, 0) && held.Sync();
  const BothLanguages& text = is_kept ? file_text::kSetKept : file_text::kSetLost;
  return text.Text(UserLanguage(state_), {state_.SlotFile[slot], why});
}

// What a stop had to leave beside the file is its next row. If the disk refuses it again it is in
// hand from now on.
void RecordingFiles::TakeRefusedSet(int slot) {
  TakeHeldSet(slot, ReadHeldSet(slot));
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  if (!HoldsWholeSet(state_, slot)) {
    state_.SampleSeen[slot].Fill(false);
  } else if (AppendSetInHand(slot)) {
    DropHeldSet(slot);
  }
}

}  // namespace tavrel
