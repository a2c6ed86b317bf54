#include <algorithm>

#include "files/column_keeper.h"
#include "files/reasons.h"

// What the keeper of the columns does when the instrument was switched off and on. What it held is
// gone, and the series of all inputs begin anew in one set; but nobody knows at which moment it
// was. A set that was being read then has values of two sets in it, and so have those behind it:
// the columns are compared before anything else is read.
namespace tavrel {

namespace {

// One set for the moment of the restart, one for an exchange that has failed.
constexpr int kWidestShiftOfRestart = 2;

// What contradicts itself so often while the columns are compared cannot be compared.
constexpr int kMostRestarts = 8;

constexpr std::int32_t kMostQuestioned = 32000;  // rows; a file has no more

// From then on the interval may be another one than it is thought to be.
constexpr int kRestartsOfInterval = 3;

}  // namespace

// What the counts say cannot be: the slot reads nothing more until it is known why.
void ColumnKeeper::NoteConflict(int slot) {
  if (columns_[slot].evidence.SawRestart()) {
    state_.ColumnsInDoubt[slot] = true;
    KeepRestart(slot);
  }
}

// It was counted when it was seen: the clock may be too rough to tell one set.
void ColumnKeeper::NoteCleared(int slot, std::int64_t sets) {
  EvidenceOf(slot).SuspectRestart();
  columns_[slot].cleared += sets;
  NoteConflict(slot);
}

// The input that is read first has no data, as is to be expected.
void ColumnKeeper::NoteProof(int slot) {
  Column& column = columns_[slot];
  if (column.evidence.HasConflict() || column.proven.front() == state_.SampleCount[slot]) {
    return;
  }
  std::shift_right(column.proven.begin(), column.proven.end(), 1);
  column.proven.front() = state_.SampleCount[slot];
}

// The order of the inputs and the rows that are safe belong to what was before it.
void ColumnKeeper::KeepRestart(int slot) {
  ColumnMemory& memory = state_.Columns[slot];
  if (memory.Compared == ColumnMemory::Comparison::kRestart) {
    return;
  }
  const std::int32_t row = state_.SampleCount[slot];
  const std::int32_t questioned = row - std::min(columns_[slot].proven.back(), row);
  memory.Questioned = static_cast<std::uint16_t>(std::min(questioned, kMostQuestioned));
  memory.Order = SamplingOrder();
  KeepComparison(slot, ColumnMemory::Comparison::kRestart);
}

// An interval that the next counts contradict, too, is measured anew, unless the restart is proven
// without it. If that does not help either it was not the interval.
void ColumnKeeper::TakeRestart(int slot) {
  Column& column = columns_[slot];
  if (column.restarts == 0) {
    column.before = column.evidence;
    column.lost.reset();
    column.stored.reset();
  }
  ++column.restarts;
  column.full.End();
  column.doubted.clear();
  column.dropped.clear();
  column.is_suspicion = false;
  column.misses_since.reset();
  std::vector<int> seen;
  if (IsHalfRead(slot)) {
    seen = RecordedInputs(slot);
    std::erase_if(seen, [&](int input) { return !state_.SampleSeen[slot][input]; });
  }
  const bool is_last = column.restarts >= kMostRestarts;
  const bool is_proven = column.evidence.SawFall() || is_last;
  column.evidence.BeginAnew(seen, kWidestShiftOfRestart,
                            is_proven || column.restarts < kRestartsOfInterval);
  if (is_proven && !column.evidence.Interval().IsKnown()) {
    column.evidence.BelieveInterval(column.before->Interval());
  }
  if (is_last) {
    column.evidence.GiveUp();
  }
}

// An input whose next value is one set ahead has lost the one that is missing now; in the rows
// since the moment until which there was no restart its values may stand too early.
bool ColumnKeeper::CarryOutRestart(int slot) {
  Column& column = columns_[slot];
  int least = kWidestShiftOfRestart;
  for (const int input : RecordedInputs(slot)) {
    least =
        column.evidence.IsCertain(input) ? std::min(least, column.evidence.Ahead(input)) : least;
  }
  std::vector<int> lost;
  std::vector<int> uncertain;
  for (const int input : RecordedInputs(slot)) {
    const int ahead = column.evidence.Ahead(input) - least;
    if (!column.evidence.IsCertain(input) || ahead > 1 ||
        (ahead == 1 && state_.SampleSeen[slot][input])) {
      uncertain.push_back(input);
    } else if (ahead == 1) {
      lost.push_back(input);
    }
  }
  const std::int32_t row = state_.SampleCount[slot];
  const std::int32_t first = std::min(column.proven.back(), row);
  const bool is_before_hand = lost.empty() || !IsHalfRead(slot);
  if (!Fill(slot, lost)) {
    return false;
  }
  TellForgottenSets(slot, is_before_hand ? row : row + 1);
  state_.Columns[slot].Order = SamplingOrder();
  state_.Columns[slot].IsUncertain = {};
  for (const int input : uncertain) {
    column.evidence.MakeUncertain(input);
    state_.Columns[slot].IsUncertain[input] = true;
  }
  const bool was_cleared = column.cleared > 0;
  if (first < row) {
    Tell(slot, {first, row - 1}, lost,
         was_cleared ? reason::kClearedTooEarly : reason::kRestartedTooEarly, Mark::kQuestioned);
  }
  Tell(slot, {first, first}, uncertain,
       was_cleared ? reason::kClearedWrongRow : reason::kRestartedWrongRow, Mark::kOnward);
  EndDoubt(slot);
  return true;
}

BothLanguages ColumnKeeper::WhatHappened(int slot) const {
  return columns_[slot].cleared > 0 ? reason::kCleared : reason::kRestarted;
}

// Those that it held, and those that it did not make while it was off.
void ColumnKeeper::TellForgottenSets(int slot, std::int32_t row) {
  LostSets lost = CountLostSets(slot);
  lost.is_exact = false;
  CountFromNow(slot);
  const std::int64_t cleared = columns_[slot].cleared;
  if (cleared > 0) {
    lost.count = std::max(lost.count.value_or(0), cleared);
  }
  if (lost.count && *lost.count == 0 && lost.most == 0) {
    return;
  }
  // The series have begun anew at another moment of the interval.
  LostSets widened = lost;
  widened.least = std::max({lost.least - 1, cleared, std::int64_t{0}});
  widened.most = std::max(lost.most + 1, cleared + 2);
  NoteLostSets(slot, row, widened, {"restart", WhatHappened(slot)});
  messages_.Recovered(slot);  // as many may have been lost before the same row already
  TellSets(slot, row, WhatHappened(slot), lost);
}

}  // namespace tavrel
