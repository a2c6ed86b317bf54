#include <optional>
#include <utility>

#include "files/recording_engine.h"

// What the pump does where a simulated line and a real one meet. Values of the one must not
// complete a set of the other: the instrument would hand over the rest of its set later, and its
// columns would stand one set apart for good.
namespace tavrel {

// Called before anything is done for a slot on a simulated line.
void RecordingEngine::BeginSimulatedRows(int slot) {
  if (state_.SampleCount[slot] == 0) {
    state_.BegunInSimulation[slot] = true;
  }
  if (set_aside_[slot]) {
    return;
  }
  set_aside_[slot] =
      SetAside{state_.SlotFile[slot],
               {state_.SampleCount[slot], state_.AskedInput[slot], state_.SampleSeen[slot],
                state_.SampleValue[slot], state_.Columns[slot]}};
  EmptyHand(slot);
}

void RecordingEngine::LineOpened(bool was_simulated) {
  if (link_.Simulated) {
    return;
  }
  state_.SimulatedRowsAllowed = false;
  state_.BegunInSimulation.Fill(false);
  for (int slot = 1; was_simulated && slot <= kSlots; ++slot) {
    TakeSetBack(slot);
  }
}

void RecordingEngine::TakeSetBack(int slot) {
  const auto aside = std::exchange(set_aside_[slot], std::nullopt);
  if (!aside || state_.SlotFile[slot].empty()) {
    return;
  }
  EmptyHand(slot);
  if (aside->file == state_.SlotFile[slot]) {
    state_.SampleSeen[slot] = aside->held.Seen;
    state_.SampleValue[slot] = aside->held.Value;
    state_.AskedInput[slot] = aside->held.AskedInput;
    state_.Columns[slot] = aside->held.Columns;
    state_.Columns[slot].IsOpened = true;
    const bool is_compared = aside->held.Columns.Compared != ColumnMemory::Comparison::kNone;
    state_.ColumnsInDoubt[slot] = HoldsSet(slot) || aside->held.AskedInput != 0 || is_compared;
    files_.KeepHeldSet(slot, aside->held.AskedInput);
  }
}

void RecordingEngine::EmptyHand(int slot) {
  state_.SampleSeen[slot].Fill(false);
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  state_.WriteFailed[slot] = false;
  state_.Columns[slot] = ColumnMemory();
  state_.Columns[slot].IsOpened = true;
}

}  // namespace tavrel
