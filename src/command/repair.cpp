#include "command/repair.h"

#include <cstring>

#include "files/recording_format.h"

namespace tavrel {
namespace {

// A number that the header needs, in its range.
struct Needed {
  const char* Name = nullptr;
  std::int16_t UnitRecord::*Field = nullptr;
  int Most = 0;
  std::optional<std::int64_t> Known;  // by the journal
};

std::optional<std::int64_t> NumberIn(const JournalReading& journal, const char* name) {
  if (journal.Entries.empty()) {
    return std::nullopt;
  }
  const JsonValue* const value = journal.Entries.front().Fields.Find(name);
  return value != nullptr ? value->Whole() : std::nullopt;
}

// The file counts the interval in tens of seconds unless the instrument is a fast one.
std::optional<std::int64_t> IntervalIn(const JournalReading& journal, const UnitRecord& unit) {
  const auto seconds = NumberIn(journal, "interval");
  return seconds ? std::optional(unit.UnitFast == 1 ? *seconds : *seconds / 10) : std::nullopt;
}

bool IsInRange(std::int64_t number, int most) {
  return number >= 1 && number <= most;
}

// Puts what the journal knows in the place of what cannot be right.
void Mend(UnitRecord& unit, const JournalReading& journal, const RecordingCheck& check,
          std::vector<std::string>& remarks) {
  const auto columns =
      check.LastSeal ? std::optional<std::int64_t>(check.LastSeal->Columns) : std::nullopt;
  const Needed needs[] = {
      {"UnitInet", &UnitRecord::UnitInet, kInets, NumberIn(journal, "instrument")},
      {"UnitCtrl", &UnitRecord::UnitCtrl, kControllers, NumberIn(journal, "controller")},
      {"UnitRef", &UnitRecord::UnitRef, kInputs, NumberIn(journal, "reference")},
      {"UnitInterval", &UnitRecord::UnitInterval, 3600, IntervalIn(journal, unit)},
      {"UnitChannels", &UnitRecord::UnitChannels, kInputs, columns},
  };
  for (const Needed& need : needs) {
    std::int16_t& word = unit.*need.Field;
    const bool is_of_rows = need.Field == &UnitRecord::UnitChannels;
    const bool is_wrong =
        !IsInRange(word, need.Most) || (is_of_rows && columns && word != *columns);
    if (is_wrong && need.Known && IsInRange(*need.Known, need.Most)) {
      remarks.push_back(std::string("header: ") + need.Name + " was " + std::to_string(word) +
                        ", by the journal " + std::to_string(*need.Known));
      word = static_cast<std::int16_t>(*need.Known);
    }
  }
}

}  // namespace

RepairedRecording Repair(const StoredRecording& recording) {
  RepairedRecording repaired;
  UnitRecord unit = HeaderOf(recording);
  const JournalReading journal = ReadJournal(recording.Journal.value_or(""));
  const RecordingCheck check = CheckRecording(recording.File(), recording.Journal);
  if (recording.Bytes.size() < kHeaderBytes) {
    repaired.Remarks.push_back("header: only " + std::to_string(recording.Bytes.size()) +
                               " of 1000 bytes are there, the others are 0");
  }
  Mend(unit, journal, check, repaired.Remarks);
  if (!IsTavrelHeader(unit)) {
    repaired.Remarks.emplace_back("header: it does not say what the rows are");
    return repaired;
  }
  const std::int32_t rows =
      SampleCountOf(static_cast<std::int64_t>(recording.Bytes.size()), unit.UnitChannels);
  const auto end = static_cast<std::size_t>(SampleByte(unit.UnitChannels, rows, 1));
  std::string bytes(kHeaderBytes, '\0');
  std::memcpy(bytes.data(), &unit, sizeof unit);
  if (rows > 0) {
    bytes += recording.Bytes.substr(kHeaderBytes, end - kHeaderBytes);
  }
  repaired.Remarks.push_back("rows kept: " + std::to_string(rows));
  if (recording.Bytes.size() > end) {
    repaired.Remarks.push_back("left out: " + std::to_string(recording.Bytes.size() - end) +
                               " bytes of a torn row at the end");
  }
  for (const std::string& finding : check.Findings) {
    repaired.Remarks.push_back("found: " + finding);
  }
  repaired.Bytes = std::move(bytes);
  return repaired;
}

}  // namespace tavrel
