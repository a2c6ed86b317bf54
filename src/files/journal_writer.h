#ifndef TAVREL_FILES_JOURNAL_WRITER_H_
#define TAVREL_FILES_JOURNAL_WRITER_H_

#include <cstdint>
#include <string>

#include "files/journal_text.h"
#include "platform/append_file.h"
#include "platform/clock.h"

namespace tavrel {

// An open journal to which lines are added. What the medium refuses is kept and comes to the file
// with a later line, in its order; where too much is waiting the journal is given up.
class JournalWriter {
 public:
  static constexpr std::size_t kMostUnsaved = std::size_t{256} * 1024;  // bytes

  // `clock` outlives this.
  explicit JournalWriter(const Clock& clock) : clock_(&clock) {}

  // Opens the journal at the full path; it is made if it is missing, and its directory as well.
  // False, with Error(), on failure.
  [[nodiscard]] bool Open(const std::string& path);
  void Close();
  [[nodiscard]] bool IsOpen() const { return file_.IsOpen(); }
  [[nodiscard]] bool IsEmpty() const { return file_.Size() == 0; }

  // What the file holds; empty if it cannot be read or is no journal by its length.
  [[nodiscard]] std::optional<std::string> Text() { return file_.ReadAll(kMostJournalBytes); }

  // Lines come behind what `reading` has read; an unfinished line is ended, and a line says so.
  void GoOnBehind(JournalReading reading);

  // Returns when that was.
  JournalStamp Add(const std::string& kind, const JsonValue::Members& fields);

  // As the next line would have it.
  [[nodiscard]] JournalStamp Stamp();

  // The hash of all lines so far.
  [[nodiscard]] std::string Hash() const { return chain_.Hash(); }

  // Returns once all lines are on the disk. False, with Error(), on failure.
  [[nodiscard]] bool Sync();

  // The system's words for the last failure; empty if no line waits.
  [[nodiscard]] const std::string& Error() const { return error_; }

 private:
  [[nodiscard]] bool Save();

  const Clock* clock_;
  AppendFile file_;
  JournalChain chain_;
  std::string boot_;
  std::string unsaved_;
  std::string error_;
};

// Gives the file at `path` the next free name of the form "path.1", which is returned; empty if
// that fails.
[[nodiscard]] std::string PutJournalAside(const std::string& path);

}  // namespace tavrel

#endif  // TAVREL_FILES_JOURNAL_WRITER_H_
