#include <algorithm>
#include <utility>

#include "files/column_keeper.h"
#include "files/reasons.h"

// What the keeper of the columns does when the user has made the instrument drop values of one
// input. The series of that input may begin anew behind a pause: nothing can be judged before its
// next sample is there. What is gone then is filled in, so that no later value stands in a wrong
// row.
namespace tavrel {

namespace {

constexpr int kLooksInAnInterval = 48;
constexpr int kLongestPause = 4;  // intervals; then the series does not come again

}  // namespace

void ColumnKeeper::Dropped(int slot, int input, int least, int most) {
  static_cast<void>(EvidenceOf(slot));
  Column& column = columns_[slot];
  state_.AskedInput[slot] = input;
  state_.ColumnsInDoubt[slot] = true;
  column.is_suspicion = false;
  column.refusals = 0;
  column.dropped.push_back({input, least, most, clock_.Elapsed()});
  state_.Columns[slot].IsDropped[input] = most > 1;
  column.look_at_dropped = {};
  column.doubted.push_back(input);
}

// The program before this one has ended before they were made up for: how many there were is gone
// with it.
void ColumnKeeper::TakeUpDropped(int slot) {
  std::vector<int> dropped;
  for (const int input : RecordedInputs(slot)) {
    if (!std::exchange(state_.Columns[slot].IsDropped[input], false)) {
      continue;
    }
    dropped.push_back(input);
    columns_[slot].evidence.MakeUncertain(input);
    state_.Columns[slot].IsUncertain[input] = true;
    state_.AskedInput[slot] = state_.AskedInput[slot] == input ? 0 : state_.AskedInput[slot];
  }
  Tell(slot, dropped, reason::kMoreMayBeDropped, Mark::kOnward);
}

void ColumnKeeper::Unsettle(int slot, int input) {
  EvidenceOf(slot).MakeUncertain(input);
  state_.Columns[slot].IsUncertain[input] = true;
  Tell(slot, std::vector<int>{input}, reason::kSamplingChanged, Mark::kOnward);
}

// The next one whose series has not gone on yet; null if there is none.
const ColumnKeeper::DroppedSeries* ColumnKeeper::AwaitedSeries(int slot) const {
  const auto& dropped = columns_[slot].dropped;
  const auto awaited = std::find_if(dropped.begin(), dropped.end(),
                                    [](const DroppedSeries& each) { return !each.is_doubted; });
  return awaited == dropped.end() ? nullptr : &*awaited;
}

void ColumnKeeper::CountDropped(int slot, int input, int count, Time now) {
  Column& column = columns_[slot];
  const std::chrono::seconds interval(state_.RecInterval[slot]);
  column.look_at_dropped = now + Time(interval) / kLooksInAnInterval;
  for (DroppedSeries& dropped : column.dropped) {
    if (dropped.input != input || dropped.is_doubted) {
      continue;
    }
    if (count > 0) {
      dropped.is_doubted = true;
      column.evidence.Doubt(input, dropped.least, dropped.most);
    } else if (now - dropped.since > kLongestPause * interval) {
      GiveUpDropped(slot);
    }
  }
}

void ColumnKeeper::GiveUpDropped(int slot) {
  for (DroppedSeries& dropped : columns_[slot].dropped) {
    if (!dropped.is_doubted) {
      dropped.is_doubted = true;
      columns_[slot].evidence.MakeUncertain(dropped.input);
    }
  }
}

bool ColumnKeeper::CarryOutDropped(int slot) {
  Column& column = columns_[slot];
  while (!column.dropped.empty()) {
    const DroppedSeries dropped = column.dropped.back();
    const auto verdict = column.evidence.VerdictOf(dropped.input);
    const bool is_lost = verdict == ColumnEvidence::Verdict::kLost;
    const bool is_uncertain = verdict == ColumnEvidence::Verdict::kUncertain;
    const int gone = is_lost ? column.evidence.Ahead(dropped.input) : dropped.least;
    if ((is_lost || is_uncertain) && gone > 0 && !MakeUp(slot, dropped.input, gone)) {
      return false;
    }
    std::erase(column.doubted, dropped.input);
    column.dropped.pop_back();
    if (is_uncertain) {
      state_.Columns[slot].IsUncertain[dropped.input] = true;
      Tell(slot, std::vector<int>{dropped.input}, reason::kMoreMayBeDropped, Mark::kOnward);
    }
  }
  return true;
}

// The rows of `count` sets from the `first` one on; 0 is the set in hand. The first set of a file
// stands in it twice.
RowRange ColumnKeeper::RowsOfSets(int slot, int first, int count) const {
  const std::int32_t row = state_.SampleCount[slot];
  const int doubled = row == 0 ? 1 : 0;
  return {row + (first == 0 ? 0 : first + doubled), row + first + count - 1 + doubled};
}

// Puts the value before in the place of `gone` values of the input, the next one where there is
// none. False, and nothing is filled, if it cannot be read now.
bool ColumnKeeper::MakeUp(int slot, int input, int gone) {
  ColumnMemory& memory = state_.Columns[slot];
  const bool is_seen = state_.SampleSeen[slot][input];
  const bool is_first = memory.IsFirstSet || state_.SampleCount[slot] == 0;
  if (is_seen) {
    memory.Repeats[input] = static_cast<std::uint8_t>(gone);
  } else if (is_first) {
    memory.Owed[input] = static_cast<std::uint8_t>(memory.Owed[input] + gone);
  } else {
    const auto value = ValueBefore(slot, input);
    if (!value) {
      return false;
    }
    state_.SampleSeen[slot][input] = true;
    state_.SampleValue[slot][input] = *value;
    memory.Repeats[input] = static_cast<std::uint8_t>(gone - 1);
  }
  Tell(slot, RowsOfSets(slot, is_seen ? 1 : 0, gone), {input},
       is_first && !is_seen ? reason::kClearedNextStands : reason::kClearedValueBeforeStands,
       Mark::kFilledForUser);
  return true;
}

}  // namespace tavrel
