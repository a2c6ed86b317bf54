#ifndef TAVREL_FILES_JOURNAL_CHECK_H_
#define TAVREL_FILES_JOURNAL_CHECK_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/journal_text.h"

// What a journal says of its recording. Pure rules: bytes go in, a verdict comes out.
namespace tavrel {

// In the order of how bad it is.
enum class Verdict {
  kIntact = 0,      // header, rows and journal are as they were sealed
  kNotCovered = 1,  // nothing contradicts, but something is behind the last seal, or no journal
  kDamaged = 2,     // something is not as it was sealed
};

// Rows from 0. Nobody can tell where between them.
struct RowRange {
  std::int32_t First = 0;
  std::int32_t Last = 0;

  [[nodiscard]] bool operator==(const RowRange&) const = default;
};

// "row 3", "rows 3 to 7".
[[nodiscard]] std::string TextOf(const RowRange& rows);

// What a line of kind seal says, as it is written and read.
struct JournalSeal {
  std::int32_t Rows = 0;
  int Columns = 0;      // words of a row
  std::string Data;     // SHA-256 of the sample bytes of these rows
  std::string Header;   // of the header's bytes
  std::string Journal;  // of the journal's bytes before the seal

  [[nodiscard]] JsonValue::Members Fields() const;
};

// What was found of a recording.
struct RecordingCheck {
  tavrel::Verdict Verdict = Verdict::kIntact;
  std::vector<std::string> Findings;  // in words, one a line; empty only if it is intact
  std::int32_t Rows = 0;              // whole rows of the file
  std::int32_t CoveredRows = 0;       // of them, those that a seal has found right
  bool IsHeaderRight = false;         // it is the sealed one
  std::optional<RowRange> Damaged;    // rows that are missing or are not as they were sealed
  std::optional<JournalSeal> LastSeal;
  std::string Id;  // of the recording; empty without a journal
};

// `recording`: all bytes of the file. `journal`: all bytes of its journal, empty if there is none.
[[nodiscard]] RecordingCheck CheckRecording(std::span<const std::byte> recording,
                                            const std::optional<std::string>& journal);
[[nodiscard]] RecordingCheck CheckRecording(std::span<const std::byte> recording,
                                            const JournalReading& journal);

// How two journals belong together.
enum class Kinship {
  kStrangers,  // of two recordings
  kSame,       // they say the same
  kEarlier,    // the one is what the other was at an earlier time
  kForks,      // two files went on from one: the journals part
};
[[nodiscard]] Kinship KinshipOf(std::string_view left, std::string_view right);

// The number of lines that both journals begin with.
[[nodiscard]] std::int64_t CommonLines(std::string_view left, std::string_view right);

}  // namespace tavrel

#endif  // TAVREL_FILES_JOURNAL_CHECK_H_
