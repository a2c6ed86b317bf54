#include "files/recording_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <utility>

#include "base/text.h"
#include "files/file_texts.h"
#include "files/held_set.h"
#include "files/new_file.h"
#include "files/reasons.h"
#include "files/recording_format.h"
#include "platform/file_system.h"
#include "platform/random_file.h"
#include "state/box_titles.h"
#include "state/header_edit.h"
#include "state/open_slots.h"
#include "state/user_language.h"

namespace tavrel {

namespace {

constexpr const char* kIsNoneOfOurs = "  is not a Tavrel-file !";
constexpr int kMaxRowWords = 2 * kInputs;  // the first set of a file is written twice

bool IsTableSlot(int slot) {
  return slot >= kViewedFile && slot <= kSlots;
}

// The number of headers that `length` bytes are, to the nearest, ties to even.
std::int64_t HeadersIn(std::int64_t length) {
  return std::llrint(static_cast<double>(length) / kHeaderBytes);
}

}  // namespace

RecordingFiles::RecordingFiles(RunState& state, const Clock& clock, Messages& messages)
    : state_(state), clock_(clock), messages_(messages), journals_(state, clock, messages) {}

void RecordingFiles::OpenRecordingFile(int slot) {
  if (!IsTableSlot(slot)) {
    return;
  }
  CloseRecordingFile(slot);
  ForgetShown(slot);
  is_row_refused_[slot] = false;
  refused_by_error_[slot] = true;  // unless another reason is found
  const std::string problem = OpenAndTest(slot);
  if (!problem.empty()) {
    Refuse(slot, kReadTitle, problem);
    return;
  }
  DeriveValues(slot);
  TellOfJournal(slot);
  const UnitRecord& unit = state_.Unit[slot];
  if (IsSlot(slot) && unit.UnitRecOn == 1 && !unit.CanBeRecorded()) {
    const std::string& name = state_.SlotFile[slot];
    messages_.Report(slot,
                     {file_text::kStandsStill.Text(UserLanguage(state_), {name}), kReadTitle});
  }
}

std::string RecordingFiles::OpenAndTest(int slot) {
  const std::string& name = state_.SlotFile[slot];
  RandomFile& file = state_.SlotFileNo[slot];
  NoAnswer no_answer;
  const auto path = FindFile(state_.SlotPath[slot], name, no_answer);
  if (!path) {
    return no_answer.Why == Failure::kNone ? RefuseForGood(slot, "  not found !")
                                           : name + ": " + no_answer.Text;
  }
  const int owner = OwnerOf(slot, *path);
  if (owner != 0) {
    return RefuseForGood(
        slot, file_text::kInUseInRow.Text(UserLanguage(state_), {std::to_string(owner)}));
  }
  if (!OpenForSlot(slot, *path)) {
    return name + ": " + file.Error();
  }
  // The other program may end: it is tried again.
  if (IsSlot(slot) && !Reserve(slot, *path)) {
    return name +
           (IsOfOthers() ? file_text::kInUseElsewhere.Text(UserLanguage(state_)) : ": " + error_);
  }
  NotePlace(slot, *path);
  const std::int64_t length = file.Size();
  if (length < 0) {
    return name + ": " + file.Error();
  }
  if (HeadersIn(length) < 1) {
    // Such a partial file can only be a file whose creation failed. Where it cannot be deleted it
    // is damaged all the same.
    file.Close();
    static_cast<void>(DeleteFile(*path));
    state_.IndexValid = false;
    return RefuseForGood(slot, "  is damaged !");
  }
  return ReadHeader(slot, length);
}

bool RecordingFiles::RefuseWhatIsNone(int slot) {
  const auto path = FindFile(state_.SlotPath[slot], state_.SlotFile[slot]);
  std::error_code error;
  const bool is_file = path && std::filesystem::is_regular_file(*path, error);
  const auto size = is_file ? std::filesystem::file_size(*path, error) : 0;
  if (!path || error || size >= kHeaderBytes) {
    return false;
  }
  CloseRecordingFile(slot);
  Refuse(slot, kReadTitle, RefuseForGood(slot, kIsNoneOfOurs));
  return true;
}

std::string RecordingFiles::RefuseForGood(int slot, const std::string& why) {
  refused_by_error_[slot] = false;
  return state_.SlotFile[slot] + why;
}

// The slot that has the file at `path` already, or that comes first and still waits for it; 0 if
// there is none. The viewer may look at any file.
int RecordingFiles::OwnerOf(int slot, const std::string& path) const {
  for (int other = 1; IsSlot(slot) && other <= kSlots; ++other) {
    const bool waits_for_it = other < slot && IsAwaitedFile(state_, other, path);
    if (waits_for_it || (other != slot && IsFileOfSlot(state_, other, path))) {
      return other;
    }
  }
  return 0;
}

std::optional<std::int16_t> RecordingFiles::InetOf(const std::string& directory,
                                                   const std::string& name) {
  const auto path = FindFile(directory, name);
  RandomFile file;
  UnitRecord unit{};
  const bool is_read = path && file.Open(*path, FileAccess::kRead) &&
                       file.ReadAt(0, std::as_writable_bytes(std::span(&unit, 1))) >= 0;
  return is_read && IsTavrelHeader(unit) ? std::optional(unit.UnitInet) : std::nullopt;
}

// A file to look at may lie where nothing can be written; a slot's own file may not.
bool RecordingFiles::OpenForSlot(int slot, const std::string& path) {
  RandomFile& file = state_.SlotFileNo[slot];
  return file.Open(path, FileAccess::kUpdate) ||
         (slot == kViewedFile && file.Open(path, FileAccess::kRead));
}

std::string RecordingFiles::ReadHeader(int slot, std::int64_t length) {
  RandomFile& file = state_.SlotFileNo[slot];
  UnitRecord unit{};  // what a short header does not hold stays zero
  if (file.ReadAt(0, std::as_writable_bytes(std::span(&unit, 1))) < 0) {
    return state_.SlotFile[slot] + ": " + file.Error();
  }
  state_.Unit[slot] = unit;
  if (!IsTavrelHeader(unit)) {
    return RefuseForGood(slot, kIsNoneOfOurs);
  }
  state_.SampleCount[slot] = SampleCountOf(length, unit.UnitChannels);
  return "";
}

void RecordingFiles::DeriveValues(int slot) {
  const UnitRecord& unit = state_.Unit[slot];
  state_.RecInterval[slot] = RecIntervalOf(unit);
  state_.SampleLimit[slot] = SampleLimitOf(unit);
  state_.SampleSeen[slot].Fill(false);
  state_.ColumnsInDoubt[slot] = false;
  state_.AskedInput[slot] = 0;
  state_.Columns[slot] = ColumnMemory();
  state_.Columns[slot].IsOpened = true;
  state_.Columns[slot].IsFirstSet = state_.SampleCount[slot] == 0;
  state_.BegunInSimulation[slot] = false;
  state_.WriteFailed[slot] = false;
  state_.SlotDirty[slot] = false;
  const bool goes_on = IsSlot(slot) && unit.UnitRecOn == 1 && unit.CanBeRecorded();
  state_.ReadState[slot] = goes_on ? ReadState::kReading : ReadState::kIdle;
  const std::optional<HeldSet> held = goes_on ? ReadHeldSet(slot) : std::nullopt;
  journals_.Opened(slot, held && held->JournalLacksLines);
  RandomFile& file = state_.SlotFileNo[slot];
  if (goes_on) {
    TakeHeldSet(slot, held);
  } else if (IsSlot(slot) && unit.CanBeRecorded()) {
    TakeRefusedSet(slot);
  }
  if (held && held->JournalLacksLines && !journals_.LacksLines(slot)) {
    KeepHeldSet(slot, state_.AskedInput[slot]);  // the new journal says it
  }
  const bool is_header_short = file.IsOpen() && file.Size() < kHeaderBytes;
  if (goes_on && is_header_short) {
    WriteHeader(slot);  // the rows need a whole header before them
  }
}

void RecordingFiles::WriteHeader(int slot) {
  if (!IsTableSlot(slot) || state_.SlotFile[slot].empty()) {
    return;
  }
  if (slot == kViewedFile && IsViewedHeaderOfOthers()) {
    state_.SlotDirty[slot] = false;
    return;
  }
  const std::string problem = PutHeader(slot);
  if (!problem.empty()) {
    Refuse(slot, kWriteTitle,
           state_.SlotFile[slot] + ": " + ReasonIn(UserLanguage(state_), problem));
    return;
  }
  if (slot == kViewedFile) {
    state_.Reserved[slot].Release();  // who views it keeps nobody from recording it
  }
  state_.SlotDirty[slot] = false;
  TellOfJournal(slot);
}

// Whoever records it has a newer header. It is told, for what the user has changed is dropped.
bool RecordingFiles::IsViewedHeaderOfOthers() {
  const std::string& name = state_.SlotFile[kViewedFile];
  const Language language = UserLanguage(state_);
  const int owner = OwnerOfViewedFile(state_);
  if (IsSlot(owner)) {
    const std::string text = file_text::kHeaderOfRow.Text(language, {name, std::to_string(owner)});
    messages_.Report(kViewedFile, {text, kWriteTitle});
    return true;
  }
  const auto path = FindFile(state_.SlotPath[kViewedFile], name);
  if (!path || Reserve(kViewedFile, *path) || !IsOfOthers()) {
    return false;
  }
  messages_.Report(kViewedFile, {file_text::kHeaderElsewhere.Text(language, {name}), kWriteTitle});
  return true;
}

// Where the medium refuses the recording as well, that is told and says it all.
void RecordingFiles::TellOfJournal(int slot) {
  if (!is_row_refused_[slot]) {
    journals_.TellProblem(slot);
  }
}

// The file is opened anew by its name, so that the header reaches what stands in the directory
// now and not a file that was deleted under the open handle.
std::string RecordingFiles::PutHeader(int slot) {
  RandomFile& file = state_.SlotFileNo[slot];
  const auto path = FindFile(state_.SlotPath[slot], state_.SlotFile[slot]);
  if (!path) {
    return PutHeaderIntoNewFile(slot);
  }
  if (!file.Open(*path, FileAccess::kUpdate)) {
    return file.Error();
  }
  if (!Reserve(slot, *path)) {
    file.Close();  // nothing of another program's is sealed
    return error_;
  }
  if (!HoldsRowsOfSlot(slot, file)) {
    return error_;
  }
  NotePlace(slot, *path);
  return journals_.SaveHeader(slot, file);
}

bool RecordingFiles::Reserve(int slot, const std::string& path) {
  FileReservation& reservation = state_.Reserved[slot];
  if (reservation.Take(path)) {
    return true;
  }
  const bool is_of_others = reservation.Error().empty();
  return is_of_others ? Fail(reason::kRecordedElsewhere) : Fail(reservation.Error());
}

std::string RecordingFiles::PutHeaderIntoNewFile(int slot) {
  const std::string name = UpperCase(state_.SlotFile[slot]);
  journals_.Closed(slot, false);
  std::string problem =
      journals_.MakeFile(state_.SlotFileNo[slot], slot, name, state_.Unit[slot], {}, {});
  const std::string path = JoinPath(state_.SlotPath[slot], name);
  if (problem.empty() && !Reserve(slot, path)) {
    problem = error_;
  }
  if (problem.empty()) {
    NotePlace(slot, path);
    state_.SampleCount[slot] = 0;
    state_.IndexValid = false;
    ForgetShown(slot);
  }
  return problem;
}

void RecordingFiles::CloseRecordingFile(int slot) {
  if (!IsTableSlot(slot)) {
    return;
  }
  RandomFile& file = state_.SlotFileNo[slot];
  const bool was_open = file.IsOpen();
  const bool is_saved = !IsSlot(slot) || !was_open || file.Sync();
  file.Close();
  journals_.Closed(slot, was_open && is_saved);
  if (was_open && is_saved) {
    TellOfJournal(slot);
  }
  held_set_files_[slot].Close();
  state_.Reserved[slot].Release();
  if (!is_saved) {
    messages_.Report(slot, {state_.SlotFile[slot] + ": " + file.Error(), kWriteTitle});
  }
}

void RecordingFiles::DropEmptyFile(const std::string& path) {
  if (!IsOpenInSlot(state_, path)) {
    static_cast<void>(DeleteFile(path));
    RecordingJournals::Drop(path);
    state_.IndexValid = false;
  }
}

void RecordingFiles::DeleteRecordingFile(int slot) {
  if (!IsTableSlot(slot)) {
    return;
  }
  CloseRecordingFile(slot);
  DropHeldSet(slot);
  const auto path = FindFile(state_.SlotPath[slot], state_.SlotFile[slot]);
  if (!path) {
    return;
  }
  const std::string problem = DeleteFile(*path);
  state_.IndexValid = false;
  if (!problem.empty()) {
    messages_.Report(slot, {state_.SlotFile[slot] + ": " + problem, kWriteTitle});
  }
}

bool RecordingFiles::ReopenRecordingFile(int slot) {
  if (!IsTableSlot(slot) || state_.SlotFile[slot].empty()) {
    return Fail(reason::kNoFile);
  }
  RandomFile& file = state_.SlotFileNo[slot];
  const bool was_open = file.IsOpen();
  const bool is_saved = !was_open || file.Sync();
  file.Close();
  if (!is_saved) {
    return Fail(file.Error());
  }
  if (was_open) {
    journals_.Synced(slot);
    TellOfJournal(slot);
  }
  if (OpenSameFile(slot, file)) {
    return true;
  }
  file.Close();
  state_.Reserved[slot].Release();
  if (IsOfOthers()) {
    LeaveToOthers(slot);
  }
  return false;
}

// What is kept of the set in hand lies beside the file, and whoever has that has taken it as well.
// The slot waits for the file, as at a start, and takes it with all that is in it by then.
void RecordingFiles::LeaveToOthers(int slot) {
  const std::string text =
      state_.SlotFile[slot] + file_text::kInUseElsewhere.Text(UserLanguage(state_));
  Refuse(slot, kReadTitle, text);
}

bool RecordingFiles::OpenSameFile(int slot, RandomFile& file) {
  const std::string& directory = state_.SlotPath[slot];
  const std::string& name = state_.SlotFile[slot];
  // Where nothing is found, opening fails and gives the system's own words for it.
  const std::string path = FindFile(directory, name).value_or(JoinPath(directory, name));
  if (!file.Open(path, FileAccess::kUpdate)) {
    return Fail(file.Error());
  }
  UnitRecord found{};
  const std::int64_t got = file.ReadAt(0, std::as_writable_bytes(std::span(&found, 1)));
  const UnitRecord& unit = state_.Unit[slot];
  if (got < kHeaderBytes || found.UnitChannels != unit.UnitChannels ||
      found.UnitDate.Bytes != unit.UnitDate.Bytes) {
    return Fail(reason::kAnotherFile);
  }
  if (!HoldsRowsOfSlot(slot, file) || HasRowsOfOthers(slot, file) || !Reserve(slot, path)) {
    return false;
  }
  NotePlace(slot, path);
  if (!state_.SlotDirty[slot]) {
    return true;
  }
  const std::string problem = journals_.SaveHeader(slot, file);
  state_.SlotDirty[slot] = !problem.empty();
  return problem.empty() || Fail(problem);
}

void RecordingFiles::NotePlace(int slot, const std::string& path) {
  places_[slot] = {path, IdentityOf(state_.SlotPath[slot])};
}

bool RecordingFiles::HoldsRowsOfSlot(int slot, RandomFile& file) {
  const std::int32_t rows = state_.SampleCount[slot];
  const std::int64_t end = SampleByte(state_.Unit[slot].UnitChannels, rows, 1);
  const bool holds_rows = rows == 0 || file.Size() >= end;
  return holds_rows || Fail(reason::kShorter);
}

// A row that was refused, the first one twice, may stand there all the same; no more than that.
bool RecordingFiles::HasRowsOfOthers(int slot, RandomFile& file) {
  constexpr int kMostRefusedRows = 2;
  const std::int32_t rows = SampleCountOf(file.Size(), state_.Unit[slot].UnitChannels);
  return rows > state_.SampleCount[slot] + kMostRefusedRows && !Fail(reason::kRecordedElsewhere);
}

bool RecordingFiles::AppendRow(int slot, std::span<const std::int16_t> words, int copies) {
  const bool is_possible = IsTableSlot(slot) && (copies == 1 || copies == 2) && !words.empty() &&
                           words.size() <= kInputs &&
                           static_cast<int>(words.size()) == state_.Unit[slot].UnitChannels;
  if (!is_possible) {
    return Fail(reason::kSetDoesNotFit);
  }
  RandomFile& file = state_.SlotFileNo[slot];
  const std::int32_t rows = state_.SampleCount[slot];
  const std::int64_t offset = SampleByte(state_.Unit[slot].UnitChannels, rows, 1);
  const std::int64_t length = file.Size();
  if (length < 0) {
    return Fail(file.Error());
  }
  if (length < offset) {
    return Fail(reason::kShorter);
  }
  if (rows + copies > kMaxSampleCount) {
    return Fail(reason::kFileFull);
  }
  std::array<std::int16_t, kMaxRowWords> twice{};
  std::copy(words.begin(), words.end(), twice.begin());
  std::copy(words.begin(), words.end(), twice.begin() + static_cast<std::ptrdiff_t>(words.size()));
  const std::span all(twice.data(), words.size() * static_cast<std::size_t>(copies));
  journals_.Prepare(slot);
  is_row_refused_[slot] = true;
  if (!file.WriteAt(offset, std::as_bytes(all))) {
    return Fail(file.Error());
  }
  state_.SampleCount[slot] = rows + copies;
  is_row_refused_[slot] = false;
  journals_.Appended(slot, std::as_bytes(all));
  return true;
}

std::optional<std::int16_t> RecordingFiles::ReadSample(int slot, std::int32_t row, int column) {
  if (!IsTableSlot(slot)) {
    return std::nullopt;
  }
  const int channels = state_.Unit[slot].UnitChannels;
  if (row < 0 || row >= state_.SampleCount[slot] || column < 1 || column > channels) {
    return std::nullopt;
  }
  std::int16_t word = 0;
  const std::int64_t got = state_.SlotFileNo[slot].ReadAt(
      SampleByte(channels, row, column), std::as_writable_bytes(std::span(&word, 1)));
  return got == kWordBytes ? std::optional(word) : std::nullopt;
}

void RecordingFiles::EmptySlot(int slot) {
  if (!IsTableSlot(slot)) {
    return;
  }
  CloseRecordingFile(slot);
  state_.SlotFile[slot].clear();
  state_.SampleCount[slot] = 0;
  state_.ReadState[slot] = ReadState::kIdle;
  state_.WriteFailed[slot] = false;
  ForgetShown(slot);
}

void RecordingFiles::Refuse(int slot, const char* title, const std::string& text) {
  EmptySlot(slot);
  messages_.Report(slot, {text, title});
}

// What the screens remember of the slot's file no longer fits.
void RecordingFiles::ForgetShown(int slot) {
  state_.SheetReset = false;
  if (slot == state_.SelSlot) {
    state_.ForgetShownSlot();
  }
}

bool RecordingFiles::Fail(std::string text) {
  error_ = std::move(text);
  return false;
}

bool RecordingFiles::Fail(const BothLanguages& text) {
  return Fail(std::string(text.English));
}

bool RecordingFiles::IsOfOthers() const {
  return error_ == reason::kRecordedElsewhere.English;
}

std::string RecordingFiles::ErrorText() const {
  return ReasonIn(UserLanguage(state_), error_);
}

}  // namespace tavrel
