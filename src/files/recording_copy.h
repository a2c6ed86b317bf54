#ifndef TAVREL_FILES_RECORDING_COPY_H_
#define TAVREL_FILES_RECORDING_COPY_H_

#include <functional>
#include <string>

namespace tavrel {

// How the copying of a recording went. Texts are the system's words, empty on success.
struct RecordingCopy {
  std::string Problem;         // nothing was copied
  std::string JournalProblem;  // the recording was, and is without its journal
};

// Copies the file at `from` to the full path `to`, and its journal, if it has one, to the directory
// `journal` beside `to`. Both are read in one piece before anything is written: what is added to
// them meanwhile is in neither of the copies. A journal that lies at the target, of the file that
// was there before, is put aside, or goes if the new one begins with all of it. A file without a
// journal, and one that is too long for a recording, is copied as it is.
//
// `goes_on` as of CopyFileTo.
[[nodiscard]] RecordingCopy CopyRecording(const std::string& from, const std::string& to,
                                          const std::function<bool()>& goes_on);

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_COPY_H_
