#include "service/buffer_watch.h"

#include "link/register_access.h"
#include "link/registers.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kWatchTime{10};
constexpr std::chrono::milliseconds kPause{100};  // between two looks

// The input that is read last: of a set that is being read it still has its sample.
int WatchedInput(const UnitRecord& unit) {
  int input = 1;
  while (input < kInputs && !unit.IsRecorded(input)) {
    ++input;
  }
  return input;
}

}  // namespace

void BufferWatch::Begin(int inet) {
  if (inet < 1 || inet > kInets || link_.Simulated) {
    return;
  }
  const bool is_new = until_[inet] <= clock_.Elapsed();
  until_[inet] = clock_.Elapsed() + kWatchTime;
  for (int slot = 1; slot <= kSlots && is_new; ++slot) {
    if (state_.Unit[slot].UnitInet == inet) {
      counted_[slot] = Count();
    }
  }
}

bool BufferWatch::IsWatched(int slot) const {
  const UnitRecord& unit = state_.Unit[slot];
  const bool is_inet = unit.UnitInet >= 1 && unit.UnitInet <= kInets;
  return is_inet && until_[unit.UnitInet] > clock_.Elapsed() && !state_.SlotFile[slot].empty() &&
         unit.UnitRecOn == 1 && unit.RecordedInputs() > 0;
}

int BufferWatch::NextSlot() {
  for (int step = 1; step <= kSlots; ++step) {
    const int slot = (last_slot_ + step - 1) % kSlots + 1;
    if (IsWatched(slot)) {
      return slot;
    }
  }
  return 0;
}

bool BufferWatch::Look() {
  if (clock_.Elapsed() < next_look_ || !link_.PortOpen || link_.Simulated) {
    return false;
  }
  const int slot = NextSlot();
  if (slot == 0) {
    return false;
  }
  last_slot_ = slot;
  next_look_ = clock_.Elapsed() + kPause;
  if (state_.ColumnsInDoubt[slot]) {  // nobody knows what was read
    counted_[slot] = Count();
    return false;
  }
  const UnitRecord& unit = state_.Unit[slot];
  const int input = WatchedInput(unit);
  const Reading stored = ReadAlone(link_, Register{unit.UnitInet, reg::kBuffered, input});
  if (stored.IsGood() && stored.word >= 0) {
    Compare(slot,
            state_.SampleCount[slot] + (state_.SampleSeen[slot][input] ? 1 : 0) + stored.word);
  }
  return true;
}

void BufferWatch::Compare(int slot, std::int64_t sets) {
  Count& before = counted_[slot];
  const std::int64_t gone = before.is_known ? before.sets - sets : 0;
  before = {true, sets};
  if (gone > 0) {
    engine_.NoteCleared(slot, gone);
    before = Count();
  }
}

}  // namespace tavrel
