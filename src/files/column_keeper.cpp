#include "files/column_keeper.h"

#include <algorithm>
#include <utility>

#include "files/file_texts.h"
#include "files/reasons.h"
#include "files/recording_format.h"
#include "state/user_language.h"

namespace tavrel {

namespace {

// The rest of a half-read set may come so late, in parts of the interval.
constexpr double kLate = 1.2;

// Counts of an input that are looked at before a mere suspicion is dropped.
constexpr int kLooksOfSuspicion = 48;

constexpr int kMostRefusals = 8;  // in a row; then the instrument cannot count

std::string NumberOf(const std::vector<int>& inputs, Language language) {
  std::string numbers;
  for (std::size_t place = 0; place < inputs.size(); ++place) {
    numbers += (place == 0 ? "" : ", ") + std::to_string(inputs[place]);
  }
  return (inputs.size() == 1 ? file_text::kInput : file_text::kInputs).Text(language, {numbers});
}

// The first set of a file stands in it twice.
std::string NamesOf(const RowRange& rows, Language language) {
  if (rows == RowRange{0, 1}) {
    return file_text::kRowsZeroAndOne.Text(language);
  }
  const BothLanguages& names = rows.First == rows.Last ? file_text::kRow : file_text::kRows;
  return names.Text(language, {std::to_string(rows.First), std::to_string(rows.Last)});
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
  column.proven.fill(state_.SampleCount[slot]);
  for (const int input : RecordedInputs(slot)) {
    if (state_.SampleSeen[slot][input]) {
      column.evidence.ResumeTaken(input);
    }
    if (state_.Columns[slot].IsUncertain[input]) {
      column.evidence.ResumeUncertain(input);
    }
  }
  TakeUpDropped(slot);
  if (state_.ColumnsInDoubt[slot]) {
    TakeUpDoubt(slot);
  }
}

// A doubt that the program before this one has left open. What the looks at it have said is gone
// with that program, and so is what its clock said.
void ColumnKeeper::TakeUpDoubt(int slot) {
  if (state_.Columns[slot].Compared != ColumnMemory::Comparison::kNone) {
    CompareAgain(slot);
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
  columns_[slot].is_still_full = false;
  auto& owed = state_.Columns[slot].Owed[input];
  state_.Columns[slot].Repeats[input] = std::exchange(owed, 0);
  ForgetFallsOfOthers(slot, input);
  NoteConflict(slot);
}

// What a test has taken from an input that another one records, too, is gone for that one.
void ColumnKeeper::ForgetFallsOfOthers(int slot, int input) {
  for (int other = 1; other <= kSlots; ++other) {
    if (other != slot && state_.Unit[other].UnitInet == state_.Unit[slot].UnitInet) {
      columns_[other].evidence.ForgetFalls(input);
    }
  }
}

void ColumnKeeper::Empty(int slot, int input, const Exchange& when) {
  ColumnEvidence& evidence = EvidenceOf(slot);
  if (!evidence.NoteEmpty(input, when)) {
    evidence.SuspectRestart();
  }
  if (IsHalfRead(slot)) {
    Column& column = columns_[slot];
    column.misses_since = column.misses_since.value_or(when.answered);
  } else if (input == RecordedInputs(slot).back()) {
    evidence.LearnLate(when.answered);
    NoteProof(slot);
  }
  state_.Columns[slot].Order = evidence.Order();
  NoteConflict(slot);
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

// Nothing failed, but what is missing from the set in hand should have come. Of an input that is
// uncertain already nothing more can be found out.
void ColumnKeeper::Suspect(int slot) {
  std::vector<int> suspects = MissingInputs(slot);
  std::erase_if(suspects, [&](int input) { return !columns_[slot].evidence.IsCertain(input); });
  if (!IsHalfRead(slot) || suspects.empty()) {
    state_.ColumnsInDoubt[slot] = false;
    return;
  }
  for (const int input : suspects) {
    Doubt(slot, input);
  }
  columns_[slot].is_suspicion = true;
}

// A slot that began to wait in the middle of a set found nothing for one of its inputs. After more
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
  return column.misses_since &&
         clock_.Elapsed() - *column.misses_since > std::chrono::duration<double>(kLate * longest);
}

// ---- A doubt.

ColumnKeeper::Action ColumnKeeper::Next(int slot) {
  const ColumnEvidence& evidence = EvidenceOf(slot);
  const Column& column = columns_[slot];
  if (evidence.SawRestart()) {
    return {Action::kDecide, 0};
  }
  if (column.full.At() != FullBuffer::Stage::kIdle) {
    return NextOfFull(slot);
  }
  if (const DroppedSeries* dropped = AwaitedSeries(slot)) {
    const bool is_time = column.look_at_dropped <= clock_.Elapsed();
    return is_time ? Action{Action::kCount, dropped->input} : Action{};
  }
  if (!evidence.AnyDoubt()) {
    return {Action::kDecide, 0};
  }
  const auto look = evidence.NextLook();
  const bool is_due = look.input != 0 && look.not_before <= clock_.Elapsed();
  return is_due ? Action{Action::kCount, look.input} : Action{};
}

void ColumnKeeper::Counted(int slot, int input, int count, const Exchange& when) {
  Column& column = columns_[slot];
  column.refusals = 0;
  if (AwaitedSeries(slot) != nullptr) {
    CountDropped(slot, input, count, when.answered);
    return;
  }
  if (MayBeFull(slot, input, count)) {
    CountFull(slot, input);
    return;
  }
  if (IsToCountLost(slot, input)) {
    NoteLost(slot, input, count, when.answered);
  }
  column.evidence.NoteCount(input, count, when);
  if (column.full.At() != FullBuffer::Stage::kIdle) {
    column.evidence.ForgetHigh();
  }
  state_.Columns[slot].Order = column.evidence.Order();
  NoteConflict(slot);
  if (column.is_suspicion && IsSuspicionOver(slot) && !column.evidence.SawRestart()) {
    column.evidence.Withdraw();
  }
}

// What the instrument forgets while its columns are compared is lost, too: there the last count of
// the input that is compared with says most.
bool ColumnKeeper::IsToCountLost(int slot, int input) const {
  const Column& column = columns_[slot];
  const bool is_again = column.restarts > 0 && input == RecordedInputs(slot).back();
  return column.before && (!column.stored || is_again) && !column.evidence.IsDoubted(input);
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
    if (column.full.At() != FullBuffer::Stage::kIdle) {
      CompareFull(slot);
    }
    GiveUpDropped(slot);
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
    TakeRestart(slot);
    return true;
  }
  if (columns_[slot].full.At() != FullBuffer::Stage::kIdle) {
    return CarryOutFull(slot);
  }
  return columns_[slot].restarts > 0 ? CarryOutRestart(slot) : CarryOut(slot);
}

bool ColumnKeeper::CarryOut(int slot) {
  Column& column = columns_[slot];
  if (!CarryOutDropped(slot)) {
    return false;
  }
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
    state_.Columns[slot].IsUncertain[input] = true;
  }
  Tell(slot, uncertain, reason::kMayBeLost, Mark::kOnward);
  EndDoubt(slot);
  return true;
}

// On the disk before anything is done to the values.
void ColumnKeeper::KeepComparison(int slot, ColumnMemory::Comparison compared) {
  ColumnMemory& memory = state_.Columns[slot];
  if (memory.Compared != compared) {
    memory.Compared = compared;
    files_.KeepHeldSet(slot, state_.AskedInput[slot]);
  }
}

void ColumnKeeper::EndDoubt(int slot) {
  Column& column = columns_[slot];
  column.may_make_room = false;
  state_.Columns[slot].Compared = ColumnMemory::Comparison::kNone;
  state_.Columns[slot].Questioned = 0;
  state_.Columns[slot].IsDropped.Fill(false);
  column.doubted.clear();
  column.dropped.clear();
  column.is_suspicion = false;
  column.before.reset();
  column.restarts = 0;
  column.cleared = 0;
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  files_.KeepHeldSet(slot, 0);
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
      ++state_.Columns[slot].Owed[input];
    }
    Tell(slot, inputs, reason::kLostNextStands, Mark::kFilled);
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
  Tell(slot, inputs, reason::kLostValueBeforeStands, Mark::kFilled);
  return true;
}

