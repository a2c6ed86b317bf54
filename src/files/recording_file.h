#ifndef TAVREL_FILES_RECORDING_FILE_H_
#define TAVREL_FILES_RECORDING_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/language.h"
#include "files/held_set.h"
#include "files/recording_journals.h"
#include "platform/clock.h"
#include "state/messages.h"
#include "state/run_state.h"

namespace tavrel {

// The recording files of the slots: opened, tested, refused, written (recording_file.cpp), begun
// (recording_file_create.cpp), put back when others have taken them away
// (recording_file_restore.cpp); the set in hand and what is kept of it beside the file
// (set_in_hand.cpp). Works on the tables of the shared block (SlotPath, SlotFile, SlotFileNo, Unit
// and the derived counts).
//
// Failures are reported through Messages and clear SlotFile(slot), by which a caller knows that
// the slot holds nothing; the entry in the settings stays, except where told.
class RecordingFiles {
 public:
  // All outlive this.
  RecordingFiles(RunState& state, const Clock& clock, Messages& messages);

  // Reads and tests the file named by SlotPath and SlotFile, fills Unit and the derived values
  // and leaves the file open. A file on media that cannot be written is opened for reading in
  // slot 0 only. A partial file whose length rounds to no header (below 500 bytes) is deleted. A
  // recording that was running goes on: ReadState becomes kReading, unless the recorded inputs
  // and UnitChannels disagree (such a file may be shown but not recorded). A file that another of
  // the slots 1..12 has, by whatever name, is refused: their rows would overwrite each other.
  void OpenRecordingFile(int slot);

  // Refuses the file named by SlotPath and SlotFile, and leaves it as it is, if it is too short to
  // be a recording or is no file at all: for names that come from outside, behind which anything
  // may stand. True then. A file that is not there is left to OpenRecordingFile.
  [[nodiscard]] bool RefuseWhatIsNone(int slot);

  // Why the last OpenRecordingFile of the slot refused its file: true for an error of the system,
  // which may pass, false if the file is not there, is damaged, is none of this system's or is in
  // use.
  [[nodiscard]] bool WasRefusedByError(int slot) const { return refused_by_error_[slot]; }

  // The instrument that the header of that file names, 1..6; empty if that cannot be read.
  [[nodiscard]] static std::optional<std::int16_t> InetOf(const std::string& directory,
                                                          const std::string& name);

  // Writes Unit(slot) as the first 1000 bytes, synced, and leaves the file open. A missing file
  // is made, in capitals and with SampleCount 0, if its directory is there. A file that does not
  // hold the SampleCount rows of the slot is another one and is refused. Clears SlotDirty. The
  // header of a viewed file that a slot or another program records is left to that, and told.
  void WriteHeader(int slot);

  // Begins a new file for the slot with `interval` as UnitInterval: picks a name that is free on
  // the disk and among the slots, resets the run fields, writes the header, opens the file. The
  // name goes to SlotFile and ActiveFiles. False on failure: if no name is free, the slot keeps
  // the file it had, opened again if the caller has closed it; if the file cannot be made, SlotFile
  // is empty. ActiveFiles then stays.
  bool CreateRecordingFile(int slot, std::int16_t interval);

  // Makes the file in which the recording of a full one goes on: its header is that of the slot
  // with UnitRecOn 1 and UnitMarks 0. Where no letter is left its name has today's date. It is on
  // the disk when its name is returned; the slot and the settings are not touched. Empty, and
  // reported, on failure.
  [[nodiscard]] std::string MakeNextFile(int slot);

  // The recording of the slot goes on in `name`, which MakeNextFile has made. The slot has it in
  // any case: if it cannot be opened now, false and Error(), and ReopenRecordingFile does it later.
  [[nodiscard]] bool GoOnInFile(int slot, const std::string& name);

  // `name` in capitals, its letter raised until nothing in the slot's directory and no slot has
  // it; empty if no letter is left.
  [[nodiscard]] std::string FreeName(int slot, std::string name) const;

  // True if others have deleted or moved the file of the slot, or put something else in its place.
  // False while its directory is away.
  [[nodiscard]] bool IsFileLost(int slot) const;

  // Puts a lost file with its rows, which an open file keeps, to the disk again: under its own name
  // if that is free, else under the next one, which SlotFile and ActiveFiles then have. A whole
  // copy in its place is taken as it is. Returns what is to be told to the user, which may be
  // nothing. Empty, with Error(), on failure; then nothing has changed.
  [[nodiscard]] std::optional<std::string> RestoreFile(int slot);

  // What was written is on the disk afterwards.
  void CloseRecordingFile(int slot);

  // Closes the file and takes it from the slot: the slot holds nothing from here on, and no cycle
  // touches it. The key of the settings that names the file stays.
  void EmptySlot(int slot);

  // Deletes the file at `path`, which held no sample when its slot has left it, unless a slot or
  // the viewer has it: somebody looks at it.
  void DropEmptyFile(const std::string& path);

  // Closes and deletes.
  void DeleteRecordingFile(int slot);

