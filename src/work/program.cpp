#include "work/program.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "platform/random_file.h"

namespace tavrel {
namespace {

constexpr std::int16_t kRamp = 3;
constexpr std::size_t kBytesOfWord = 2;

void PutWord(std::string& bytes, std::int16_t word) {
  const auto bits = static_cast<std::uint16_t>(word);
  bytes += static_cast<char>(bits & 0xFFU);
  bytes += static_cast<char>(bits >> 8U);
}

// The word at `place`, kEmptyCell if the bytes end before its end.
std::int16_t WordAt(std::span<const std::byte> bytes, std::size_t place) {
  if (place + kBytesOfWord > bytes.size()) {
    return kEmptyCell;
  }
  const auto low = std::to_integer<unsigned>(bytes[place]);
  const auto high = std::to_integer<unsigned>(bytes[place + 1]);
  return static_cast<std::int16_t>(low | (high << 8U));
}

ProgramStep StepAt(std::span<const std::byte> bytes, std::size_t place) {
  return {WordAt(bytes, place), WordAt(bytes, place + kBytesOfWord),
          WordAt(bytes, place + 2 * kBytesOfWord), WordAt(bytes, place + 3 * kBytesOfWord)};
}

std::string MissingIn(const ProgramStep& step) {
  if (step.Status < 0) {
    return "status";
  }
  if (step.Status == kRamp && step.Increment < 1) {
    return "increment";
  }
  if (step.Setpoint < 1) {
    return "setpoint";
  }
  return step.Time < 1 ? "time" : "";
}

std::string FindingOn(std::size_t row, const std::string& missing) {
  return "missing: " + missing + " on row " + std::to_string(row);
}

std::size_t UsedRows(const ProgramRows& rows) {
  const auto last = std::find_if(rows.rbegin(), rows.rend(),
                                 [](const ProgramStep& step) { return step.IsUsed(); });
  return static_cast<std::size_t>(rows.rend() - last);
}

}  // namespace

bool ProgramStep::IsUsed() const {
  return Status >= 0 || Setpoint >= 1 || Time >= 1 || Increment >= 1;
}

bool IsEmptyProgram(const ProgramRows& rows) {
  return UsedRows(rows) == 0;
}

std::optional<std::string> ProgramFinding(const ProgramRows& rows) {
  const std::size_t used = UsedRows(rows);
  if (used == 0) {
    return "program is empty";
  }
  for (std::size_t row = 1; row <= used; ++row) {
    const std::string missing = MissingIn(rows.at(row - 1));
    if (!missing.empty()) {
      return FindingOn(row, missing);
    }
  }
  return std::nullopt;
}

std::optional<std::string> StartFinding(const std::vector<ProgramStep>& steps) {
  for (std::size_t row = 1; row <= steps.size(); ++row) {
    const ProgramStep& step = steps.at(row - 1);
    if (step.Status == kEmptyCell) {
      return FindingOn(row, "status");
    }
    if (step.Setpoint == kEmptyCell) {
      return FindingOn(row, "setpoint");
    }
  }
  return std::nullopt;
}

std::string ProgramFileBytes(const ProgramRows& rows) {
  std::string bytes(kStepBytes, '\0');
  for (const ProgramStep& step : rows) {
    if (step.Status < 0) {
      continue;
    }
    PutWord(bytes, step.Status);
    PutWord(bytes, step.Increment);
    PutWord(bytes, step.Setpoint);
    PutWord(bytes, step.Time);
  }
  return bytes;
}

std::int64_t RecordsOf(std::int64_t length) {
  constexpr std::int64_t kHalf = kStepBytes / 2;
  const std::int64_t whole = length / kStepBytes;
  const std::int64_t rest = length % kStepBytes;
  const bool up = rest > kHalf || (rest == kHalf && whole % 2 == 1);
  return whole + (up ? 1 : 0);
}

ProgramFile ReadProgramFile(const std::string& path) {
  ProgramFile result;
  RandomFile file;
  const std::int64_t length = file.Open(path, FileAccess::kRead) ? file.Size() : -1;
  if (length < 0) {
    result.Problem = file.Error();
    return result;
  }
  result.Records = RecordsOf(length);
  if (result.Records > kProgramRecords) {
    return result;
  }
  // A rest of up to half a record counts as none, so the bytes may be a few more than asked for.
  std::array<std::byte, static_cast<std::size_t>(kProgramRecords * kStepBytes)> bytes{};
  const std::int64_t came = file.ReadAt(0, bytes);
  if (came < 0) {
    result.Problem = file.Error();
    return result;
  }
  const std::span<const std::byte> content(bytes.data(), static_cast<std::size_t>(came));
  for (std::int64_t record = 1; record < result.Records; ++record) {
    result.Steps.push_back(StepAt(content, static_cast<std::size_t>(record * kStepBytes)));
  }
  return result;
}

}  // namespace tavrel
