#include "setup/adjustment_journal.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <span>
#include <sstream>
#include <string_view>

#include "base/number.h"
#include "platform/append_file.h"
#include "platform/file_system.h"
#include "platform/random_file.h"

namespace tavrel {
namespace {

constexpr const char* kEndOfLine = "\r\n";

std::string TextOf(const ChannelWords& words) {
  return " J " + WordText(words.J) + " K " + WordText(words.K) + " L " + WordText(words.L) + " O " +
         WordText(words.O);
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

// A record has at most 16 rows of a few lines each, none longer than a few hundred characters.
constexpr std::int64_t kLongestRecord = std::int64_t{64} * 1024;

// The last lines of the file, without their ends; none if it cannot be read.
std::vector<std::string> LastLines(const std::string& path) {
  RandomFile file;
  if (!FindPath(path) || !file.Open(path, FileAccess::kRead)) {
    return {};
  }
  const std::int64_t size = std::max<std::int64_t>(file.Size(), 0);
  const std::int64_t first = std::max<std::int64_t>(size - kLongestRecord, 0);
  std::string text(static_cast<std::size_t>(size - first), '\0');
  text.resize(file.ReadAt(first, std::as_writable_bytes(std::span(text))));
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    line.erase(std::find(line.begin(), line.end(), '\r'), line.end());
    lines.push_back(line);
  }
  return lines;
}

bool IsLine(const std::string& line, std::string_view kind) {
  return line.starts_with(kind) && line.size() > kind.size() && line[kind.size()] == ' ';
}

bool IsOver(const std::string& line) {
  return IsLine(line, "told") || (IsLine(line, "end") && !line.ends_with(kEndedWithProgram));
}

}  // namespace

std::string WordText(const std::optional<std::int16_t>& word) {
  return word ? std::to_string(*word) : "?";
}

std::string AdjustmentJournal::TimeText() const {
  const WallTime now = clock_.Now();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", now.Year, now.Month, now.Day,
                now.Hour, now.Minute, now.Second);
  return text;
}

// What stands behind the last line end, if the program was killed while it wrote, stays a line of
// its own. Empty text on success.
std::string AdjustmentJournal::Append(const std::string& text) const {
  AppendFile file;
  if (!file.Open(path_)) {
    return file.Error();
  }
  const std::string beginning = file.EndsInsideLine() ? kEndOfLine : "";
  return file.Append(beginning + text) && file.Sync() ? "" : file.Error();
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

std::optional<UnfinishedRun> AdjustmentJournal::TakeUnfinished() {
  const std::vector<std::string> lines = LastLines(path_);
  const auto last = std::find_if(lines.rbegin(), lines.rend(),
                                 [](const std::string& line) { return IsLine(line, "begin"); });
  if (last == lines.rend() || std::any_of(last.base(), lines.end(), IsOver)) {
    return std::nullopt;
  }
  UnfinishedRun run{last->substr(std::string_view("begin ").size()), {}};
  std::copy_if(last.base(), lines.end(), std::back_inserter(run.rows), [](const std::string& line) {
    return IsLine(line, "before") || IsLine(line, "after");
  });
  if (run.rows.empty()) {
    return std::nullopt;  // cut off before anything was written to the instrument
  }
  problem_ = Append("told " + TimeText() + kEndOfLine);
  return run;
}

void AdjustmentJournal::End(const std::string& how) {
  Add("end " + TimeText() + " " + how);
  is_begun_ = false;
}

}  // namespace tavrel
