#include "command/export_rows.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "files/recording_format.h"
#include "files/row_times.h"
#include "platform/json.h"
#include "state/run_state.h"

namespace tavrel {
namespace {

constexpr int kHundredthsPerStep = 5;  // a word is a temperature in steps of 0.05 degrees
constexpr int kHundred = 100;

// The rows of a recording in numbers.
class Rows {
 public:
  explicit Rows(const StoredRecording& recording, TimeColumn time)
      : bytes_(recording.Bytes),
        unit_(HeaderOf(recording)),
        time_(time),
        times_(time == TimeColumn::kSeconds ? JournalReading()
                                            : ReadJournal(recording.Journal.value_or("")),
               RecIntervalOf(unit_)),
        count_(SampleCountOf(static_cast<std::int64_t>(bytes_.size()), unit_.UnitChannels)) {}

  [[nodiscard]] const UnitRecord& Unit() const { return unit_; }
  [[nodiscard]] int Columns() const { return unit_.UnitChannels; }
  [[nodiscard]] std::int32_t Count() const { return count_; }

  [[nodiscard]] const char* TimeName() const {
    return time_ == TimeColumn::kSeconds ? "seconds"
           : time_ == TimeColumn::kLocal ? "local"
                                         : "utc";
  }

  // A number of seconds, the text of a time of day, or nothing.
  [[nodiscard]] JsonValue Time(std::int32_t row) const {
    if (time_ == TimeColumn::kSeconds) {
      return RowTimes::Seconds(row, RecIntervalOf(unit_));
    }
    const auto text = time_ == TimeColumn::kLocal ? times_.Local(row) : times_.Utc(row);
    return text ? JsonValue(*text) : JsonValue();
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
  TimeColumn time_;
  RowTimes times_;
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

void PutTime(std::string& text, const JsonValue& time) {
  if (const auto seconds = time.Whole()) {
    PutNumber(text, *seconds);
  } else if (time.Text() != nullptr) {
    text += *time.Text();
  }
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
  JsonValue::List list{row, rows.Time(row)};
  for (int column = 1; column <= rows.Columns(); ++column) {
    list.push_back(DegreesOf(rows.Word(row, column)));
  }
  return list;
}

}  // namespace

std::optional<std::int32_t> FirstRowWithoutTime(const StoredRecording& recording, TimeColumn time) {
  if (time == TimeColumn::kSeconds) {
    return std::nullopt;
  }
  const Rows rows(recording, time);
  for (std::int32_t row = 0; row < rows.Count(); ++row) {
    if (rows.Time(row).IsNull()) {
      return row;
    }
  }
  return std::nullopt;
}

std::string CsvOf(const StoredRecording& recording, const TableStyle& style) {
  const Rows rows(recording, style.Time);
  std::string text = std::string("row") + style.Separator + rows.TimeName();
  for (int column = 1; column <= rows.Columns(); ++column) {
    text += style.Separator + Field(NameOf(rows, column));
  }
  text += '\n';
  for (std::int32_t row = 0; row < rows.Count(); ++row) {
    PutNumber(text, row);
    text += style.Separator;
    PutTime(text, rows.Time(row));
    for (int column = 1; column <= rows.Columns(); ++column) {
      text += style.Separator;
      PutDegrees(text, rows.Word(row, column), style.Decimal);
    }
    text += '\n';
  }
  return text;
}

std::string JsonOf(const StoredRecording& recording, const std::string& file, TimeColumn time) {
  const Rows rows(recording, time);
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
