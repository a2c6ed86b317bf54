#include "files/recording_journals.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <string_view>
#include <utility>

#include "files/file_texts.h"
#include "files/header_changes.h"
#include "files/journal_begin.h"
#include "files/new_file.h"
#include "files/reasons.h"
#include "files/recording_format.h"
#include "files/stored_recording.h"
#include "platform/file_system.h"
#include "platform/whoami.h"
#include "state/box_titles.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

// Between two attempts to write a journal that its medium has refused.
constexpr std::chrono::seconds kPause{60};

std::span<const std::byte> BytesOf(const UnitRecord& unit) {
  return std::as_bytes(std::span(&unit, 1));
}

// The whole rows among the bytes of a file.
std::span<const std::byte> RowsIn(std::span<const std::byte> bytes, std::int32_t rows,
                                  int columns) {
  const auto end = static_cast<std::size_t>(SampleByte(columns, rows, 1));
  return rows > 0 && end <= bytes.size() ? bytes.subspan(kHeaderBytes, end - kHeaderBytes)
                                         : std::span<const std::byte>();
}

// What changes how the sets of the instrument and the rows belong together.
bool IsTurn(const std::string& kind) {
  static constexpr std::array<std::string_view, 5> kTurns = {"start", "resume", "back", "lost",
                                                             "values"};
  return std::find(kTurns.begin(), kTurns.end(), kind) != kTurns.end();
}

}  // namespace

RecordingJournals::RecordingJournals(RunState& state, const Clock& clock, Messages& messages)
    : state_(state), clock_(clock), messages_(messages) {
  for (int slot = kViewedFile; slot <= kSlots; ++slot) {
    entries_.emplace_back(clock);
  }
}

void RecordingJournals::Opened(int slot, bool lacks_lines) {
  Of(slot) = Entry(clock_);
  Of(slot).LacksLines = lacks_lines;
  if (state_.ReadState[slot] != ReadState::kIdle) {
    static_cast<void>(IsReady(slot));
  }
}

bool RecordingJournals::LacksLines(int slot) const {
  const Entry& entry = entries_.at(static_cast<std::size_t>(slot));
  return entry.LacksLines || entry.IsTurnWaiting;
}

// A recording begins a journal where there is none; nothing else does. One that was refused is
// tried again after a while.
bool RecordingJournals::IsReady(int slot) {
  Entry& entry = Of(slot);
  if (entry.State == Entry::Kind::kRefused && clock_.Elapsed() >= entry.NextTry) {
    entry.State = Entry::Kind::kUnknown;
  }
  const bool is_recording = IsSlot(slot) && state_.Unit[slot].UnitRecOn == 1;
  if (entry.State == Entry::Kind::kUnknown && state_.SlotFileNo[slot].IsOpen()) {
    Attach(slot);
  }
  if (entry.State == Entry::Kind::kNone && is_recording) {
    BeginAnew(slot, "there was none", false);
  }
  if (entry.State == Entry::Kind::kOpen && !entry.Writer.IsOpen()) {
    Refuse(entry);
  }
  return entry.State == Entry::Kind::kOpen;
}

void RecordingJournals::Attach(int slot) {
  Entry& entry = Of(slot);
  const std::string directory = JoinPath(state_.SlotPath[slot], kJournalDirectory);
  NoAnswer no_answer;
  const auto path = FindFile(directory, state_.SlotFile[slot], no_answer);
  if (no_answer.Why != Failure::kNone) {
    problem_ = no_answer.Text;
    Refuse(entry);
    return;
  }
  if (!path) {
    entry.State = Entry::Kind::kNone;
    return;
  }
  const auto bytes = BytesOfFile(slot);
  if (!bytes || !entry.Writer.Open(*path)) {
    Refuse(entry);
    return;
  }
  const auto text = entry.Writer.Text();
  if (!text) {
    BeginAnew(slot, "the old one cannot be read", true);
    return;
  }
  JournalReading reading = ReadJournalEnd(*text);
  entry.Book = ReadLedger(*text);
  const auto file = std::as_bytes(std::span(*bytes));
  const RecordingCheck check = CheckRecording(file, reading);
  if (check.Verdict == Verdict::kDamaged || check.Id.empty()) {
    const std::string finding = check.Findings.empty() ? "" : ": " + check.Findings.front();
    BeginAnew(slot, "the old one does not fit" + finding, true);
    return;
  }
  // What was lost or filled in meanwhile stands in no line of the old one.
  if (entry.LacksLines) {
    BeginAnew(slot, "the old one could not be written for a while", true);
    return;
  }
  GoOn(slot, std::move(reading), file, check);
}

