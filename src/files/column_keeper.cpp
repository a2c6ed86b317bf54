#include "files/column_keeper.h"

#include <algorithm>
#include <utility>

#include "files/recording_format.h"

namespace tavrel {

namespace {

// The rest of a half-read set may come so late, in parts of the interval.
constexpr double kLate = 1.2;

// Counts of an input that are looked at before a mere suspicion is dropped.
constexpr int kLooksOfSuspicion = 48;

constexpr int kMostRefusals = 8;  // in a row; then the instrument cannot count

// A full buffer has lost at most so many samples more of one input than of another: one by the
// order in which they are sampled, one for each exchange that failed while room was made.
constexpr int kWidestShift = 5;

// Room of two sets is enough where an interval is long and the order is known: one more is made
// while the inputs are compared.
constexpr int kSetsOfRoom = 2;
constexpr int kLongInterval = 10;  // seconds

double Seconds(ColumnKeeper::Time time) {
  return std::chrono::duration<double>(time).count();
}

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

std::string NumberOf(const std::vector<int>& inputs) {
  std::string text = inputs.size() == 1 ? "input " : "inputs ";
  for (std::size_t place = 0; place < inputs.size(); ++place) {
    text += (place == 0 ? "" : ", ") + std::to_string(inputs[place]);
  }
  return text;
}

}  // namespace

ColumnKeeper::ColumnKeeper(RunState& state, RecordingFiles& files, Messages& messages,
                           const Clock& clock)
    : state_(state), files_(files), messages_(messages), clock_(clock) {}

// ---- The evidence of a slot.

std::vector<int> ColumnKeeper::RecordedInputs(int slot) const {
  std::vector<int> inputs;
  for (int input = 1; input <= kInputs; ++input) {
    if (state_.Unit[slot].IsRecorded(input)) {
      inputs.push_back(input);
    }
  }
  return inputs;
}

std::vector<int> ColumnKeeper::MissingInputs(int slot) const {
  std::vector<int> inputs = RecordedInputs(slot);
  std::erase_if(inputs, [&](int input) { return state_.SampleSeen[slot][input]; });
  return inputs;
}

bool ColumnKeeper::IsHalfRead(int slot) const {
  const std::size_t missing = MissingInputs(slot).size();
  return missing > 0 && missing < RecordedInputs(slot).size();
}

// A file that was opened since then begins with what is kept beside it.
ColumnEvidence& ColumnKeeper::EvidenceOf(int slot) {
  if (std::exchange(state_.Columns[slot].IsOpened, false)) {
    Renew(slot);
  }
  return columns_[slot].evidence;
}

void ColumnKeeper::Renew(int slot) {
  Column& column = columns_[slot];
  column = Column();
  column.evidence.Begin(RecordedInputs(slot), state_.RecInterval[slot]);
  column.evidence.Resume(state_.Columns[slot].Order);
  for (const int input : RecordedInputs(slot)) {
    if (state_.SampleSeen[slot][input]) {
      column.evidence.ResumeTaken(input);
    }
    if (state_.Columns[slot].IsUncertain.at(static_cast<std::size_t>(input))) {
      column.evidence.ResumeUncertain(input);
    }
  }
  if (!state_.ColumnsInDoubt[slot]) {
    return;
  }
  const int asked = state_.AskedInput[slot];
  if (asked != 0 && state_.Unit[slot].IsRecorded(asked) && !state_.SampleSeen[slot][asked]) {
    Doubt(slot, asked);
  } else {
    Suspect(slot);
  }
}

void ColumnKeeper::StartSeries(int slot) {
  state_.Columns[slot] = ColumnMemory();
  state_.Columns[slot].IsFirstSet = true;
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  Renew(slot);
  columns_[slot].evidence.Learn(clock_.Elapsed());
}

void ColumnKeeper::Stop(int slot) {
  columns_[slot] = Column();
}

// ---- What the pump reads.

void ColumnKeeper::Taken(int slot, int input, const Exchange& when) {
  EvidenceOf(slot).NoteTaken(input, when);
  columns_[slot].misses_since.reset();
  auto& owed = state_.Columns[slot].Owed.at(static_cast<std::size_t>(input));
  state_.Columns[slot].Repeats.at(static_cast<std::size_t>(input)) = std::exchange(owed, 0);
}

void ColumnKeeper::Empty(int slot, int input, const Exchange& when) {
  ColumnEvidence& evidence = EvidenceOf(slot);
  const bool is_possible = evidence.NoteEmpty(input, when);
  if (IsHalfRead(slot)) {
    Column& column = columns_[slot];
    column.misses_since = column.misses_since.value_or(when.answered);
    if (!is_possible) {
      Suspect(slot);
      columns_[slot].is_suspicion = false;
    }
  } else if (evidence.SawRestart()) {
    evidence.Restart(when.answered);
  }
  state_.Columns[slot].Order = evidence.Order();
}

void ColumnKeeper::Failed(int slot, int input) {
  static_cast<void>(EvidenceOf(slot));
  state_.AskedInput[slot] = input;
  Doubt(slot, input);
}

void ColumnKeeper::Doubt(int slot, int input) {
  Column& column = columns_[slot];
  state_.ColumnsInDoubt[slot] = true;
  column.evidence.Doubt(input);
  column.is_suspicion = false;
  column.refusals = 0;
  if (std::find(column.doubted.begin(), column.doubted.end(), input) == column.doubted.end()) {
    column.doubted.push_back(input);
  }
}

// Nothing failed, but what is missing from the set in hand should have come.
void ColumnKeeper::Suspect(int slot) {
  if (!IsHalfRead(slot)) {
    state_.ColumnsInDoubt[slot] = false;
    return;
  }
  for (const int input : MissingInputs(slot)) {
    Doubt(slot, input);
  }
  columns_[slot].is_suspicion = true;
}

// A slot that fell asleep in the middle of a set found nothing for one of its inputs. After more
// than an interval its value is there, or the instrument was switched off and on in between: its
// next values would be of a later set, so the counts are looked at before any is read.
void ColumnKeeper::Watch(int slot) {
  Column& column = columns_[slot];
  column.rests = false;
  if (!column.misses_since || state_.ColumnsInDoubt[slot]) {
    return;
  }
  if (HasWaitedLong(slot)) {
    column.misses_since = clock_.Elapsed();
    Suspect(slot);
  }
}

// The missing values are waited for, or a suspicion is looked at, for longer than an interval: all
// that the counts can tell has been seen by then.
bool ColumnKeeper::HasWaitedLong(int slot) const {
  const Column& column = columns_[slot];
  const IntervalMeter& interval = column.evidence.Interval();
  const double longest = interval.IsKnown() ? interval.High() : interval.Nominal();
  return column.misses_since && Seconds(clock_.Elapsed() - *column.misses_since) > kLate * longest;
}

// ---- A doubt.

ColumnKeeper::Deed ColumnKeeper::Next(int slot) {
  const ColumnEvidence& evidence = EvidenceOf(slot);
  const Column& column = columns_[slot];
  if (column.full.At() != FullBuffer::Stage::kIdle && !evidence.SawRestart()) {
    return NextOfFull(slot);
  }
  if (evidence.SawRestart() || !evidence.AnyDoubt()) {
    return {Deed::kDecide, 0};
  }
  const auto look = evidence.NextLook();
  const bool is_due = look.input != 0 && look.not_before <= clock_.Elapsed();
  return is_due ? Deed{Deed::kCount, look.input} : Deed{};
}

void ColumnKeeper::Counted(int slot, int input, int count, const Exchange& when) {
  Column& column = columns_[slot];
  column.refusals = 0;
  if (MayBeFull(slot, input, count)) {
    CountFull(slot);
    return;
  }
  if (column.before && !column.stored && !column.evidence.IsDoubted(input)) {
    const int row = IsHalfRead(slot) && !state_.SampleSeen[slot][input] ? 1 : 0;
    column.stored = count + row;
    column.lost = column.before->MadeSince(input, when.answered);
  }
  column.evidence.NoteCount(input, count, when);
  state_.Columns[slot].Order = column.evidence.Order();
  if (column.is_suspicion && IsSuspicionOver(slot) && !column.evidence.SawRestart()) {
    column.evidence.Withdraw();
  }
}

// After the start of the program one look is enough, for nothing speaks of a restart of the
// instrument. Where values stay away it takes an interval of looks, with the interval known, and
// so many of them that the steps are seen sharply also where an exchange is slow for the interval.
bool ColumnKeeper::IsSuspicionOver(int slot) const {
  const Column& column = columns_[slot];
  const int enough = column.misses_since ? kLooksOfSuspicion : 1;
  const bool is_seen = std::all_of(column.doubted.begin(), column.doubted.end(), [&](int each) {
    return !column.evidence.IsDoubted(each) || column.evidence.Looks(each) >= enough;
  });
  const bool is_long = column.evidence.Interval().IsKnown() && HasWaitedLong(slot);
  return is_seen && (is_long || !column.misses_since);
}

void ColumnKeeper::NotCounted(int slot, bool refused) {
  Column& column = columns_[slot];
  column.refusals = refused ? column.refusals + 1 : 0;
  if (column.full.At() == FullBuffer::Stage::kMakeRoom) {
    column.full.TakeInput();
    if (column.full.At() == FullBuffer::Stage::kCompare) {
      CompareFull(slot);
    }
  } else if (column.full.At() == FullBuffer::Stage::kAlign) {
    CompareFull(slot);
  }
  if (column.refusals >= kMostRefusals) {
    column.refusals = 0;
    column.full.End();
    column.evidence.GiveUp();
  }
}

// An input that still holds all of its samples has room for one at least while others of the same
// set are full. A value that was taken already of the set in hand has made room for one more.
bool ColumnKeeper::MayBeFull(int slot, int input, int count) const {
  const bool is_idle = columns_[slot].full.At() == FullBuffer::Stage::kIdle;
  const bool is_ahead = is_idle && IsHalfRead(slot) && state_.SampleSeen[slot][input];
  return count + (is_ahead ? 1 : 0) >= kBufferSets;
}

bool ColumnKeeper::Decide(int slot) {
  if (columns_[slot].evidence.SawRestart()) {
    return CarryOutRestart(slot);
  }
  return columns_[slot].full.At() != FullBuffer::Stage::kIdle ? CarryOutFull(slot) : CarryOut(slot);
}

bool ColumnKeeper::CarryOut(int slot) {
  Column& column = columns_[slot];
  std::vector<int> lost;
  std::vector<int> uncertain;
  for (const int input : column.doubted) {
    const auto verdict = column.evidence.VerdictOf(input);
    if (verdict == ColumnEvidence::Verdict::kLost && !state_.SampleSeen[slot][input]) {
      lost.push_back(input);
    } else if (verdict == ColumnEvidence::Verdict::kUncertain) {
      uncertain.push_back(input);
    }
  }
  if (!Fill(slot, lost)) {
    return false;
  }
  for (const int input : uncertain) {
    state_.Columns[slot].IsUncertain.at(static_cast<std::size_t>(input)) = true;
  }
  Tell(slot, uncertain,
       "nobody can know whether a value was lost on the line; nothing was filled in, from here on "
       "the values may stand one row too early");
  EndDoubt(slot);
  return true;
}

// The instrument was switched off and on: what is missing from the set in hand is gone, and the
// series of all inputs begin anew in the next one.
bool ColumnKeeper::CarryOutRestart(int slot) {
  const std::vector<int> missing = IsHalfRead(slot) ? MissingInputs(slot) : std::vector<int>();
  if (!Fill(slot, missing)) {
    return false;
  }
  columns_[slot].evidence.Restart(clock_.Elapsed());
  columns_[slot].full.End();
  state_.Columns[slot].Order = SamplingOrder();
  state_.Columns[slot].IsUncertain = {};
  EndDoubt(slot);
  return true;
}

void ColumnKeeper::EndDoubt(int slot) {
  Column& column = columns_[slot];
  column.doubted.clear();
  column.is_suspicion = false;
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  files_.KeepHeldSet(slot, 0);
}

// ---- A full buffer.

void ColumnKeeper::NoteStored(int slot, int input, int count) {
  if (MayBeFull(slot, input, count)) {
    BeginFull(slot);
  }
}

void ColumnKeeper::BeginFull(int slot) {
  const ColumnEvidence& evidence = EvidenceOf(slot);
  Column& column = columns_[slot];
  if (column.full.At() != FullBuffer::Stage::kIdle) {
    return;
  }
  column.before = evidence;
  column.is_suspicion = false;
  column.doubted.clear();
  const bool is_known = state_.RecInterval[slot] >= kLongInterval && evidence.IsOrderKnown();
  column.full.Begin(RecordedInputs(slot), is_known ? kSetsOfRoom : FullBuffer::kMostSets);
  state_.ColumnsInDoubt[slot] = true;
}

// A full buffer seen in a doubt: room is made first. One that is full again before it is decided
// cannot be compared: further sets would be given up for nothing.
void ColumnKeeper::CountFull(int slot) {
  Column& column = columns_[slot];
  if (column.full.At() == FullBuffer::Stage::kIdle) {
    BeginFull(slot);
  } else {
    column.evidence.GiveUp();
  }
}

ColumnKeeper::Deed ColumnKeeper::NextOfFull(int slot) {
  Column& column = columns_[slot];
  if (column.full.Input() != 0) {
    return {Deed::kDiscard, column.full.Input()};
  }
  if (!column.evidence.AnyDoubt()) {
    return {Deed::kDecide, 0};
  }
  const auto look = column.evidence.NextLook();
  const bool is_due = look.input != 0 && look.not_before <= clock_.Elapsed();
  return is_due ? Deed{Deed::kCount, look.input} : Deed{};
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

void ColumnKeeper::CompareFull(int slot) {
  Column& column = columns_[slot];
  column.lost.reset();
  column.stored.reset();
  column.evidence.Realign(kWidestShift);
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
    const auto place = static_cast<std::size_t>(input);
    const bool is_new = !state_.Columns[slot].IsUncertain.at(place);
    if (is_new && !column.evidence.IsCertain(input)) {
      state_.Columns[slot].IsUncertain.at(place) = true;
      uncertain.push_back(input);
    }
  }
  if (!Fill(slot, IsHalfRead(slot) ? MissingInputs(slot) : std::vector<int>())) {
    return false;
  }
  TellLostSets(slot);
  Tell(slot, uncertain,
       "the buffer of the instrument was full; from here on the values may stand in a wrong row");
  column.full.End();
  column.before.reset();
  EndDoubt(slot);
  return true;
}

// By the clock that nobody sets; where it does not reach, about so many by the wall clock.
std::string ColumnKeeper::LostSets(int slot) const {
  const Column& column = columns_[slot];
  const std::int64_t last = state_.Columns[slot].LastSet;
  const std::int64_t stored = column.stored.value_or(kBufferSets);
  std::int64_t made = 0;
  if (column.lost) {
    made = (column.lost->least + column.lost->most) / 2;
  } else if (last != 0) {
    made = (WallSeconds(clock_.Now()) - last) / state_.RecInterval[slot];
  } else {
    return "an unknown number of sets was";
  }
  const std::int64_t count = std::max<std::int64_t>(made - stored + column.evidence.Aligned(), 0);
  const bool is_exact = column.lost && column.lost->least == column.lost->most;
  return (is_exact ? "" : "about ") + std::to_string(count) +
         (count == 1 ? " set was" : " sets were");
}

void ColumnKeeper::TellLostSets(int slot) {
  const std::int32_t row = state_.SampleCount[slot] + (IsHalfRead(slot) ? 1 : 0);
  const std::string where = state_.SlotFile[slot] + ": row " + std::to_string(row) + ": ";
  messages_.Report(slot, {where + "the buffer of the instrument was full; before this row " +
                              LostSets(slot) + " lost",
                          "Read  Tavrel"});
}

// ---- Filling in and telling.

// In the first set after a start there is nothing before it: the next value of the column stands
// there, too, as soon as it has come. False, and nothing is filled, if the value before cannot be
// read now.
bool ColumnKeeper::Fill(int slot, const std::vector<int>& inputs) {
  if (inputs.empty()) {
    return true;
  }
  if (state_.Columns[slot].IsFirstSet || state_.SampleCount[slot] == 0) {
    for (const int input : inputs) {
      ++state_.Columns[slot].Owed.at(static_cast<std::size_t>(input));
    }
    Tell(slot, inputs, "lost on the line; the next value stands in its place");
    return true;
  }
  std::vector<std::int16_t> values;
  for (const int input : inputs) {
    const auto value = ValueBefore(slot, input);
    if (!value) {
      return false;
    }
    values.push_back(*value);
  }
  for (std::size_t place = 0; place < inputs.size(); ++place) {
    state_.SampleSeen[slot][inputs[place]] = true;
    state_.SampleValue[slot][inputs[place]] = values[place];
  }
  Tell(slot, inputs, "lost on the line; the value before it stands in its place");
  return true;
}

std::optional<std::int16_t> ColumnKeeper::ValueBefore(int slot, int input) {
  int column = 0;
  for (int other = 1; other <= input; ++other) {
    column += state_.Unit[slot].IsRecorded(other) ? 1 : 0;
  }
  return files_.ReadSample(slot, state_.SampleCount[slot] - 1, column);
}

void ColumnKeeper::Tell(int slot, const std::vector<int>& inputs, const std::string& what) {
  if (inputs.empty()) {
    return;
  }
  const std::int32_t row = state_.SampleCount[slot];
  const std::string rows = row == 0 ? "rows 0 and 1" : "row " + std::to_string(row);
  messages_.Report(slot,
                   {state_.SlotFile[slot] + ": " + rows + ", " + NumberOf(inputs) + ": " + what,
                    "Read  Tavrel"});
}

// Sets that wait behind it were made since: where the clock tells how many, the set is that old.
std::int64_t ColumnKeeper::AgeOfSet(int slot) {
  for (const int input : RecordedInputs(slot)) {
    const auto waiting = columns_[slot].evidence.MadeSince(input, clock_.Elapsed());
    if (waiting) {
      return std::max<std::int64_t>(waiting->least, 0) * state_.RecInterval[slot];
    }
  }
  return 0;
}

void ColumnKeeper::SetWritten(int slot) {
  ColumnMemory& memory = state_.Columns[slot];
  memory.LastSet = WallSeconds(clock_.Now()) - AgeOfSet(slot);
  memory.IsFirstSet = false;
  for (const int input : RecordedInputs(slot)) {
    auto& repeats = memory.Repeats.at(static_cast<std::size_t>(input));
    if (repeats > 0) {
      --repeats;
      state_.SampleSeen[slot][input] = true;
    }
  }
}

// ---- Learning.

int ColumnKeeper::SlotToLearn() {
  for (int slot = kSlots; slot >= 1; --slot) {
    if (columns_[slot].rests || state_.SlotFile[slot].empty() || InputToLearn(slot) == 0) {
      continue;
    }
    return slot;
  }
  return 0;
}

int ColumnKeeper::InputToLearn(int slot) {
  const Column& column = columns_[slot];
  if (state_.Columns[slot].IsOpened || !column.evidence.IsLearning() ||
      column.evidence.AnyDoubt()) {
    return 0;
  }
  const auto look = column.evidence.NextLook();
  return look.not_before <= clock_.Elapsed() ? look.input : 0;
}

}  // namespace tavrel