  // Closes and opens again, so that what was written is on the disk; a dirty header is written
  // with it. On failure the name stays and false is returned; the file is then closed and the
  // call may be repeated. Never makes a file or directory anew, and refuses a file that is
  // shorter than the slot's rows or was begun by another recording. A file that another program
  // has recorded into while it was not open here is that one's: it is told, and SlotFile is empty.
  bool ReopenRecordingFile(int slot);

  // Puts `words` (UnitChannels of them) behind the last row, `copies` times, in one write.
  // Only on success does SampleCount move. False and Error() on failure; never leaves a hole in
  // a file that was cut meanwhile.
  [[nodiscard]] bool AppendRow(int slot, std::span<const std::int16_t> words, int copies);

  // Keeps what has arrived of the next set beside the recording, and the input that is about to
  // be asked for its value (0 for none). A medium that refuses this costs the safety of the
  // half-read set, not the recording. False then.
  bool KeepHeldSet(int slot, int asked_input);

  // At the end of the program: what is kept beside the recording goes if nothing of it is needed at
  // the next start.
  void ReleaseHeldSet(int slot);

  // The recording is over: nothing is held any more.
  void DropHeldSet(int slot);

  // Puts the whole set in hand, SampleValue, behind the last row; the first set of a file stands in
  // it twice. Nothing is in hand then. False and Error() on failure.
  [[nodiscard]] bool AppendSetInHand(int slot);

  // A slot is about to leave its file: tries a whole set that the disk has refused once more. If
  // that fails it stays beside the recording, from where the next opening in a slot takes it, or is
  // lost if that fails too. Returns what is to be told to the user; empty if nothing is left.
  [[nodiscard]] std::string SaveSetInHand(int slot);

  // One sample: `row` from 0, `column` from 1. Empty outside the file.
  [[nodiscard]] std::optional<std::int16_t> ReadSample(int slot, std::int32_t row, int column);

  // What happened to the recordings is written there.
  [[nodiscard]] RecordingJournals& Journals() { return journals_; }

  // The system's words for the last failure of AppendRow or ReopenRecordingFile.
  [[nodiscard]] const std::string& Error() const { return error_; }  // in English, as journals are
  [[nodiscard]] std::string ErrorText() const;                       // for the user

 private:
  // These answer with the empty text or with what is to be told to the user.
  [[nodiscard]] std::string OpenAndTest(int slot);
  [[nodiscard]] std::string ReadHeader(int slot, std::int64_t length);
  [[nodiscard]] std::string PutHeader(int slot);
  [[nodiscard]] std::string PutHeaderIntoNewFile(int slot);

  [[nodiscard]] std::string RefuseForGood(int slot, const std::string& why);
  [[nodiscard]] int OwnerOf(int slot, const std::string& path) const;
  [[nodiscard]] bool OpenForSlot(int slot, const std::string& path);
  [[nodiscard]] bool Reserve(int slot, const std::string& path);
  [[nodiscard]] bool IsViewedHeaderOfOthers();
  [[nodiscard]] bool HasRowsOfOthers(int slot, RandomFile& file);
  [[nodiscard]] bool IsOfOthers() const;  // the last failure: another program has the file
  void LeaveToOthers(int slot);
  [[nodiscard]] bool OpenSameFile(int slot, RandomFile& file);
  [[nodiscard]] bool HoldsRowsOfSlot(int slot, RandomFile& file);
  void NotePlace(int slot, const std::string& path);
  [[nodiscard]] std::string NextFreeName(int slot) const;
  [[nodiscard]] bool IsNameTaken(int slot, const std::string& name) const;
  [[nodiscard]] bool AdoptCopy(int slot);
  [[nodiscard]] std::optional<std::vector<std::byte>> RowsOfOpenFile(int slot);
  [[nodiscard]] bool PutIntoNewFile(int slot, std::span<const std::byte> rows);
  [[nodiscard]] std::string MakeRestoredFile(RandomFile& file, int slot, const std::string& name,
                                             const UnitRecord& unit,
                                             std::span<const std::byte> rows);
  void TakeRestoredFile(int slot, const std::string& name, RandomFile file);
  void DeriveValues(int slot);
  void TakeHeldSet(int slot, const std::optional<HeldSet>& held);
  [[nodiscard]] std::optional<HeldSet> ReadHeldSet(int slot);
  void KeepOrderOf(int slot, const std::optional<HeldSet>& held);
  void TellLostRows(int slot, std::int32_t rows);
  void TakeRefusedSet(int slot);
  void HandHeldSetOn(int slot, const std::string& name);
  [[nodiscard]] std::string HeldSetPath(int slot) const;
  void Refuse(int slot, const char* title, const std::string& text);
  void ForgetShown(int slot);
  void TellOfJournal(int slot);
  bool Fail(std::string text);
  bool Fail(const BothLanguages& text);

  // Where the file of a slot was found when it was opened last.
  struct Place {
    std::string path;
    std::optional<FileIdentity> directory;
  };

  RunState& state_;
  const Clock& clock_;
  Messages& messages_;
  RecordingJournals journals_;
  BySlot<Place> places_;
  BySlot<RandomFile> held_set_files_;  // opened with the first set that is held
  BySlot<bool> refused_by_error_{};
  BySlot<bool> is_row_refused_{};  // the medium has refused the last row
  std::string error_;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_FILE_H_