// What the file holds is sealed when it is put to the disk next: opening a file waits for no disk.
void RecordingJournals::GoOn(int slot, JournalReading reading, std::span<const std::byte> bytes,
                             const RecordingCheck& check) {
  Entry& entry = Of(slot);
  entry.State = Entry::Kind::kOpen;
  entry.NextTry = {};
  entry.Id = check.Id;
  TakeFile(slot, bytes);
  entry.Writer.GoOnBehind(std::move(reading));
  const bool goes_on = IsSlot(slot) && state_.Unit[slot].UnitRecOn == 1;
  JsonValue::Members fields = SessionFields(state_.Settings);
  fields.emplace_back("rows", entry.Rows);
  Add(entry, goes_on ? "resume" : "open", fields);
  if (entry.Rows > check.CoveredRows) {
    Add(entry, "adopted", {{"first", check.CoveredRows}, {"last", entry.Rows - 1}});
  }
}

// The old journal tells what happened before, so it is kept under another name.
void RecordingJournals::BeginAnew(int slot, const std::string& why, bool has_old) {
  Entry& entry = Of(slot);
  const std::string& name = state_.SlotFile[slot];
  const std::string new_path = JournalPath(state_.SlotPath[slot], name);
  const std::string old_path =
      FindFile(JoinPath(state_.SlotPath[slot], kJournalDirectory), name).value_or(new_path);
  const std::string aside = has_old ? PutJournalAside(old_path) : "";
  const auto bytes = BytesOfFile(slot);
  entry.Writer.Close();
  const bool is_free = !has_old || !aside.empty();
  if (!is_free || !bytes || !entry.Writer.Open(old_path) || !entry.Writer.IsEmpty()) {
    Refuse(entry);
    return;
  }
  entry.State = Entry::Kind::kOpen;
  entry.NextTry = {};
  entry.Id = RandomId();
  entry.Book = Ledger();
  entry.LacksLines = false;
  TakeFile(slot, std::as_bytes(std::span(*bytes)));
  JsonValue::Members fields = BeginFields(entry.Id, name, state_.Unit[slot], state_.Settings);
  fields.emplace_back("why", why);
  if (has_old) {
    fields.emplace_back("aside", aside.substr(aside.rfind('/') + 1));
  }
  Add(entry, journal::kBegin, fields);
  if (entry.Rows > 0) {
    Add(entry, "adopted", {{"first", 0}, {"last", entry.Rows - 1}});
  }
}

void RecordingJournals::TakeFile(int slot, std::span<const std::byte> bytes) {
  Entry& entry = Of(slot);
  const auto header = bytes.first(std::min<std::size_t>(bytes.size(), kHeaderBytes));
  entry.Header = UnitRecord();
  if (!header.empty()) {
    std::memcpy(&entry.Header, header.data(), header.size());
  }
  entry.HeaderHash = Sha256Of(header);
  const int columns = entry.Header.UnitChannels;
  entry.Rows = SampleCountOf(static_cast<std::int64_t>(bytes.size()), columns);
  entry.Data = Sha256();
  entry.Data.Add(RowsIn(bytes, entry.Rows, columns));
  entry.IsSealed = false;
}

std::optional<std::string> RecordingJournals::BytesOfFile(int slot) {
  RandomFile& file = state_.SlotFileNo[slot];
  const std::int64_t length = std::min<std::int64_t>(file.IsOpen() ? file.Size() : -1,
                                                     SampleByte(kInputs, kMaxSampleCount, 1));
  if (length < 0) {
    problem_ = file.Error();
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(length), '\0');
  const bool is_read = file.ReadAt(0, std::as_writable_bytes(std::span(bytes))) == length;
  return is_read ? std::optional(bytes) : std::nullopt;
}

