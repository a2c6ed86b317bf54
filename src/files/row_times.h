#ifndef TAVREL_FILES_ROW_TIMES_H_
#define TAVREL_FILES_ROW_TIMES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "files/journal_text.h"
#include "platform/json.h"

namespace tavrel {

// The time of day of the rows of a recording, as far as its journal anchors it. Rows count from 0.
// docs/recording_journal.md tells the rule. Pure: lines go in, times come out.
class RowTimes {
 public:
  // `interval`: seconds between two rows, as the header has it. A damaged journal anchors nothing.
  RowTimes(const JournalReading& journal, std::int64_t interval);

  // "2026-03-14T09:00:00Z"; empty where the journal does not say.
  [[nodiscard]] std::optional<std::string> Utc(std::int32_t row) const;

  // "2026-03-14T10:00:00+01:00"; empty where the journal does not say.
  [[nodiscard]] std::optional<std::string> Local(std::int32_t row) const;

  // The rows from..from + count - 1 as rows 0..count - 1 of another file: where its time of day
  // goes on from, as objects with `rows` and `time` that anchor as a line `start` does. Each holds
  // up to the next one; without a time nobody knows it. Empty if no row has a time.
  [[nodiscard]] JsonValue::List AnchorsOf(std::int32_t from, std::int32_t count) const;

  // The seconds from the first set to a row. The first set stands in the rows 0 and 1.
  [[nodiscard]] static std::int64_t Seconds(std::int32_t row, std::int64_t interval);

 private:
  // A line `start`: the rows from `Row` on were recorded from `Moment` on.
  struct Anchor {
    std::int64_t Row = 0;
    std::optional<std::int64_t> Moment;  // seconds since 1970, universal time
    // By the row before which sets are missing: how many, empty if nobody knows. Once all are in,
    // sorted by row, with the sum up to there.
    std::vector<std::pair<std::int64_t, std::optional<std::int64_t>>> Lost;
  };
  // From a moment on (seconds since 1970), by how many minutes local time is ahead.
  struct ZoneChange {
    std::int64_t Moment = 0;
    int Minutes = 0;
  };

  void TakeAnchors(const JsonValue& begin);
  void TakeStart(const JournalEntry& line);
  void TakeLost(const JournalEntry& line);
  void TakeTime(const JournalEntry& line);
  void AddUp();
  [[nodiscard]] std::optional<std::int64_t> Moment(std::int32_t row) const;

  std::int64_t interval_;
  std::vector<Anchor> anchors_;      // ascending by row
  std::vector<ZoneChange> changes_;  // ascending by moment
  std::optional<ZoneChange> last_line_;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_ROW_TIMES_H_
