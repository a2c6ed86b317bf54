#include <algorithm>

#include "files/recording_engine.h"
#include "link/registers.h"

// What a user reads and writes of the series of a recording, past the cursor of the pump.
namespace tavrel {

std::optional<Reading> RecordingEngine::ReadSample(const std::vector<int>& takers, int input) {
  const Messages::Deferral deferral(messages_);
  int slot = std::clamp(state_.PumpSlot, 1, kSlots);
  for (int count = 1; count <= kSlots; ++count, slot = slot > 1 ? slot - 1 : kSlots) {
    const bool is_wanted = std::find(takers.begin(), takers.end(), slot) != takers.end();
    if (is_wanted && MayReadSample(slot, input)) {
      return ReadSampleOf(slot, input);
    }
  }
  for (const int each : takers) {
    Wake(each);
  }
  return std::nullopt;
}

bool RecordingEngine::MayReadSample(int slot, int input) const {
  const auto now = clock_.Elapsed();
  const bool counts_first = order_.WantsReading(slot, now) ||
                            (order_.MayHaveDropped(slot, now) && !columns_.IsStillFull(slot));
  return !IsHeldUp(slot) && !counts_first && state_.Unit[slot].IsRecorded(input) &&
         !state_.SampleSeen[slot][input];
}

// No value can be taken from the instrument now.
bool RecordingEngine::IsHeldUp(int slot) const {
  return state_.ReadState[slot] == ReadState::kIdle || state_.SlotFile[slot].empty() ||
         !state_.Unit[slot].CanBeRecorded() ||
         state_.SampleCount[slot] > state_.SampleLimit[slot] || IsSetComplete(slot) ||
         state_.ColumnsInDoubt[slot];
}

// A set that could not be written, or a next file that could not be made, is left to the
// ten-second tick, and so is an instrument that does not answer.
void RecordingEngine::Wake(int slot) {
  const bool waits = state_.ReadState[slot] == ReadState::kWaiting && !IsSetComplete(slot);
  if (waits && !WaitsForNextFile(slot) && link_.IsGood(state_.Unit[slot].UnitInet)) {
    state_.ReadState[slot] = ReadState::kReading;
  }
}

bool RecordingEngine::MayWriteSeries(const std::vector<int>& takers, int input) const {
  return std::all_of(takers.begin(), takers.end(), [this, input](int slot) {
    const ColumnMemory& memory = state_.Columns[slot];
    return !IsHeldUp(slot) && memory.Owed[input] == 0 && memory.Repeats[input] == 0;
  });
}

LinkResult RecordingEngine::WriteSeries(const SeriesWrite& write) {
  for (const int slot : write.takers) {
    files_.KeepHeldSet(slot, write.to.index);
  }
  const LinkResult written = Write(link_, write.to, write.word);
  const bool is_refused = link_.EndsWithRefusal();
  for (const int slot : write.takers) {
    if (!is_refused) {
      NoteSeriesWrite(slot, write, IsGood(written));
    }
    files_.KeepHeldSet(slot, is_refused ? 0 : state_.AskedInput[slot]);
  }
  return written;
}

// A series that is started anew leaves out some samples before its first one; what a write of X
// does is the firmware's own affair. A sampling time that is another one afterwards cannot be made
// up for.
void RecordingEngine::NoteSeriesWrite(int slot, const SeriesWrite& write, bool is_certain) {
  constexpr int kMostLeftOut = 3;
  const int input = write.to.index;
  if (write.to.letter == reg::kOldestValue) {
    columns_.Dropped(slot, input, 0, 1);
  } else if (write.to.letter == reg::kSampling && write.word != state_.Unit[slot].UnitInterval) {
    columns_.Unsettle(slot, input);
  } else {
    const bool is_cleared = is_certain && write.to.letter == reg::kBuffered && write.word == 0;
    columns_.Dropped(slot, input, is_cleared ? write.stored : 0, write.stored + kMostLeftOut);
  }
}

}  // namespace tavrel
