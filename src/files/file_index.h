#ifndef TAVREL_FILES_FILE_INDEX_H_
#define TAVREL_FILES_FILE_INDEX_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/language.h"
#include "files/index_rules.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/file_finder.h"
#include "state/run_state.h"

namespace tavrel {

// What a recording is when it is held against its journal. Nobody knows before he has asked.
enum class IndexVerdict { kNotAsked, kIntact, kNotCovered, kDamaged, kNoRecording, kUnreadable };

// What was found when a file was held against its journal.
struct IndexProof {
  IndexVerdict Verdict = IndexVerdict::kNotAsked;
  std::string Findings;  // in words, a line for each
};

// By the rule of journal_check.h, as tavrel-file verifies it. `path` leads to the file, whatever
// the case of its name.
[[nodiscard]] IndexProof ProofOf(const std::string& path, Language language, FileFinder& finder);

// One recording file of a directory. Texts are UTF-8; of a name that is no UTF-8 the bytes stay.
struct IndexRow {
  std::string Name;         // in capitals, as all names of recording files are told
  std::string Contents;     // what the apparatus is called
  std::string ContentsKey;  // the same in capitals: what is sorted by
  IndexDetails Details;
  IndexProof Proof;
};

// The columns of the index that are sorted by for the moment only: the settings do not keep it.
enum class IndexColumn { kDate, kDuration, kInstrument };

// The table of contents of a data directory, so that a test can be found by its apparatus and
// not only by its date. It is built from the directory, never stored, and kept while
// RunState::IndexValid says that it still fits. One instance for the life of the program.
class FileIndex {
 public:
  struct Parts {  // all outlive the index
    RunState& state;
    Events& events;
    const Clock& clock;
  };
  explicit FileIndex(const Parts& parts) : parts_(parts) {}

  // Lists ListedDirectory(): files named as recordings or subfiles that no slot records to, that
  // are at least a header long; nothing else is tested. The rows are then sorted and IndexValid
  // is set. Returns what is to be told to the user: that the directory has no such files, or that
  // it cannot be listed, and then IndexValid stays false. `progress` gets percents if it takes
  // longer than half a second.
  [[nodiscard]] std::optional<Notice> Build(const std::function<void(int percent)>& progress);

  // False: the rows are not those of ListedDirectory(), or may be stale.
  [[nodiscard]] bool IsValid() const;

  // Where the files are: OpenPath, or the data directory if that is empty.
  [[nodiscard]] std::string ListedDirectory() const;

  [[nodiscard]] const std::vector<IndexRow>& Rows() const { return rows_; }

  // Grows whenever the rows or their order change.
  [[nodiscard]] int Revision() const { return revision_; }

  // The row of a file, whatever the case of `name`.
  [[nodiscard]] std::optional<std::size_t> RowOf(std::string_view name) const;

  // What was found of that file, if it is still among the rows.
  void SetProof(std::string_view name, const IndexProof& proof);

  // Files may have changed since they were verified.
  void ForgetProofs();

  // Grows whenever a proof changes.
  [[nodiscard]] int ProofRevision() const { return proof_revision_; }

  // Sorts by SortKey: FA, FD by name up and down, PA, PD by contents. Any other value is
  // replaced by FD. Rows of the same contents stand in the order of their names.
  void Sort();

  // By a column that the settings do not know, until the next Sort. The two directions take turns.
  void SortBy(IndexColumn column);

  // By which column the rows stand, and which way: SortKey, or D, L, I for date, duration and
  // instrument, with A for up and D for down.
  [[nodiscard]] const std::string& Order() const { return order_; }

  // The two directions of a column take turns; one that was not sorted by begins downwards.
  void ToggleFileSort() { Toggle("FD", "FA"); }
  void ToggleProductSort() { Toggle("PD", "PA"); }

 private:
  [[nodiscard]] std::string Scan(const std::function<void(int percent)>& progress);
  void Toggle(const char* down, const char* up);
  void SetSortKey(const std::string& key);

  Parts parts_;
  std::vector<IndexRow> rows_;
  std::string directory_;  // whose files the rows are
  std::string order_;
  int revision_ = 0;
  int proof_revision_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_FILE_INDEX_H_
