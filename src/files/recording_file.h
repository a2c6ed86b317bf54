#ifndef TAVREL_FILES_RECORDING_FILE_H_
#define TAVREL_FILES_RECORDING_FILE_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "common/messages.h"
#include "frame/run_state.h"
#include "platform/clock.h"

namespace tavrel {

// The recording files of the slots: opened, tested, refused, written. Works on the tables of the
// shared block (SlotPath, SlotFile, SlotFileNo, Unit and the derived counts).
//
// Failures are reported through Messages and clear SlotFile(slot), by which a caller knows that
// the slot holds nothing; the entry in the settings stays, except where told.
class RecordingFiles {
 public:
  // All outlive this.
  RecordingFiles(RunState& state, const Clock& clock, Messages& messages);

  // Reads and tests the file named by SlotPath and SlotFile, fills Unit and the derived values
  // and leaves the file open. A file on media that cannot be written is opened for reading in
  // slot 0 only. A stump whose length rounds to no header (below 500 bytes) is deleted. A
  // recording that was running goes on: ReadState becomes kReading, unless the recorded inputs
  // and UnitChannels disagree (such a file may be shown but not recorded).
  void OpenRecordingFile(int slot);

  // Writes Unit(slot) as the first 1000 bytes, synced, and leaves the file open; a missing file
  // is made. Clears SlotDirty.
  void WriteHeader(int slot);

  // Begins a new file for the slot with `interval` as UnitInterval: picks a name that is free on
  // the disk and among the slots, resets the run fields, writes the header, opens the file. The
  // name goes to SlotFile and ActiveFiles.
  void CreateRecordingFile(int slot, std::int16_t interval);

  // Makes `name` of the slot free by raising its letter; empty if no letter is left.
  [[nodiscard]] std::string FreeName(int slot, std::string name) const;

  void CloseRecordingFile(int slot);

  // Closes and deletes.
  void DeleteRecordingFile(int slot);

  // Closes and opens again, so that what was written is on the disk; a dirty header is written
  // with it. On failure the name stays and false is returned; the file is then closed and the
  // call may be repeated. Never makes a file or directory anew.
  bool ReopenRecordingFile(int slot);

  // Puts `words` (UnitChannels of them) behind the last row, `copies` times, in one write.
  // Only on success does SampleCount move. False and Error() on failure.
  [[nodiscard]] bool AppendRow(int slot, std::span<const std::int16_t> words, int copies);

  // One sample: `row` from 0, `column` from 1. Empty outside the file.
  [[nodiscard]] std::optional<std::int16_t> ReadSample(int slot, std::int32_t row, int column);

  // The system's words for the last failure of AppendRow or ReopenRecordingFile.
  [[nodiscard]] const std::string& Error() const { return error_; }

 private:
  RunState& state_;
  const Clock& clock_;
  Messages& messages_;
  std::string error_;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_FILE_H_