std::optional<std::int16_t> ColumnKeeper::ValueBefore(int slot, int input) {
  int column = 0;
  for (int other = 1; other <= input; ++other) {
    column += state_.Unit[slot].IsRecorded(other) ? 1 : 0;
  }
  return files_.ReadSample(slot, state_.SampleCount[slot] - 1, column);
}

void ColumnKeeper::Tell(int slot, const std::vector<int>& inputs, const BothLanguages& what,
                        Mark mark) {
  const std::int32_t row = state_.SampleCount[slot];
  Tell(slot, row == 0 ? RowRange{0, 1} : RowRange{row, row}, inputs, what, mark);
}

void ColumnKeeper::Tell(int slot, const RowRange& rows, const std::vector<int>& inputs,
                        const BothLanguages& what, Mark mark) {
  if (inputs.empty()) {
    return;
  }
  files_.Journals().Note(slot, "values",
                         {{"first", rows.First},
                          {"last", rows.Last},
                          {"inputs", JsonValue::List(inputs.begin(), inputs.end())},
                          {"filled", mark == Mark::kFilled || mark == Mark::kFilledForUser},
                          {"onward", mark == Mark::kOnward},
                          {"anew", mark == Mark::kFilledForUser},
                          {"what", std::string(what.English)}});
  const Language language = UserLanguage(state_);
  messages_.Report(
      slot, {file_text::kValues.Text(language, {state_.SlotFile[slot], NamesOf(rows, language),
                                                NumberOf(inputs, language), what.In(language)}),
             file_text::kReadTavrel.Text(language)});
}

