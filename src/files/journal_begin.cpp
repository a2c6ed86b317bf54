#include "files/journal_begin.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "base/version.h"
#include "files/journal_check.h"
#include "files/journal_writer.h"
#include "files/recording_format.h"
#include "files/row_times.h"
#include "files/stored_recording.h"
#include "platform/file_system.h"
#include "platform/whoami.h"

namespace tavrel {
namespace {

JsonValue::List RecordedInputs(const UnitRecord& unit) {
  JsonValue::List inputs;
  for (int input = 1; input <= kInputs; ++input) {
    if (unit.IsRecorded(input)) {
      inputs.emplace_back(input);
    }
  }
  return inputs;
}

// From which time of day on the rows from..from + count - 1 count, if the journal says it.
void AddAnchors(JsonValue::Members& fields, const JournalReading& journal, std::int64_t interval,
                std::int32_t from, std::int32_t count) {
  JsonValue::List anchors = RowTimes(journal, interval).AnchorsOf(from, count);
  if (!anchors.empty()) {
    fields.emplace_back("anchors", std::move(anchors));
  }
}

// What the source's journal says of it last; only the rows where it has none.
JsonValue::Members OriginFields(const SubfileOrigin& origin) {
  JsonValue::Members fields{
      {"file", origin.Name}, {"first", origin.FirstRow}, {"last", origin.LastRow}};
  const auto text = JournalTextOf(origin.Directory, origin.Name);
  const JournalReading journal = ReadJournal(text.value_or(""));
  if (journal.Entries.empty()) {
    return fields;
  }
  fields.emplace_back("id", journal.Id());
  AddAnchors(fields, journal, origin.Interval, origin.FirstRow,
             origin.LastRow - origin.FirstRow + 1);
  const auto seal =
      std::find_if(journal.Entries.rbegin(), journal.Entries.rend(),
                   [](const JournalEntry& entry) { return entry.Kind == journal::kSeal; });
  if (seal != journal.Entries.rend()) {
    fields.emplace_back("seal", JsonValue::Members{{"rows", seal->Number("rows")},
                                                   {"data", seal->Text("data")},
                                                   {"header", seal->Text("header")},
                                                   {"journal", seal->Text("journal")}});
  }
  return fields;
}

void AddSeal(JournalWriter& writer, const UnitRecord& unit, const std::string& bytes) {
  const std::int32_t rows =
      SampleCountOf(static_cast<std::int64_t>(bytes.size()), unit.UnitChannels);
  const auto end = static_cast<std::size_t>(SampleByte(unit.UnitChannels, rows, 1));
  const std::string data = rows > 0 ? bytes.substr(kHeaderBytes, end - kHeaderBytes) : "";
  writer.Add(journal::kSeal, JournalSeal{rows, unit.UnitChannels, Sha256Of(data),
                                         Sha256Of(bytes.substr(0, kHeaderBytes)), writer.Hash()}
                                 .Fields());
}

}  // namespace

JsonValue::Members SessionFields(const SettingsValues& settings) {
  const char* const line = settings.CommPort == "----" ? "simulated"
                           : settings.ComMode == 0     ? "direct"
                                                       : "plug-in";
  return {
      {"computer", ComputerName()}, {"login", LoginName()}, {"program", kVersion}, {"line", line}};
}

JsonValue::Members BeginFields(const std::string& id, const std::string& name,
                               const UnitRecord& unit, const SettingsValues& settings) {
  JsonValue::Members fields{{"id", id}, {"file", name}};
  const JsonValue::Members session = SessionFields(settings);
  fields.insert(fields.end(), session.begin(), session.end());
  fields.emplace_back("instrument", int{unit.UnitInet});
  fields.emplace_back("controller", int{unit.UnitCtrl});
  fields.emplace_back("reference", int{unit.UnitRef});
  fields.emplace_back("inputs", RecordedInputs(unit));
  fields.emplace_back("interval", RecIntervalOf(unit));
  return fields;
}

// A next file without rows begins with the set behind the last row.
JsonValue::Members BeforeFields(const FileBefore& before) {
  JsonValue::Members fields{{"file", before.Name}, {"id", before.Id}};
  const bool is_usable = !before.Id.empty() && before.HasWholeJournal;
  const auto text = is_usable ? JournalTextOf(before.Directory, before.Name) : std::nullopt;
  if (text) {
    const bool is_behind = before.Taken == 0;
    AddAnchors(fields, ReadJournal(*text), before.Interval, is_behind ? before.Rows : 0,
               is_behind ? 1 : before.Taken);
  }
  return fields;
}

std::string BeginSubfileJournal(const std::string& path, const std::string& bytes,
                                const SubfileOrigin& origin, const SettingsValues& settings,
                                const Clock& clock) {
  UnitRecord unit{};
  if (bytes.size() < sizeof unit) {
    return "";
  }
  std::memcpy(&unit, bytes.data(), sizeof unit);
  const std::size_t slash = path.rfind('/') + 1;
  const std::string name = path.substr(slash);
  const std::string directory = StripSeparator(path.substr(0, slash));
  const auto old_path = FindFile(JoinPath(directory, kJournalDirectory), name);
  if (old_path && PutJournalAside(*old_path).empty()) {
    return "an older one cannot be put aside";
  }
  JournalWriter writer(clock);
  if (!writer.Open(JournalPath(directory, name))) {
    return writer.Error();
  }
  JsonValue::Members fields = BeginFields(RandomId(), name, unit, settings);
  fields.emplace_back("origin", OriginFields(origin));
  writer.Add(journal::kBegin, fields);
  AddSeal(writer, unit, bytes);
  return writer.Sync() ? "" : writer.Error();
}

}  // namespace tavrel
