#include "files/recording_copy.h"

#include <cstdio>
#include <optional>

#include "files/journal_writer.h"
#include "files/reasons.h"
#include "files/stored_recording.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

// The journal of the file that was at the target before. While the copy is made it lies under
// another name, so that nothing is ever held against a journal of something else.
class OldJournal {
 public:
  OldJournal(const std::string& directory, const std::string& name)
      : path_(FindFile(JoinPath(directory, kJournalDirectory), name)) {
    if (path_) {
      text_ = ReadWholeFile(*path_, kMostJournalBytes);
      aside_ = PutJournalAside(*path_);
    }
  }

  [[nodiscard]] bool IsInTheWay() const { return path_ && aside_.empty(); }

  // Nothing was copied.
  void PutBack() const {
    if (!aside_.empty()) {
      static_cast<void>(std::rename(aside_.c_str(), path_->c_str()));
    }
  }

  // `journal` is in its place.
  void DropIfIn(const std::string& journal) const {
    if (!aside_.empty() && text_ && journal.starts_with(*text_)) {
      static_cast<void>(DeleteFile(aside_));
    }
  }

 private:
  std::optional<std::string> path_;
  std::optional<std::string> text_;
  std::string aside_;
};

}  // namespace

RecordingCopy CopyRecording(const std::string& from, const std::string& to,
                            const std::function<bool()>& goes_on) {
  const StoredRecording source = ReadRecording(from);
  const std::size_t slash = to.rfind('/') + 1;
  const std::string directory = StripSeparator(to.substr(0, slash));
  const std::string name = to.substr(slash);
  const OldJournal old(directory, name);
  RecordingCopy copy;
  copy.Problem =
      source.Journal ? WriteCopy(to, source.Bytes, goes_on) : CopyFileTo(from, to, goes_on);
  if (!copy.Problem.empty()) {
    old.PutBack();
    return copy;
  }
  if (old.IsInTheWay()) {
    copy.JournalProblem = reason::kJournalInTheWay.English;
  } else if (source.Journal) {
    static_cast<void>(MakeDirectory(JoinPath(directory, kJournalDirectory)));
    copy.JournalProblem = WriteCopy(JournalPath(directory, name), *source.Journal, goes_on);
  } else if (source.Problem.starts_with(reason::kItsJournal.English)) {
    copy.JournalProblem = source.Problem;
  }
  if (source.Journal && copy.JournalProblem.empty()) {
    old.DropIfIn(*source.Journal);
  }
  return copy;
}

}  // namespace tavrel
