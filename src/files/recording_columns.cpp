#include <optional>

#include "files/recording_engine.h"
#include "files/recording_format.h"
#include "link/register_access.h"
#include "link/registers.h"

// The exchanges that keep the columns of the recordings side by side; what they mean is judged in
// column_keeper.cpp.
namespace tavrel {

void RecordingEngine::NoteSample(int slot, int channel, std::int16_t word, Time asked) {
  if (link_.Simulated) {
    return;
  }
  const ColumnKeeper::Exchange when{asked, clock_.Elapsed()};
  if (word == kNoData) {
    columns_.Empty(slot, channel, when);
    NoteDrained(slot, channel, when);
  } else {
    columns_.Taken(slot, channel, when);
  }
}

bool RecordingEngine::IsReadFirst(int slot, int channel) const {
  for (int input = channel + 1; input <= kInputs; ++input) {
    if (state_.Unit[slot].IsRecorded(input)) {
      return false;
    }
  }
  return true;
}

// The input that is read first tells that the instrument holds no set, if none is in hand.
void RecordingEngine::NoteDrained(int slot, int channel, const ColumnKeeper::Exchange& when) {
  if (IsReadFirst(slot, channel) && !HoldsSet(slot) && !state_.ColumnsInDoubt[slot]) {
    files_.Journals().Drained(slot, when.answered - when.asked);
  }
}

// The sets that are in no row yet. The samples of a set are made within one interval, so that of
// the input that is read first, by which all sets are counted, one more or one fewer may wait. A
// full buffer says nothing.
void RecordingEngine::NoteWaiting(int slot, int input, int count, Time asked) {
  const bool is_clear = !IsSetComplete(slot) && !state_.ColumnsInDoubt[slot];
  if (!is_clear || count < 0 || count >= kBufferSets) {
    return;
  }
  const int beside = IsReadFirst(slot, input) ? 0 : 1;
  const int sets = SetsOf(slot, input, count);
  if (sets > beside) {
    files_.Journals().Counted(slot, sets - beside, sets + beside, clock_.Elapsed() - asked);
  }
}

// The value is still there if the instrument has refused the command, and only then.
void RecordingEngine::NoteFailure(int slot, int channel) {
  state_.ReadState[slot] = ReadState::kWaiting;
  if (!link_.EndsWithRefusal()) {
    columns_.Failed(slot, channel);
  }
}

void RecordingEngine::DoubtInput(const std::vector<int>& slots, int input) {
  for (const int slot : slots) {
    files_.KeepHeldSet(slot, input);
    columns_.Failed(slot, input);
  }
}

// One exchange for columns that are in doubt, or the end of the doubt.
void RecordingEngine::MendColumns(int slot) {
  const ColumnKeeper::Action action = columns_.Next(slot);
  switch (action.kind) {
    case ColumnKeeper::Action::kWait:
      return;
    case ColumnKeeper::Action::kCount:
      CountForColumns(slot, action.input);
      return;
    case ColumnKeeper::Action::kDiscard:
      DiscardForColumns(slot, action.input);
      return;
    case ColumnKeeper::Action::kDecide:
      if (!columns_.Decide(slot)) {
        state_.ReadState[slot] = ReadState::kWaiting;
      }
      return;
  }
}

// Reads a register of the input. Empty if it failed; the columns were
// told then.
std::optional<RecordingEngine::TimedWord> RecordingEngine::ReadForColumns(int slot,
                                                                          const char* letter,
                                                                          int input) {
  const Time asked = clock_.Elapsed();
  const Reading reading = ReadAlone(link_, {state_.Unit[slot].UnitInet, letter, input});
  NoteExchange(slot, asked);
  if (reading.IsGood()) {
    return TimedWord{reading.word, {asked, clock_.Elapsed()}};
  }
  const bool is_refused = link_.EndsWithRefusal();
  columns_.NotCounted(slot, is_refused);
  state_.ReadState[slot] = is_refused ? state_.ReadState[slot] : ReadState::kWaiting;
  return std::nullopt;
}

void RecordingEngine::CountForColumns(int slot, int input) {
  if (const auto count = ReadForColumns(slot, reg::kBuffered, input)) {
    TakeBufferCount(slot, SetsOf(slot, input, count->word), count->when.asked);
    columns_.Counted(slot, input, count->word, count->when);
  }
}

void RecordingEngine::DiscardForColumns(int slot, int input) {
  if (const auto value = ReadForColumns(slot, reg::kOldestValue, input)) {
    columns_.Discarded(slot, input, value->word != kNoData, value->when);
  }
}

// While the pump has nothing to do the first samples of a recording are watched.
void RecordingEngine::LearnOrder() {
  const int slot = link_.Simulated || !link_.IsSettled() ? 0 : columns_.SlotToLearn();
  if (slot == 0) {
    return;
  }
  const int input = columns_.InputToLearn(slot);
  const Time asked = clock_.Elapsed();
  const Reading count = ReadAlone(link_, {state_.Unit[slot].UnitInet, reg::kBuffered, input});
  if (count.IsGood()) {
    columns_.Counted(slot, input, count.word, {asked, clock_.Elapsed()});
  } else {
    columns_.NotLearned(slot);
  }
}

}  // namespace tavrel
