#include <algorithm>
#include <utility>

#include "files/column_keeper.h"
#include "files/file_texts.h"
#include "files/reasons.h"
#include "files/recording_format.h"

// What the keeper of the columns does about a full buffer, and how many sets it has cost.
namespace tavrel {

namespace {

// A full buffer has lost at most so many samples more of one input than of another: one by the
// order in which they are sampled, one for each exchange that failed while room was made.
constexpr int kWidestShiftOfFullBuffer = 5;

// Room of two sets is enough where an interval is long and the order is known: one more is made
// while the inputs are compared.
constexpr int kSetsOfKnownOrder = 2;
constexpr int kLongInterval = 10;  // seconds

// A wall clock's time as a count of seconds.
std::int64_t WallSeconds(const WallTime& time) {
  using std::chrono::day;
  using std::chrono::month;
  using std::chrono::year;
  const std::chrono::sys_days date = year(time.Year) / month(static_cast<unsigned>(time.Month)) /
                                     day(static_cast<unsigned>(time.Day));
  const std::int64_t days = date.time_since_epoch().count();
  return (((days * 24 + time.Hour) * 60 + time.Minute) * 60) + time.Second;
}

}  // namespace

void ColumnKeeper::NoteStored(int slot, int input, int count) {
  if (MayBeFull(slot, input, count)) {
    BeginFull(slot, input);
  }
}

void ColumnKeeper::BeginFull(int slot, int input) {
  const ColumnEvidence& evidence = EvidenceOf(slot);
  Column& column = columns_[slot];
  if (column.full.At() != FullBuffer::Stage::kIdle) {
    return;
  }
  if (column.restarts == 0) {
    column.before = evidence;
  }
  column.restarts = 0;
  column.is_suspicion = false;
  column.doubted.clear();
  KeepComparison(slot, ColumnMemory::Comparison::kFullBuffer);
  const int sets = SetsOfRoom(slot);
  column.full.Begin(RecordedInputs(slot), sets);
  state_.ColumnsInDoubt[slot] = true;
  if (sets == 0) {
    CompareFull(slot);
    NoteStillFull(slot, input);
  }
}

// Where fewer than two columns are certain there is nothing to compare, and no set is given up.
int ColumnKeeper::SetsOfRoom(int slot) const {
  const ColumnEvidence& evidence = columns_[slot].evidence;
  const std::vector<int> inputs = RecordedInputs(slot);
  const auto certain = std::count_if(inputs.begin(), inputs.end(),
                                     [&](int each) { return evidence.IsCertain(each); });
  if (certain < 2) {
    return 0;
  }
  const bool is_long = state_.RecInterval[slot] >= kLongInterval;
  return is_long && evidence.IsOrderKnown() ? kSetsOfKnownOrder : FullBuffer::kMostSets;
}

// A full buffer seen in a doubt: room is made first. One that is full again before it is decided
// cannot be compared: further sets would be given up for nothing.
void ColumnKeeper::CountFull(int slot, int input) {
  Column& column = columns_[slot];
  if (column.full.At() == FullBuffer::Stage::kIdle || std::exchange(column.may_make_room, false)) {
    column.full.End();
    BeginFull(slot, input);
    return;
  }
  column.evidence.GiveUp();
  if (!column.stored) {
    NoteStillFull(slot, input);
  }
}

// Counts what the full buffer or the restart has cost: `count` values of the input were left at
// that time. Series that begin anew have their samples at other moments of the interval, so that a
// later count may hide a set that is lost: it says more only where it says more sets.
void ColumnKeeper::NoteLost(int slot, int input, int count, Time when) {
  Column& column = columns_[slot];
  const int row = IsHalfRead(slot) && !state_.SampleSeen[slot][input] ? 1 : 0;
  const int stored = count + row;
  const auto lost = column.before->MadeSince(input, when);
  if (column.restarts > 0 && column.stored && !SaysMoreLost(slot, lost, stored, when)) {
    return;
  }
  column.stored = stored;
  column.counted = when;
  column.lost = lost;
}

// Where the clock does not tell what was made since, the interval of the header does.
bool ColumnKeeper::SaysMoreLost(int slot, const std::optional<ColumnEvidence::Range>& lost,
                                int stored, Time when) const {
  const Column& column = columns_[slot];
  if (lost.has_value() != column.lost.has_value()) {
    return false;
  }
  const auto since = std::chrono::floor<std::chrono::seconds>(when - column.counted);
  const std::int64_t made =
      lost ? lost->least - column.lost->least : since.count() / state_.RecInterval[slot];
  return made > stored - *column.stored;
}

// As long as the buffer stays full it may lose one set more until the next value is read.
void ColumnKeeper::NoteStillFull(int slot, int input) {
  NoteLost(slot, input, kBufferSets, clock_.Elapsed());
  Column& column = columns_[slot];
  if (column.lost) {
    ++column.lost->most;
  }
  column.is_still_full = true;
}

ColumnKeeper::Action ColumnKeeper::NextOfFull(int slot) {
  Column& column = columns_[slot];
  if (column.full.Input() != 0) {
    return {Action::kDiscard, column.full.Input()};
  }
  if (!column.evidence.AnyDoubt()) {
    return {Action::kDecide, 0};
  }
  const auto look = column.evidence.NextLook();
  const bool is_due = look.input != 0 && look.not_before <= clock_.Elapsed();
  return is_due ? Action{Action::kCount, look.input} : Action{};
}

void ColumnKeeper::Discarded(int slot, int input, bool had_value, const Exchange& when) {
  Column& column = columns_[slot];
  const bool is_aligning = column.full.At() == FullBuffer::Stage::kAlign;
  if (is_aligning && had_value) {
    column.evidence.NoteTaken(input, when);
  }
  column.full.TakeInput();
  if (!is_aligning && column.full.At() == FullBuffer::Stage::kCompare) {
    CompareFull(slot);
  }
}

// The program before this one has ended meanwhile. Nobody knows what it had given up to make room,
// or whether any room was made.
void ColumnKeeper::CompareAgain(int slot) {
  Column& column = columns_[slot];
  column.before = column.evidence;
  if (state_.Columns[slot].Compared == ColumnMemory::Comparison::kRestart) {
    const std::int32_t rows = state_.SampleCount[slot];
    column.proven.fill(std::max(rows - state_.Columns[slot].Questioned, 0));
    column.evidence.SuspectRestart();
    return;
  }
  column.may_make_room = true;
  CompareFull(slot);
}

void ColumnKeeper::CompareFull(int slot) {
  Column& column = columns_[slot];
  column.lost.reset();
  column.stored.reset();
  column.is_still_full = false;
  column.evidence.Realign(kWidestShiftOfFullBuffer);
  column.full.Compare();
}

bool ColumnKeeper::CarryOutFull(int slot) {
  Column& column = columns_[slot];
  if (column.full.At() == FullBuffer::Stage::kCompare) {
    std::vector<int> behind;
    for (const int input : RecordedInputs(slot)) {
      behind.insert(behind.end(), static_cast<std::size_t>(column.evidence.Behind(input)), input);
    }
    column.full.Align(std::move(behind));
    if (!column.full.IsOver()) {
      return true;
    }
  }
  std::vector<int> uncertain;
  for (const int input : RecordedInputs(slot)) {
    const bool is_new = !state_.Columns[slot].IsUncertain[input];
    if (is_new && !column.evidence.IsCertain(input)) {
      state_.Columns[slot].IsUncertain[input] = true;
      uncertain.push_back(input);
    }
  }
  // In the first set what is missing is repeated later: a buffer that is full once more, before the
  // rest of that set has come, has not lost it a second time.
  const bool has_hand = IsHalfRead(slot);
  std::vector<int> missing = has_hand ? MissingInputs(slot) : std::vector<int>();
  std::erase_if(missing, [&](int input) { return state_.Columns[slot].Owed[input] > 0; });
  if (!Fill(slot, missing)) {
    return false;
  }
  // The set in hand, filled or not, becomes a row before those that are lost.
  TellLostSets(slot, state_.SampleCount[slot] + (has_hand ? 1 : 0));
  Tell(slot, uncertain, reason::kFullWrongRow, Mark::kOnward);
  column.full.End();
  EndDoubt(slot);
  return true;
}

// By the clock that nobody sets; where it does not reach, about so many by the wall clock.
ColumnKeeper::LostSets ColumnKeeper::CountLostSets(int slot) const {
  const Column& column = columns_[slot];
  const std::int64_t last = state_.Columns[slot].LastSet;
  std::int64_t least = 0;
  std::int64_t most = 0;
  if (column.lost) {
    least = column.lost->least;
    most = column.lost->most;
  } else if (last != 0) {
    least = (WallTimeOfCount(slot) - last) / state_.RecInterval[slot];
    most = least + 1;
  } else {
    return {};
  }
  const std::int64_t not_lost = column.stored.value_or(kBufferSets) - column.evidence.Aligned();
  const bool is_steady = column.lost.has_value();
  return {std::max<std::int64_t>((least + most) / 2 - not_lost, 0),
          is_steady ? std::max<std::int64_t>(least - not_lost, 0) : 0,
          std::max<std::int64_t>(most - not_lost, 0), is_steady && least == most, is_steady};
}

std::string ColumnKeeper::TextOf(const LostSets& lost, Language language) {
  if (!lost.count) {
    return file_text::kUnknownSets.Text(language);
  }
  const bool may_be_none = *lost.count == 0 && lost.most > 0;
  const std::int64_t count = may_be_none ? lost.most : *lost.count;
  const bool is_one = count == 1;
  const BothLanguages& exact = is_one ? file_text::kOneSet : file_text::kSets;
  const BothLanguages& about = is_one ? file_text::kAboutOneSet : file_text::kAboutSets;
  const BothLanguages& perhaps = is_one ? file_text::kPerhapsOneSet : file_text::kPerhapsSets;
  const BothLanguages& words = may_be_none ? perhaps : (lost.is_exact ? exact : about);
  return words.Text(language, {std::to_string(count)});
}

// In seconds: when what a restart has left was counted. A full buffer goes on losing sets until
// now.
std::int64_t ColumnKeeper::WallTimeOfCount(int slot) const {
  const Column& column = columns_[slot];
  const bool is_dated = column.restarts > 0 && column.stored;
  const Time since = is_dated ? clock_.Elapsed() - column.counted : Time{};
  return WallSeconds(clock_.Now()) - std::chrono::round<std::chrono::seconds>(since).count();
}

// What is lost until now is told: the last of these sets was made before those that are stored.
void ColumnKeeper::CountFromNow(int slot) {
  const std::int64_t stored = columns_[slot].stored.value_or(kBufferSets);
  state_.Columns[slot].LastSet = WallTimeOfCount(slot) - stored * state_.RecInterval[slot];
}

// A buffer that is met full again before the next row has cost only what has been lost since.
void ColumnKeeper::TellLostSets(int slot, std::int32_t row) {
  Column& column = columns_[slot];
  const LostSets lost = CountLostSets(slot);
  const std::int32_t next = state_.SampleCount[slot];
  const bool was_told = std::exchange(column.told_row, next) == next;
  CountFromNow(slot);
  if (was_told && lost.count.value_or(0) == 0) {
    return;
  }
  NoteLostSets(slot, row, lost, {"full", reason::kFull});
  messages_.Recovered(slot);  // as many may have been lost before the same row already
  TellSets(slot, row, reason::kFull, lost);
}

// When the set in hand was made. Sets that wait behind it were made since: where the clock tells
// how many, it is that old; else it was made an interval after the one before it. The first one is
// as old as the counts say.
std::int64_t ColumnKeeper::TimeOfSet(int slot) {
  const std::int64_t now = WallSeconds(clock_.Now());
  std::int64_t counted = 0;
  for (const int input : RecordedInputs(slot)) {
    counted = std::max(counted, columns_[slot].evidence.CountedWaiting(input));
    const auto waiting = columns_[slot].evidence.MadeSince(input, clock_.Elapsed());
    if (waiting) {
      return now - (std::max<std::int64_t>(waiting->least, 0) * state_.RecInterval[slot]);
    }
  }
  const std::int64_t last = state_.Columns[slot].LastSet;
  return last == 0 ? now - counted * state_.RecInterval[slot]
                   : std::min(last + state_.RecInterval[slot], now);
}

}  // namespace tavrel
