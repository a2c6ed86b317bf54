#include "graph/export_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "base/text.h"

namespace tavrel {
namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr int kHundredthsPerStep = 5;
constexpr int kHundred = 100;
constexpr std::size_t kUsualField = 12;  // bytes of a value with its separator, an estimate

// In what the two texts differ.
struct Style {
  std::size_t dashes;
  std::string_view time_name;
  std::string_view equals;
  std::string_view separator;
  std::string_view row_end;
};

constexpr Style kFileStyle{42, "time (sec)          ", " =  ", "; ", "; \r\n"};
constexpr Style kClipboardStyle{46, "time (sec)", "  ", "\t", "\r\n"};

// A quote that is part of the text on both sides of a line. What would break the line, or would
// split it where it is read, is a blank.
std::string Quoted(const std::string& line) {
  std::string text = WithoutControls(line);
  std::ranges::replace_if(
      text, [](char c) { return c == '"' || c == ';'; }, ' ');
  return '"' + text + '"' + kLineEnd;
}

// All 20 characters.
std::string FullName(const HeaderText& name) {
  return FromWindows1252(std::string(name.Bytes.begin(), name.Bytes.end()));
}

std::string ColumnLine(std::size_t number, const Style& style, std::string_view name) {
  const std::string digits = std::to_string(number);
  return Quoted("column " + std::string(digits.size() < 2 ? "0" : "") + digits +
                std::string(style.equals) + std::string(name));
}

std::string Head(const ExportTable& table, const Style& style) {
  const std::string dashes = Quoted(std::string(style.dashes, '-'));
  std::string text = Quoted("From Tavrel-file:    " + table.FileName) +
                     Quoted("sampling   (sec):    " + std::to_string(table.RecInterval)) + dashes +
                     ColumnLine(1, style, style.time_name);
  for (std::size_t place = 0; place < table.Columns.size(); ++place) {
    text += ColumnLine(place + 2, style, FullName(table.Columns[place].Name));
  }
  return text + dashes;
}

std::size_t Characters(std::string_view utf8) {
  const auto is_first = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
  return static_cast<std::size_t>(std::ranges::count_if(utf8, is_first));
}

constexpr std::size_t kNumberRoom = 24;  // more digits than any number has
constexpr std::size_t kFieldRoom = 64;   // more than a number and two short texts

// A text of at most eight bytes, that is put in one go: what stands between the numbers.
class ShortText {
 public:
  explicit ShortText(std::string_view text) : size_(std::min(text.size(), bytes_.size())) {
    std::copy_n(text.begin(), size_, bytes_.begin());
  }
  // All eight bytes are written, of which the last ones do not count.
  char* Put(char* at) const {
    std::memcpy(at, bytes_.data(), bytes_.size());
    return at + size_;
  }

 private:
  std::array<char, 8> bytes_{};
  std::size_t size_;
};

char* PutNumber(char* at, std::int64_t number) {
  return std::to_chars(at, at + kNumberRoom, number).ptr;
}

char* PutDegrees(char* at, int word, const ShortText& decimal_mark) {
  const int hundredths = std::abs(word) * kHundredthsPerStep;
  if (word < 0) {
    *at++ = '-';
  }
  at = decimal_mark.Put(PutNumber(at, hundredths / kHundred));
  *at++ = static_cast<char>('0' + hundredths / 10 % 10);
  *at++ = static_cast<char>('0' + hundredths % 10);
  return at;
}

// Makes the rows one by one.
class Rows {
 public:
  Rows(const ExportTable& table, const Style& style, std::string_view decimal_mark)
      : table_(table),
        separator_(style.separator),
        row_end_(style.row_end),
        decimal_mark_(decimal_mark),
        row_((table.Columns.size() + 2) * kFieldRoom, ' ') {}

  // With its line end; valid until the next call. Empty if a word cannot be read.
  std::string_view Next(int record, SampleReader& reader) {
    time_ += table_.RecInterval;
    char* at = PutNumber(row_.data(), time_);
    for (const ExportColumn& column : table_.Columns) {
      const std::optional<std::int16_t> word = reader.Word(record + column.Column);
      if (!word) {
        return {};
      }
      at = separator_.Put(at);
      at = PutDegrees(at, *word, decimal_mark_);
    }
    at = row_end_.Put(at);
    return {row_.data(), static_cast<std::size_t>(at - row_.data())};
  }

 private:
  const ExportTable& table_;
  ShortText separator_;
  ShortText row_end_;
  ShortText decimal_mark_;
  std::string row_;
  std::int64_t time_ = 0;  // seconds
};

std::size_t RowCount(const ExportTable& table) {
  const int words = table.LastRecord - table.FirstRecord;
  return words < 0 ? 0 : static_cast<std::size_t>(words / table.Channels) + 1;
}

}  // namespace

std::string DegreesText(int word, std::string_view decimal_mark) {
  std::string text(kFieldRoom, ' ');
  const char* end = PutDegrees(text.data(), word, ShortText(decimal_mark));
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

std::optional<std::string> AsciiText(const ExportTable& table, const std::string& decimal_mark,
                                     SampleReader& reader) {
  std::string text = ToWindows1252(Head(table, kFileStyle));
  text.reserve(text.size() + RowCount(table) * (table.Columns.size() + 1) * kUsualField);
  Rows rows(table, kFileStyle, ToWindows1252(decimal_mark));
  for (int record = table.FirstRecord; record <= table.LastRecord; record += table.Channels) {
    const std::string_view row = rows.Next(record, reader);
    if (row.empty()) {
      return std::nullopt;
    }
    text += row;
  }
  return text;
}

std::variant<std::string, ClipboardFault> ClipboardText(const ExportTable& table,
                                                        const std::string& decimal_mark,
                                                        SampleReader& reader) {
  std::string text = Head(table, kClipboardStyle);
  std::size_t characters = Characters(text);
  Rows rows(table, kClipboardStyle, decimal_mark);
  for (int record = table.FirstRecord; record <= table.LastRecord; record += table.Channels) {
    const std::string_view row = rows.Next(record, reader);
    if (row.empty()) {
      return ClipboardFault::kUnreadable;
    }
    text += row;
    characters += Characters(row);
    if (characters > kClipboardLimit) {
      return ClipboardFault::kTooLong;
    }
  }
  return text;
}

}  // namespace tavrel
