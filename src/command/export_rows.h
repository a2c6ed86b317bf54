#ifndef TAVREL_COMMAND_EXPORT_ROWS_H_
#define TAVREL_COMMAND_EXPORT_ROWS_H_

#include <cstdint>
#include <optional>
#include <string>

#include "files/stored_recording.h"

// The rows of a recording as text for other programs, UTF-8, lines ended by a line feed.
//
// Times are seconds since the first set, which stands in the rows 0 and 1, or a time of day as the
// journal anchors it (docs/recording_journal.md). Values are degrees; a word that is no value is an
// empty field, in JSON null.
namespace tavrel {

enum class TimeColumn { kSeconds, kLocal, kUtc };

// How a table is written. With a decimal comma its fields are parted by semicolons.
struct TableStyle {
  char Decimal = '.';
  char Separator = ',';
  TimeColumn Time = TimeColumn::kSeconds;
};

// The first row whose time of that kind nobody knows; empty if all are known, as seconds are.
[[nodiscard]] std::optional<std::int32_t> FirstRowWithoutTime(const StoredRecording& recording,
                                                              TimeColumn time);

// A line of names (row; seconds, local or utc; one for each column), then a line for each row.
// `recording` has the header of a recording. A time that nobody knows is an empty field.
[[nodiscard]] std::string CsvOf(const StoredRecording& recording, const TableStyle& style);

// One line with one object: file, designation, interval in seconds, columns (input and name), rows
// as lists of row, time (a number, or a text, null if nobody knows) and values. `file` is the name
// that was asked for.
[[nodiscard]] std::string JsonOf(const StoredRecording& recording, const std::string& file,
                                 TimeColumn time = TimeColumn::kSeconds);

}  // namespace tavrel

#endif  // TAVREL_COMMAND_EXPORT_ROWS_H_
