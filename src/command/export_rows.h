#ifndef TAVREL_COMMAND_EXPORT_ROWS_H_
#define TAVREL_COMMAND_EXPORT_ROWS_H_

#include <string>

#include "command/read_recording.h"

// The rows of a recording as text for other programs, UTF-8, lines ended by a line feed.
//
// Times are seconds since the first set, which stands in the rows 0 and 1. Values are degrees; a
// word that is no value is an empty field, in JSON null.
namespace tavrel {

// How a table is written. With a decimal comma its fields are parted by semicolons.
struct TableStyle {
  char Decimal = '.';
  char Separator = ',';
};

// A line of names (row, seconds, one for each column), then a line for each row. `recording` has
// the header of a recording.
[[nodiscard]] std::string CsvOf(const StoredRecording& recording, const TableStyle& style);

// One line with one object: file, designation, interval in seconds, columns (input and name), rows
// as lists of row, seconds and values. `file` is the name that was asked for.
[[nodiscard]] std::string JsonOf(const StoredRecording& recording, const std::string& file);

}  // namespace tavrel

#endif  // TAVREL_COMMAND_EXPORT_ROWS_H_
