#ifndef TAVREL_SETUP_ADJUSTMENT_JOURNAL_H_
#define TAVREL_SETUP_ADJUSTMENT_JOURNAL_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "setup/channel_values.h"

namespace tavrel {

inline constexpr const char* kJournalFile = "ADJUST.TXT";  // in the data home

// How a run ends that the program cannot finish, because it ends itself.
inline constexpr const char* kEndedWithProgram = "dropped with the program";

// A reading of an adjustment.
struct AdjustmentReading {
  std::int16_t word = 0;
  bool failed = false;  // the instrument gave none: the word is the one read before it

  [[nodiscard]] bool operator==(const AdjustmentReading&) const = default;
};

// What the journal holds of a run that was not finished because the program ended. The user does
// not know of it yet.
struct UnfinishedRun {
  std::string begin;              // the line behind the word "begin"
  std::vector<std::string> rows;  // what each row had before, and has now as far as it is known
};

// The words of registers J, K, L and O of a row; empty where a word is not known.
struct ChannelWords {
  std::optional<std::int16_t> J;
  std::optional<std::int16_t> K;
  std::optional<std::int16_t> L;
  std::optional<std::int16_t> O;
};

// A word as a text; "?" where it is not known.
[[nodiscard]] std::string WordText(const std::optional<std::int16_t>& word);

// The journal of adjustments: a text file to which each run adds a record, so that nobody has to
// guess later how an input came to its coefficients, or which it had before. The record is begun,
// and on the disk, before the run writes to the instrument; docs/adjustment_journal.md tells the
// format. Nothing is ever taken away from the file.
class AdjustmentJournal {
 public:
  // `path` is the full path of the file.
  AdjustmentJournal(std::string path, const Clock& clock) : path_(std::move(path)), clock_(clock) {}

  // Begins the record of a run. Returns the system's words if it cannot be put to the disk, the
  // empty text if it is there.
  [[nodiscard]] std::string Begin(int inet, const std::string& sensor_name,
                                  const std::vector<int>& rows, const ByRow<ChannelWords>& before);

  // The ten readings that were collected for a row; `what` is "zero", "span" or "reference".
  void AddReadings(const char* what, int row, const std::vector<AdjustmentReading>& readings);

  void AddFinalValue(double degrees);

  // What a row has afterwards, as far as it was acknowledged.
  void AddAfter(int row, const ChannelWords& after);

  // The last run of the file if it ended with the program; empty if it did not or was told before.
  // From then on the file says that it was told. A file that cannot be read has none.
  [[nodiscard]] std::optional<UnfinishedRun> TakeUnfinished();

  // Ends the record, `how` in a few words. Without a record that is begun nothing happens.
  void End(const std::string& how);

  [[nodiscard]] bool IsBegun() const { return is_begun_; }
  [[nodiscard]] const std::string& Path() const { return path_; }

  // Why the last part of a record could not be put to the disk; empty if all are there.
  [[nodiscard]] const std::string& Problem() const { return problem_; }

 private:
  [[nodiscard]] std::string Append(const std::string& text) const;
  void Add(const std::string& line);
  [[nodiscard]] std::string TimeText() const;

  std::string path_;
  const Clock& clock_;
  bool is_begun_ = false;
  std::string problem_;
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_ADJUSTMENT_JOURNAL_H_
