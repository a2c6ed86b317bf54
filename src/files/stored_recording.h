#ifndef TAVREL_FILES_STORED_RECORDING_H_
#define TAVREL_FILES_STORED_RECORDING_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "files/journal_check.h"
#include "platform/file_finder.h"
#include "state/unit_record.h"

namespace tavrel {

// A recording and its journal as they lie on the disk.
struct StoredRecording {
  std::string Bytes;
  std::optional<std::string> Journal;
  std::string Problem;  // why it could not be read; empty if it could

  [[nodiscard]] std::span<const std::byte> File() const { return std::as_bytes(std::span(Bytes)); }
};

// Reads the file at `path`, relative or not, and its journal beside it. Both are looked for
// whatever the case of the name.
//
// A recording that is on goes on meanwhile. A row stands in the file before the journal seals it,
// but a header is in the journal before it is in the file, so no order of the two readings fits
// both: the file is read between two looks at the journal, until both are of one moment.
[[nodiscard]] StoredRecording ReadRecording(const std::string& path);

// The same for many files one after the other.
[[nodiscard]] StoredRecording ReadRecording(const std::string& path, FileFinder& finder);

// The whole journal of the recording `name` in `directory`; empty if there is none that can be
// read.
[[nodiscard]] std::optional<std::string> JournalTextOf(const std::string& directory,
                                                       const std::string& name);

// The header; what a short file does not hold is zero.
[[nodiscard]] UnitRecord HeaderOf(const StoredRecording& recording);

// True if it may be a recording at all: by its header or because there is a journal for it.
[[nodiscard]] bool MayBeRecording(const StoredRecording& recording);

}  // namespace tavrel

#endif  // TAVREL_FILES_STORED_RECORDING_H_
