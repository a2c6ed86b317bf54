#include "setup/adjustment_journal.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <span>

#include "base/number.h"
#include "platform/file_system.h"
#include "platform/random_file.h"

namespace tavrel {
namespace {

constexpr const char* kEndOfLine = "\r\n";

std::string TextOf(const std::optional<std::int16_t>& word) {
  return word ? std::to_string(*word) : "?";
}

std::string TextOf(const ChannelWords& words) {
  return " J " + TextOf(words.J) + " K " + TextOf(words.K) + " L " + TextOf(words.L) + " O " +
         TextOf(words.O);
}

std::string TextOf(const std::vector<AdjustmentReading>& readings) {
  std::string text;
  int sum = 0;
  int lowest = readings.empty() ? 0 : readings.front().word;
  int highest = lowest;
  for (const AdjustmentReading& reading : readings) {
    text += " " + std::to_string(reading.word) + (reading.failed ? "?" : "");
    sum += reading.word;
    lowest = std::min<int>(lowest, reading.word);
    highest = std::max<int>(highest, reading.word);
  }
  const double mean = readings.empty() ? 0 : double(sum) / static_cast<double>(readings.size());
  return text + " mean " + ShortestNumber(mean) + " spread " + std::to_string(highest - lowest);
}

// What stands behind the last line end, if the program was killed while it wrote, stays a line of
// its own.
std::string BeginningOfLine(RandomFile& file, std::int64_t size) {
  std::byte last{};
  const bool is_open_line =
      size > 0 && file.ReadAt(size - 1, std::span(&last, 1)) == 1 && last != std::byte{'\n'};
  return is_open_line ? kEndOfLine : "";
}

}  // namespace

std::string AdjustmentJournal::TimeText() const {
  const WallTime now = clock_.Now();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", now.Year, now.Month, now.Day,
                now.Hour, now.Minute, now.Second);
  return text;
}

// Empty text on success.
std::string AdjustmentJournal::Append(const std::string& text) const {
  const bool is_new = !FindPath(path_);
  RandomFile file;
  if (!file.Open(path_, FileAccess::kCreate)) {
    return file.Error();
  }
  const std::int64_t size = file.Size();
  if (size < 0) {
    return file.Error();
  }
  const std::string bytes = BeginningOfLine(file, size) + text;
  if (!file.WriteAt(size, std::as_bytes(std::span(bytes))) || !file.Sync()) {
    return file.Error();
  }
  if (is_new) {
    SyncDirectory(path_.substr(0, path_.rfind('/') + 1));
  }
  return "";
}

std::string AdjustmentJournal::Begin(int inet, const std::string& sensor_name,
                                     const std::vector<int>& rows,
                                     const ByRow<ChannelWords>& before) {
  std::string text =
      "begin " + TimeText() + " inet " + std::to_string(inet) + " sensor " + sensor_name + " rows";
  for (const int row : rows) {
    text += " " + RowName(row);
  }
  text += kEndOfLine;
  for (const int row : rows) {
    text += "before " + RowName(row) + TextOf(before[row]) + kEndOfLine;
  }
  problem_ = Append(text);
  is_begun_ = problem_.empty();
  return problem_;
}

void AdjustmentJournal::Add(const std::string& line) {
  if (!is_begun_) {
    return;
  }
  const std::string problem = Append(line + kEndOfLine);
  if (!problem.empty()) {
    problem_ = problem;
  }
}

void AdjustmentJournal::AddReadings(const char* what, int row,
                                    const std::vector<AdjustmentReading>& readings) {
  Add(std::string(what) + " " + RowName(row) + TextOf(readings));
}

void AdjustmentJournal::AddFinalValue(double degrees) {
  Add("final " + ShortestNumber(degrees));
}

void AdjustmentJournal::AddAfter(int row, const ChannelWords& after) {
  Add("after " + RowName(row) + TextOf(after));
}

void AdjustmentJournal::End(const std::string& how) {
  Add("end " + TimeText() + " " + how);
  is_begun_ = false;
}

}  // namespace tavrel
