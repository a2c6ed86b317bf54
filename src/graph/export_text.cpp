#include "graph/export_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "common/text.h"

namespace tavrel {
namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr int kHundredthsPerStep = 5;
constexpr int kHundred = 100;
constexpr std::size_t kFieldRoom = 12;  // of a value with its separator, an estimate

// In what the two texts differ.
struct Style {
  std::size_t dashes;
  std::string_view time_name;
  std::string_view equals;
  std::string_view separator;
  bool ends_in_separator;
};

constexpr Style kFileStyle{42, "time (sec)          ", " =  ", "; ", true};
constexpr Style kClipboardStyle{46, "time (sec)", "  ", "\t", false};

// A quote that is part of the text on both sides of a line.
std::string Quoted(const std::string& line) {
  return '"' + line + '"' + kLineEnd;
}

// All 20 characters. What would break the line or the text is a blank.
std::string FullName(const HeaderText& name) {
  std::string bytes(name.Bytes.begin(), name.Bytes.end());
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' '; };
  std::ranges::replace_if(bytes, is_control, ' ');
  return FromWindows1252(bytes);
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

void AppendNumber(std::string& text, std::int64_t number) {
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

// Writes the rows one by one.
class Rows {
 public:
  Rows(const ExportTable& table, const Style& style, std::string decimal_mark)
      : table_(table), style_(style), decimal_mark_(std::move(decimal_mark)) {}

  void Append(std::string& text, int record, SampleReader& reader) {
    time_ += table_.RecInterval;
    AppendNumber(text, time_);
    for (const ExportColumn& column : table_.Columns) {
      text += style_.separator;
      AppendDegrees(text, reader.Word(record + column.Column), decimal_mark_);
    }
    if (style_.ends_in_separator) {
      text += style_.separator;
    }
    text += kLineEnd;
  }

 private:
  const ExportTable& table_;
  const Style& style_;
  std::string decimal_mark_;
  std::int64_t time_ = 0;  // seconds
};

std::size_t RowCount(const ExportTable& table) {
  const int words = table.LastRecord - table.FirstRecord;
  return words < 0 ? 0 : static_cast<std::size_t>(words / table.Channels) + 1;
}

}  // namespace

void AppendDegrees(std::string& text, int word, const std::string& decimal_mark) {
  const int hundredths = std::abs(word) * kHundredthsPerStep;
  if (word < 0) {
    text += '-';
  }
  AppendNumber(text, hundredths / kHundred);
  text += decimal_mark;
  const int decimals = hundredths % kHundred;
  text += static_cast<char>('0' + decimals / 10);
  text += static_cast<char>('0' + decimals % 10);
}

std::string AsciiText(const ExportTable& table, const std::string& decimal_mark,
                      SampleReader& reader) {
  std::string text = ToWindows1252(Head(table, kFileStyle));
  text.reserve(text.size() + RowCount(table) * (table.Columns.size() + 1) * kFieldRoom);
  Rows rows(table, kFileStyle, ToWindows1252(decimal_mark));
  for (int record = table.FirstRecord; record <= table.LastRecord; record += table.Channels) {
    rows.Append(text, record, reader);
  }
  return text;
}

std::optional<std::string> ClipboardText(const ExportTable& table, const std::string& decimal_mark,
                                         SampleReader& reader) {
  std::string text = Head(table, kClipboardStyle);
  std::size_t characters = Characters(text);
  Rows rows(table, kClipboardStyle, decimal_mark);
  for (int record = table.FirstRecord; record <= table.LastRecord; record += table.Channels) {
    const std::size_t before = text.size();
    rows.Append(text, record, reader);
    characters += Characters(std::string_view(text).substr(before));
    if (characters > kClipboardLimit) {
      return std::nullopt;
    }
  }
  return text;
}

}  // namespace tavrel
