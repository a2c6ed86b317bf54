#ifndef TAVREL_FILES_RECORDING_JOURNALS_H_
#define TAVREL_FILES_RECORDING_JOURNALS_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/journal_check.h"
#include "files/journal_writer.h"
#include "files/ledger.h"
#include "platform/clock.h"
#include "state/messages.h"
#include "state/run_state.h"

namespace tavrel {

// The journals of the recordings that the slots have: what happened to each of them, and seals
// over header, rows and journal (docs/recording_journal.md). A medium that refuses a journal costs
// the journal and never the recording; the user is told once, and it is tried again with each
// header and once in a minute.
//
// A journal is begun where this program makes or records a file, and is opened when the file of a
// slot is recorded or written. A file without a journal that is only looked at or edited stays
// without one.
class RecordingJournals {
 public:
  // All outlive this.
  RecordingJournals(RunState& state, const Clock& clock, Messages& messages);

  // The slot has opened its file. The journal of a recording that goes on is taken up: it is held
  // against the file, and where they do not fit a new one begins and the old one is put aside. The
  // same is done if `lacks_lines`, see LacksLines().
  void Opened(int slot, bool lacks_lines);

  // The journal on the disk lacks lines without which nobody can tell how complete the recording
  // is: they could not be written, or wait for the disk. Whoever goes on with the recording later
  // has to know.
  [[nodiscard]] bool LacksLines(int slot) const;

  // Makes a recording file as MakeRecordingFile does, with a journal of which `origin` is a part of
  // the first line.
  [[nodiscard]] std::string MakeFile(RandomFile& file, int slot, const std::string& name,
                                     const UnitRecord& unit, std::span<const std::byte> rows,
                                     const JsonValue::Members& origin);

  // Writes the header of the slot into its open file as SaveHeader does. The journal has its hash,
  // on the disk, before.
  [[nodiscard]] std::string SaveHeader(int slot, RandomFile& file);

  // The header of the slot's file is about to be this one.
  void AnnounceHeader(int slot, const UnitRecord& unit);

  // Rows are about to be put behind the last one.
  void Prepare(int slot) { static_cast<void>(IsReady(slot)); }

  // Rows have been put behind the last one, as these bytes.
  void Appended(int slot, std::span<const std::byte> bytes);

  // What is in the file has been put to the disk.
  void Synced(int slot);

  // Something happened to the recording. Nothing is written where it has no journal.
  void Note(int slot, const std::string& kind, JsonValue::Members fields);

  // The instrument has said that it holds no more of the recording, in an exchange that took so
  // long: all that it has made is in the file. Written down once between two seals.
  void Drained(int slot, std::chrono::nanoseconds took);

  // The instrument has said that from `least` to `most` sets wait that are in no row yet, in an
  // exchange that began so long ago. Written down once while a drained instrument is wanted.
  void Counted(int slot, int least, int most, std::chrono::nanoseconds took);

  // How complete the recording of the slot is, as its journal says, at this moment. Where nothing
  // is recorded the journal is read from the disk each time.
  [[nodiscard]] LedgerFigures Figures(int slot);

  // What the journal of the slot tells of rows, as Figures().
  [[nodiscard]] std::vector<ToldRows> Told(int slot);

  // The file of the slot is closed; all of it is on the disk if `is_synced`.
  void Closed(int slot, bool is_synced);

  // The recording at that path has gone, and held no row: there is nothing to prove.
  static void Drop(const std::string& recording_path);

  // The id in the journal of the slot; empty if it has none.
  [[nodiscard]] std::string IdOf(int slot);

  // Tells what has kept a journal from its medium, once until one can be written again.
  void TellProblem(int slot);

 private:
  // What is known of the file of a slot, and its journal.
  struct Entry {
    enum class Kind { kUnknown, kNone, kOpen, kRefused };

    explicit Entry(const Clock& clock) : Writer(clock) {}

    Kind State = Kind::kUnknown;
    JournalWriter Writer;
    std::string Id;
    Sha256 Data;            // of all rows
    std::int32_t Rows = 0;  // in Data
    UnitRecord Header{};    // as it lies in the file
    std::string HeaderHash;
    // A write has failed: the file holds the old header or the new one, and cannot be sealed before
    // one is written.
    bool IsHeaderInDoubt = false;
    std::chrono::nanoseconds NextTry{};  // of one that was refused, by the clock's Elapsed()
    bool IsSealed = false;               // nothing has happened since the last seal
    Ledger Book;
    // Of the last line that says the instrument holds no more.
    std::int32_t DrainedRows = 0;
    bool WantsDrained = true;     // something has happened since
    bool IsCounted = false;       // since then it was written down how many sets wait
    std::int32_t StartRows = -1;  // when the recording was started; no set has come yet
    bool IsSealedBehindDrained = false;
    bool MustSync = false;       // rows or a header have come since the journal was put to the disk
    bool LacksLines = false;     // rows or lines for the ledger have come while it was refused
    bool IsTurnWaiting = false;  // lines for the ledger wait for the disk
  };

  [[nodiscard]] Entry& Of(int slot) { return entries_.at(static_cast<std::size_t>(slot)); }
  [[nodiscard]] bool IsReady(int slot);
  void Attach(int slot);
  [[nodiscard]] Ledger LedgerOnDisk(int slot) const;
  void GoOn(int slot, JournalReading reading, std::span<const std::byte> bytes,
            const RecordingCheck& check);
  void BeginAnew(int slot, const std::string& why, bool has_old);
  void TakeFile(int slot, std::span<const std::byte> bytes);
  [[nodiscard]] std::optional<std::string> BytesOfFile(int slot);
  void Add(Entry& entry, const std::string& kind, const JsonValue::Members& fields);
  void Sync(Entry& entry);
  void Seal(Entry& entry);
  void Refuse(Entry& entry);
  void NoteProblem(const Entry& entry);

  RunState& state_;
  const Clock& clock_;
  Messages& messages_;
  std::vector<Entry> entries_;  // by slot, 0..12
  std::string problem_;
  bool is_told_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_JOURNALS_H_