// A clock that can be set tells no bounds.
void ColumnKeeper::NoteLostSets(int slot, std::int32_t before, const LostSets& lost,
                                const Cause& cause) {
  files_.Journals().Note(slot, "lost",
                         {{"before", before},
                          {"sets", lost.count ? JsonValue(*lost.count) : JsonValue()},
                          {"exact", lost.count && lost.is_exact},
                          {"least", lost.least},
                          {"most", lost.is_steady ? JsonValue(lost.most) : JsonValue()},
                          {"cause", cause.name},
                          {"what", std::string(cause.what.English)}});
}

void ColumnKeeper::TellSets(int slot, std::int32_t row, const BothLanguages& what,
                            const LostSets& lost) {
  const Language language = UserLanguage(state_);
  messages_.Report(
      slot, {file_text::kSetsLost.Text(language, {state_.SlotFile[slot], std::to_string(row),
                                                  what.In(language), TextOf(lost, language)}),
             file_text::kReadTavrel.Text(language)});
}

void ColumnKeeper::SetWritten(int slot) {
  ColumnMemory& memory = state_.Columns[slot];
  memory.LastSet = TimeOfSet(slot);
  memory.IsFirstSet = false;
  for (const int input : RecordedInputs(slot)) {
    auto& repeats = memory.Repeats[input];
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
  const bool is_vague =
      column.evidence.IsLearningLate() && IsHalfRead(slot) && !column.evidence.Interval().IsKnown();
  if (state_.Columns[slot].IsOpened || !column.evidence.IsLearning() ||
      column.evidence.AnyDoubt() || column.evidence.SawRestart() || is_vague) {
    return 0;
  }
  const auto look = column.evidence.NextLook();
  return look.not_before <= clock_.Elapsed() ? look.input : 0;
}

}  // namespace tavrel