std::string RecordingJournals::MakeFile(RandomFile& file, int slot, const std::string& name,
                                        const UnitRecord& unit, std::span<const std::byte> rows,
                                        const JsonValue::Members& origin) {
  const std::string& directory = state_.SlotPath[slot];
  const std::string path = JournalPath(directory, name);
  const auto old_path = FindFile(JoinPath(directory, kJournalDirectory), name);
  const std::string aside = old_path ? PutJournalAside(*old_path) : "";
  Entry entry(clock_);
  entry.Id = RandomId();
  if ((!old_path || !aside.empty()) && entry.Writer.Open(path)) {
    entry.State = Entry::Kind::kOpen;
    JsonValue::Members fields = BeginFields(entry.Id, name, unit, state_.Settings);
    fields.insert(fields.end(), origin.begin(), origin.end());
    entry.Header = unit;
    entry.HeaderHash = Sha256Of(BytesOf(unit));
    Add(entry, journal::kBegin, fields);
    Add(entry, journal::kHeader, {{"new", entry.HeaderHash}});
    Sync(entry);
  } else {
    Refuse(entry);
  }
  std::string problem = MakeRecordingFile(file, directory, name, unit, rows);
  if (problem.empty()) {
    entry.Data.Add(rows);
    const auto length = kHeaderBytes + static_cast<std::int64_t>(rows.size());
    entry.Rows = SampleCountOf(length, unit.UnitChannels);
    entry.MustSync = true;
    Seal(entry);
  } else if (entry.State == Entry::Kind::kOpen) {
    entry.Writer.Close();
    static_cast<void>(DeleteFile(path));
  }
  return problem;
}

std::string RecordingJournals::SaveHeader(int slot, RandomFile& file) {
  const UnitRecord& unit = state_.Unit[slot];
  Entry& entry = Of(slot);
  // At once: a header that the journal does not know looks like damage.
  entry.NextTry = std::min(entry.NextTry, clock_.Elapsed());
  AnnounceHeader(slot, unit);
  std::string problem = tavrel::SaveHeader(file, unit);
  entry.IsHeaderInDoubt = !problem.empty();
  if (entry.State == Entry::Kind::kOpen && problem.empty()) {
    entry.Header = unit;
    entry.HeaderHash = Sha256Of(BytesOf(unit));
    entry.MustSync = true;
    Seal(entry);
  }
  return problem;
}

void RecordingJournals::AnnounceHeader(int slot, const UnitRecord& unit) {
  if (!IsReady(slot)) {
    return;
  }
  Entry& entry = Of(slot);
  const std::string hash = Sha256Of(BytesOf(unit));
  if (hash != entry.HeaderHash) {
    Add(entry, journal::kHeader,
        {{"old", entry.HeaderHash}, {"new", hash}, {"changes", HeaderChanges(entry.Header, unit)}});
    Sync(entry);
  }
}

void RecordingJournals::Appended(int slot, std::span<const std::byte> bytes) {
  Entry& entry = Of(slot);
  entry.LacksLines = entry.LacksLines || entry.State == Entry::Kind::kRefused;
  if (entry.State != Entry::Kind::kOpen) {
    return;
  }
  entry.Data.Add(bytes);
  entry.Rows = state_.SampleCount[slot];
  entry.IsSealed = false;
  entry.MustSync = true;
}

void RecordingJournals::Synced(int slot) {
  if (Of(slot).State == Entry::Kind::kOpen) {
    Seal(Of(slot));
  }
}

void RecordingJournals::Note(int slot, const std::string& kind, JsonValue::Members fields) {
  if (slot < kViewedFile || slot > kSlots || state_.SlotFile[slot].empty()) {
    return;
  }
  if (!IsReady(slot)) {
    const bool has_none = Of(slot).State == Entry::Kind::kNone;
    Of(slot).LacksLines = Of(slot).LacksLines || (!has_none && IsTurn(kind));
    return;
  }
  fields.emplace_back("rows", Of(slot).Rows);
  Add(Of(slot), kind, fields);
}

void RecordingJournals::Drained(int slot, std::chrono::nanoseconds took) {
  Entry& entry = Of(slot);
  const bool is_due = entry.IsSealedBehindDrained && entry.Rows != entry.DrainedRows;
  const bool is_wanted = entry.WantsDrained && entry.Rows != entry.StartRows;
  if ((!is_due && !is_wanted) || !IsReady(slot)) {
    return;
  }
  Note(slot, journal::kDrained, {{"took", std::chrono::duration<double>(took).count()}});
  entry.WantsDrained = false;
  entry.IsSealedBehindDrained = false;
  entry.DrainedRows = entry.Rows;
}

void RecordingJournals::Counted(int slot, int least, int most, std::chrono::nanoseconds took) {
  Entry& entry = Of(slot);
  if (!entry.WantsDrained || entry.IsCounted || !IsReady(slot)) {
    return;
  }
  entry.IsCounted = true;
  Note(slot, "counted",
       {{"least", least}, {"most", most}, {"took", std::chrono::duration<double>(took).count()}});
}

