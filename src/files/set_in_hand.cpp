#include "files/set_in_hand.h"

#include <array>
#include <span>
#include <string>

#include "files/file_texts.h"
#include "files/recording_file.h"
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

}  // namespace

bool HoldsWholeSet(const RunState& state, int slot) {
  const int recorded = state.Unit[slot].RecordedInputs();
  return recorded > 0 && SeenInputs(state, slot) == recorded;
}

bool HoldsAnyOfSet(const RunState& state, int slot) {
  return SeenInputs(state, slot) > 0;
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
