#ifndef TAVREL_GRAPH_EXPORT_TEXT_H_
#define TAVREL_GRAPH_EXPORT_TEXT_H_

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "graph/sample_reader.h"
#include "state/unit_record.h"

// The rows of the part view as text, for a file and for the clipboard. Lines end in CR LF. The
// time is that of the export, not of the recording: the first row reads one interval.
namespace tavrel {

// A column of values: its place in a row, from 1, and the name of its input.
struct ExportColumn {
  int Column = 0;
  HeaderText Name{};
};

// What is exported. The rows are those of the records FirstRecord, FirstRecord + Channels and so
// on up to and including LastRecord; none if that is smaller.
struct ExportTable {
  std::string FileName;  // of the recording, UTF-8
  int RecInterval = 1;   // seconds
  int Channels = 1;      // words in a row, 1..15
  int FirstRecord = 0;
  int LastRecord = 0;
  std::vector<ExportColumn> Columns;
};

// The whole content of the text file, Windows-1252. Each line of values ends in a separator.
// Empty if a word cannot be read: a text with rows that the file does not have would not be told
// from a good one. `decimal_mark` is UTF-8, at most eight bytes, here and below.
[[nodiscard]] std::optional<std::string> AsciiText(const ExportTable& table,
                                                   const std::string& decimal_mark,
                                                   SampleReader& reader);

inline constexpr std::size_t kClipboardLimit = 64000;  // characters

// Why there is no text for the clipboard.
enum class ClipboardFault {
  kTooLong,     // a row takes the text beyond kClipboardLimit
  kUnreadable,  // a word cannot be read
};

// The same for the clipboard, UTF-8: fields parted by tabs.
[[nodiscard]] std::variant<std::string, ClipboardFault> ClipboardText(
    const ExportTable& table, const std::string& decimal_mark, SampleReader& reader);

// 0.05 x `word` with two decimals and `decimal_mark`.
[[nodiscard]] std::string DegreesText(int word, std::string_view decimal_mark);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_EXPORT_TEXT_H_