LedgerFigures RecordingJournals::Figures(int slot) {
  Entry& entry = Of(slot);
  if (entry.State == Entry::Kind::kUnknown) {
    return LedgerOnDisk(slot).Figures(state_.SampleCount[slot]);
  }
  if (entry.State != Entry::Kind::kOpen) {
    return Ledger().Figures(state_.SampleCount[slot]);
  }
  const JournalStamp now = entry.Writer.Stamp();
  return entry.Book.Figures(entry.Rows, LedgerMoment{now.Up, now.Boot});
}

std::vector<ToldRows> RecordingJournals::Told(int slot) {
  const Entry& entry = Of(slot);
  if (entry.State == Entry::Kind::kUnknown) {
    return LedgerOnDisk(slot).Told(state_.SampleCount[slot]);
  }
  return entry.State == Entry::Kind::kOpen ? entry.Book.Told(entry.Rows) : std::vector<ToldRows>();
}

Ledger RecordingJournals::LedgerOnDisk(int slot) const {
  return ReadLedger(JournalTextOf(state_.SlotPath[slot], state_.SlotFile[slot]).value_or(""));
}

void RecordingJournals::Closed(int slot, bool is_synced) {
  Entry& entry = Of(slot);
  if (entry.State == Entry::Kind::kOpen && is_synced) {
    Seal(entry);
  }
  entry = Entry(clock_);
}

void RecordingJournals::Drop(const std::string& recording_path) {
  const std::size_t name = recording_path.rfind('/') + 1;
  const auto path =
      FindPath(JournalPath(recording_path.substr(0, name), recording_path.substr(name)));
  if (path) {
    static_cast<void>(DeleteFile(*path));
  }
}

std::string RecordingJournals::IdOf(int slot) {
  return IsReady(slot) ? Of(slot).Id : "";
}

void RecordingJournals::Add(Entry& entry, const std::string& kind,
                            const JsonValue::Members& fields) {
  const JournalStamp stamp = entry.Writer.Add(kind, fields);
  entry.IsTurnWaiting = !entry.Writer.Error().empty() && (entry.IsTurnWaiting || IsTurn(kind));
  entry.Book.Take(kind, fields, {stamp.Up, stamp.Boot}, TimeWithZone(stamp.Wall));
  entry.WantsDrained = entry.WantsDrained || IsTurn(kind);
  entry.IsCounted = entry.IsCounted && !IsTurn(kind);
  entry.StartRows = kind == "start" ? entry.Rows : entry.StartRows;
  entry.IsSealedBehindDrained = entry.IsSealedBehindDrained || kind == journal::kSeal;
  entry.IsSealed = false;
  NoteProblem(entry);
}

void RecordingJournals::Sync(Entry& entry) {
  if (entry.Writer.Sync()) {
    entry.IsTurnWaiting = false;
    entry.MustSync = false;
    is_told_ = false;
    problem_.clear();
  }
  NoteProblem(entry);
}

void RecordingJournals::Seal(Entry& entry) {
  if (entry.State != Entry::Kind::kOpen || entry.IsSealed || entry.IsHeaderInDoubt) {
    return;
  }
  Add(entry, journal::kSeal,
      JournalSeal{entry.Rows, entry.Header.UnitChannels, entry.Data.Hex(), entry.HeaderHash,
                  entry.Writer.Hash()}
          .Fields());
  if (entry.MustSync) {
    Sync(entry);
  }
  entry.IsSealed = true;
}

void RecordingJournals::Refuse(Entry& entry) {
  NoteProblem(entry);
  entry.LacksLines = entry.LacksLines || entry.IsTurnWaiting;
  entry.IsTurnWaiting = false;
  entry.Writer.Close();
  entry.State = Entry::Kind::kRefused;
  entry.NextTry = clock_.Elapsed() + kPause;
}

void RecordingJournals::NoteProblem(const Entry& entry) {
  if (!entry.Writer.Error().empty()) {
    problem_ = entry.Writer.Error();
  }
}

void RecordingJournals::TellProblem(int slot) {
  if (problem_.empty() || is_told_) {
    return;
  }
  const std::string problem = std::exchange(problem_, "");
  is_told_ = true;
  const Messages::Deferral deferral(messages_);  // a box would interrupt what is not finished yet
  const Language language = UserLanguage(state_);
  messages_.Report(slot, {file_text::kJournalRefused.Text(
                              language, {state_.SlotFile[slot], ReasonIn(language, problem)}),
                          kWriteTitle});
}

}  // namespace tavrel
