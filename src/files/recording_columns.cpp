#include <vector>

#include "files/recording_engine.h"
#include "files/recording_format.h"
#include "link/registers.h"

// What becomes of a recording when a value was lost on the line. The instrument hands each value
// over once; a reply that does not arrive takes its value with it. Its column would then run one
// set ahead of the others, silently and for good. Instead the loss is found by comparing what
// waits for each input, and the place of the lost value is filled with the one before it: all
// others stay in their rows and in their columns.
namespace tavrel {

namespace {

// The rest of a set that has not come after so many ticks is not late, it is gone.
constexpr int kTicksUntilLost = 3;

}  // namespace

// Sets up the comparison if it does not run yet. False while there is nothing to read for it.
// With a set in hand every input that is missing from it is doubted, otherwise only the one
// whose reading was cut off.
bool RecordingEngine::DoubtColumns(int slot) {
  const UnitRecord& unit = state_.Unit[slot];
  const bool holds_set = HoldsSet(slot);
  int base = 0;
  std::vector<int> doubted;
  for (int input = kInputs; input >= 1; --input) {
    if (!unit.IsRecorded(input)) {
      continue;
    }
    const bool is_doubted =
        holds_set ? !state_.SampleSeen[slot][input] : input == state_.AskedInput[slot];
    if (is_doubted) {
      doubted.push_back(input);
    } else if (base == 0) {
      base = input;
    }
  }
  if (base == 0) {
    doubted.clear();  // a single input has no other to compare it with
  }
  ColumnCheck& check = column_checks_[slot];
  if (!check.IsFor(base, doubted)) {
    check.Begin(base, doubted);
  }
  return check.IsDone() || check.NextInput(clock_.Elapsed()) != 0;
}

// One exchange of the comparison.
void RecordingEngine::CompareColumns(int slot) {
  ColumnCheck& check = column_checks_[slot];
  if (check.IsDone()) {
    EndComparison(slot);
    return;
  }
  link_.ComInet = state_.Unit[slot].UnitInet;
  link_.ComLetter = reg::kBuffered;
  link_.ComIndex = static_cast<std::int16_t>(check.NextInput(clock_.Elapsed()));
  const auto asked = clock_.Elapsed();
  link_.ReadReg();
  const bool is_good = link_.EndsWithReply();
  NoteExchange(slot, asked);
  if (is_good) {
    check.Take(link_.ComValue, clock_.Elapsed());
  } else if (link_.ComResult == LinkResult::kRejected) {
    check.GiveUp();
  } else {
    state_.ReadState[slot] = ReadState::kWaiting;
  }
}

// An input that is exactly one short has lost its value of the set in hand. A greater difference
// does not come from lost replies: these inputs were never sampled together.
void RecordingEngine::EndComparison(int slot) {
  ColumnCheck& check = column_checks_[slot];
  const int expected = state_.SampleSeen[slot][check.Base()] ? 0 : -1;
  // Where nothing waits for any input, the rest of the set may still be sampled.
  const int ticks = unfinished_[slot].ticks;
  const bool may_be_late = ticks > 0 && ticks < kTicksUntilLost && check.BaseCount() == 0;
  for (const int input : check.Doubted()) {
    const bool is_lost = check.HasVerdict() && !may_be_late && !state_.SampleSeen[slot][input] &&
                         check.Surplus(input) == expected;
    if (is_lost && !FillColumn(slot, input)) {
      state_.ReadState[slot] = ReadState::kWaiting;
      return;
    }
  }
  check = ColumnCheck();
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  files_.KeepHeldSet(slot, 0);
}

// False if there is no value to fill it with now.
bool RecordingEngine::FillColumn(int slot, int input) {
  const auto value = ValueBefore(slot, input);
  if (!value) {
    return false;
  }
  state_.SampleSeen[slot][input] = true;
  state_.SampleValue[slot][input] = *value;
  if (!was_told_of_loss_[slot]) {
    was_told_of_loss_[slot] = true;
    messages_.Report(slot, {state_.SlotFile[slot] +
                                ": values were lost on the line; the values before them stand "
                                "in their places",
                            "Read  Tavrel"});
  }
  return true;
}

// The value in the row before; before the first row the present one, as the instrument shows it.
std::optional<std::int16_t> RecordingEngine::ValueBefore(int slot, int input) {
  const std::int32_t rows = state_.SampleCount[slot];
  if (rows > 0) {
    int column = 0;
    for (int other = 1; other <= input; ++other) {
      column += state_.Unit[slot].IsRecorded(other) ? 1 : 0;
    }
    return files_.ReadSample(slot, rows - 1, column);
  }
  link_.ComInet = state_.Unit[slot].UnitInet;
  link_.ComLetter = reg::kPresentValue;
  link_.ComIndex = static_cast<std::int16_t>(input);
  link_.ReadReg();
  const bool has_value = link_.IsGood(link_.ComInet) && link_.ComValue != kNoData;
  return has_value ? std::optional(link_.ComValue) : std::nullopt;
}

// Called on the ten-second tick. A slot that fell asleep in the middle of a set found nothing
// for one of its inputs, though all are sampled in the same instants: the instrument may have
// been switched off in between. Its next values would be of a later set, so the columns are
// compared before any is read.
void RecordingEngine::WatchHeldSet(int slot) {
  Unfinished& unfinished = unfinished_[slot];
  const bool is_half_read = HoldsSet(slot) && !IsSetComplete(slot);
  if (!is_half_read || unfinished.sample_count != state_.SampleCount[slot]) {
    unfinished = {state_.SampleCount[slot], 0, is_half_read && unfinished.misses_rest};
  }
  if (unfinished.misses_rest && !state_.ColumnsInDoubt[slot]) {
    ++unfinished.ticks;
    unfinished.misses_rest = false;
    state_.ColumnsInDoubt[slot] = true;
    state_.AskedInput[slot] = 0;
  }
}

}  // namespace tavrel
