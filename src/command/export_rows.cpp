#include "command/export_rows.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "files/recording_format.h"
#include "platform/json.h"
#include "state/run_state.h"

namespace tavrel {
namespace {

constexpr int kHundredthsPerStep = 5;  // a word is a temperature in steps of 0.05 degrees
constexpr int kHundred = 100;

// The rows of a recording in numbers.
class Rows {
 public:
  explicit Rows(const StoredRecording& recording)
      : bytes_(recording.Bytes),
        unit_(HeaderOf(recording)),
        count_(SampleCountOf(static_cast<std::int64_t>(bytes_.size()), unit_.UnitChannels)) {}

  [[nodiscard]] const UnitRecord& Unit() const { return unit_; }
  [[nodiscard]] int Columns() const { return unit_.UnitChannels; }
  [[nodiscard]] std::int32_t Count() const { return count_; }

  [[nodiscard]] std::int64_t Seconds(std::int32_t row) const {
    return std::int64_t{RecIntervalOf(unit_)} * std::max(row - 1, 0);
  }

  [[nodiscard]] std::int16_t Word(std::int32_t row, int column) const {
    std::int16_t word = 0;
    std::memcpy(&word, bytes_.data() + SampleByte(Columns(), row, column), sizeof word);
    return word;
  }

  // The input of a column; 0 where header and rows disagree, so that nobody knows.
  [[nodiscard]] int Input(int column) const {
    int place = 0;
    for (int input = 1; unit_.CanBeRecorded() && input <= kInputs; ++input) {
      place += unit_.IsRecorded(input) ? 1 : 0;
      if (place == column) {
        return input;
      }
    }
    return 0;
  }

 private:
  const std::string& bytes_;
  UnitRecord unit_;
  std::int32_t count_;
};

std::string NameOf(const Rows& rows, int column) {
  const int input = rows.Input(column);
  if (input == 0) {
    return "column " + std::to_string(column);
  }
  const std::string name = rows.Unit().UnitInputName[input].Get();
  return "input " + std::to_string(input) + (name.empty() ? "" : " " + name);
}

// In quotes where the text would be taken for more than one field or line.
std::string Field(const std::string& text) {
  if (text.find_first_of(",;\"\r\n") == std::string::npos) {
    return text;
  }
  std::string quoted = "\"";
  for (const char each : text) {
    quoted += each == '"' ? "\"\"" : std::string(1, each);
  }
  return quoted + "\"";
}

void PutNumber(std::string& text, std::int64_t number) {
  char digits[24];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void PutDegrees(std::string& text, std::int16_t word, char decimal) {
  if (word == kNoData) {
    return;
  }
  const int hundredths = std::abs(int{word} * kHundredthsPerStep);
  text += word < 0 ? "-" : "";
  PutNumber(text, hundredths / kHundred);
  text += decimal;
  text += static_cast<char>('0' + hundredths / 10 % 10);
  text += static_cast<char>('0' + hundredths % 10);
}

JsonValue DegreesOf(std::int16_t word) {
  return word == kNoData
             ? JsonValue()
             : JsonValue(static_cast<double>(int{word} * kHundredthsPerStep) / kHundred);
}

JsonValue::List RowList(const Rows& rows, std::int32_t row) {
  JsonValue::List list{row, rows.Seconds(row)};
  for (int column = 1; column <= rows.Columns(); ++column) {
    list.push_back(DegreesOf(rows.Word(row, column)));
  }
  return list;
}

}  // namespace

std::string CsvOf(const StoredRecording& recording, const TableStyle& style) {
  const Rows rows(recording);
  std::string text = std::string("row") + style.Separator + "seconds";
  for (int column = 1; column <= rows.Columns(); ++column) {
    text += style.Separator + Field(NameOf(rows, column));
  }
  text += '\n';
  for (std::int32_t row = 0; row < rows.Count(); ++row) {
    PutNumber(text, row);
    text += style.Separator;
    PutNumber(text, rows.Seconds(row));
    for (int column = 1; column <= rows.Columns(); ++column) {
      text += style.Separator;
      PutDegrees(text, rows.Word(row, column), style.Decimal);
    }
    text += '\n';
  }
  return text;
}

std::string JsonOf(const StoredRecording& recording, const std::string& file) {
  const Rows rows(recording);
  JsonValue::List columns;
  for (int column = 1; column <= rows.Columns(); ++column) {
    const int input = rows.Input(column);
    columns.emplace_back(JsonValue::Members{{"input", input == 0 ? JsonValue() : JsonValue(input)},
                                            {"name", NameOf(rows, column)}});
  }
  JsonValue::List list;
  for (std::int32_t row = 0; row < rows.Count(); ++row) {
    list.emplace_back(RowList(rows, row));
  }
  return JsonText(JsonValue::Members{{"file", file},
                                     {"designation", rows.Unit().UnitDesignation.Get()},
                                     {"interval", RecIntervalOf(rows.Unit())},
                                     {"columns", columns},
                                     {"rows", list}}) +
         "\n";
}

}  // namespace tavrel
