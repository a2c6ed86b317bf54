#include "service/output_records.h"

#include <algorithm>
#include <optional>

#include "files/reasons.h"
#include "link/registers.h"
#include "platform/file_system.h"
#include "state/box_titles.h"

namespace tavrel {
namespace {

constexpr std::size_t kLargestFile = 10'000;  // bytes; 24 lines of less than 30
constexpr std::string_view kEndOfLine = "\r\n";
constexpr std::string_view kLastLine = "end";

bool IsStatus(std::int16_t status) {
  return status >= controller::kUnknown && status <= controller::kTest;
}

std::string LineOf(const OutputRecord& record) {
  return "inet " + std::to_string(record.Inet) + " controller " +
         std::to_string(record.Controller) +
         " Z=" + std::to_string(IsStatus(record.Before) ? record.Before : controller::kOff);
}

// All records that a file can hold.
std::vector<OutputRecord> EachRecord() {
  std::vector<OutputRecord> records;
  for (int inet = 1; inet <= kInets; ++inet) {
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      for (std::int16_t status = controller::kUnknown; IsStatus(status); ++status) {
        records.push_back({inet, ctrl, status});
      }
    }
  }
  return records;
}

// Empty for anything that LineOf does not make.
std::optional<OutputRecord> RecordOf(std::string_view line) {
  const std::vector<OutputRecord> records = EachRecord();
  const auto found = std::find_if(records.begin(), records.end(),
                                  [line](const OutputRecord& one) { return LineOf(one) == line; });
  return found == records.end() ? std::nullopt : std::optional(*found);
}

bool IsOfSame(const OutputRecord& left, const OutputRecord& right) {
  return left.Inet == right.Inet && left.Controller == right.Controller;
}

// False for a second record of the same controller.
bool Add(std::vector<OutputRecord>& records, const OutputRecord& record) {
  const bool is_new = std::none_of(records.begin(), records.end(), [&](const OutputRecord& other) {
    return IsOfSame(other, record);
  });
  if (is_new) {
    records.push_back(record);
  }
  return is_new;
}

}  // namespace

std::string EncodeOutputRecords(const std::vector<OutputRecord>& records) {
  std::string text;
  for (const OutputRecord& record : records) {
    text.append(LineOf(record)).append(kEndOfLine);
  }
  return text.append(kLastLine).append(kEndOfLine);
}

OutputRecordsText DecodeOutputRecords(std::string_view text) {
  OutputRecordsText result;
  bool has_end = false;
  for (std::size_t end = text.find(kEndOfLine); !has_end && end != std::string_view::npos;
       end = text.find(kEndOfLine)) {
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + kEndOfLine.size());
    const std::optional<OutputRecord> record = RecordOf(line);
    has_end = line == kLastLine;
    const bool is_known = has_end || (record && Add(result.Records, *record));
    result.IsWhole = result.IsWhole && is_known;
  }
  result.IsWhole = result.IsWhole && has_end && text.empty();
  if (!result.IsWhole) {
    for (OutputRecord& record : result.Records) {
      record.Before = controller::kOff;
    }
  }
  return result;
}

bool OutputRecords::Load() {
  if (is_loaded_) {
    return true;
  }
  NoAnswer no_answer;
  const auto text = ReadWholeFile(Path(), kLargestFile, no_answer);
  is_loaded_ = no_answer.Why == Failure::kNone;
  std::string problem = is_loaded_ ? "" : ": " + no_answer.Text;
  if (text) {
    const OutputRecordsText left = DecodeOutputRecords(*text);
    records_ = left.Records;
    problem = left.IsWhole ? "" : "  is damaged !";
  } else if (is_loaded_ && FindFile(state_.DataHome, kOutputRecordsFile)) {
    problem = "  is damaged !";  // it is far too large
  }
  if (!problem.empty() && problem != told_) {
    messages_.Report(0, {kOutputRecordsFile + problem, kReadTitle});
  }
  told_ = problem;
  return is_loaded_;
}

bool OutputRecords::Has(int inet) const {
  return std::any_of(records_.begin(), records_.end(),
                     [inet](const OutputRecord& record) { return record.Inet == inet; });
}

std::string OutputRecords::Put(int inet, const std::vector<OutputRecord>& records) {
  const std::vector<OutputRecord> before = records_;
  std::erase_if(records_, [inet](const OutputRecord& record) { return record.Inet == inet; });
  records_.insert(records_.end(), records.begin(), records.end());
  is_saved_ = is_saved_ && records_ == before;
  std::string problem = is_saved_ ? "" : Write();
  is_saved_ = problem.empty();
  return problem;
}

void OutputRecords::Renumber(int from, int to) {
  const std::vector<OutputRecord> before = records_;
  std::erase_if(records_, [to](const OutputRecord& record) { return record.Inet == to; });
  for (OutputRecord& record : records_) {
    record.Inet = record.Inet == from ? to : record.Inet;
  }
  is_saved_ = is_saved_ && records_ == before;
  Save();
}

void OutputRecords::Save() {
  if (is_saved_) {
    return;
  }
  const std::string problem = Write();
  is_saved_ = problem.empty();
  if (!is_saved_ && problem != told_) {
    messages_.Report(0, {"Cannot write file.", kOutputRecordsFile});
  }
  told_ = problem;
}

std::string OutputRecords::Write() const {
  if (!is_loaded_) {
    return std::string(reason::kUnread.English);
  }
  if (!records_.empty()) {
    return ReplaceFile(Path(), EncodeOutputRecords(records_));
  }
  std::string problem = DeleteFile(Path());
  SyncDirectory(state_.DataHome);
  return problem;
}

std::string OutputRecords::Path() const {
  return JoinPath(state_.DataHome, kOutputRecordsFile);
}

}  // namespace tavrel
