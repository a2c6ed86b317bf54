#include "command/file_command.h"

#include <algorithm>
#include <map>
#include <span>
#include <utility>

#include "base/number.h"
#include "base/version.h"
#include "command/export_rows.h"
#include "command/ledger_report.h"
#include "command/repair.h"
#include "files/recording_format.h"
#include "files/stored_recording.h"
#include "platform/file_system.h"
#include "platform/random_file.h"

namespace tavrel {
namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kUsage =
    "usage: tavrel-file info FILE...\n"
    "       tavrel-file verify FILE...\n"
    "       tavrel-file ledger [--json] FILE...\n"
    "       tavrel-file repair IN OUT\n"
    "       tavrel-file export [--format csv|json] [--decimal point|comma]\n"
    "                          [--time seconds|local|utc] FILE...\n"
    "       tavrel-file --help | --version\n"
    "\n"
    "info    what the header of each recording and its journal say\n"
    "verify  holds each recording against its journal. Exit status: 0 intact, 1 readable but\n"
    "        not covered (no journal, or something behind the last seal), 2 damaged, 3 usage or\n"
    "        reading failed; of many files the highest\n"
    "ledger  how complete each recording is by its journal: sets recorded live, fetched later,\n"
    "        filled in, in question, lost, still in the instrument; with --json one object a "
    "file.\n"
    "        Exit status: 0 told, 1 there is no ledger (no journal), 2 recording or journal\n"
    "        damaged, the figures reach to the damage only, 3 usage or reading failed\n"
    "repair  makes a whole recording OUT of what is left of IN, and tells what was left out.\n"
    "        Nothing is written over: OUT must not be there\n"
    "export  prints the rows of each recording, with the seconds since the first set, which "
    "stands\n"
    "        in the rows 0 and 1, and the values in degrees. A decimal comma parts fields by\n"
    "        semicolons. --time local or utc gives the time of day instead, with its distance\n"
    "        from universal time; where the journal does not say it for every row, nothing of\n"
    "        the file is printed, and the exit status is 3. Of many files each has its own line\n"
    "        of names, or its own line in JSON\n"
    "\n"
    "The journal of a recording lies beside it, in the directory journal, under its name.\n";

CommandResult WrongUsage(const std::string& what) {
  return {kCommandFailed, "", "tavrel-file: " + what + "\n" + kUsage};
}

// Collects what is said of one file after the other, and finds them.
class Report {
 public:
  void Say(const std::string& file, int status, const std::string& text) {
    result_.Output += file + ": " + text + "\n";
    Raise(status);
  }
  void Print(const std::string& text) { result_.Output += text; }
  void Fail(const std::string& file, const std::string& text) {
    result_.Errors += "tavrel-file: " + file + ": " + text + "\n";
    Raise(kCommandFailed);
  }
  void Raise(int status) { result_.Status = std::max(result_.Status, status); }
  [[nodiscard]] FileFinder& Finder() { return finder_; }
  [[nodiscard]] CommandResult Result() && { return std::move(result_); }

 private:
  CommandResult result_;
  FileFinder finder_;
};

// Empty, and told, if the file is none that this command knows.
std::optional<StoredRecording> ReadOrTell(const std::string& file, Report& report) {
  StoredRecording recording = ReadRecording(file, report.Finder());
  if (!recording.Problem.empty()) {
    report.Fail(file, recording.Problem);
    return std::nullopt;
  }
  if (!MayBeRecording(recording)) {
    report.Fail(file, "is no recording");
    return std::nullopt;
  }
  return recording;
}

std::string InputsOf(const UnitRecord& unit) {
  std::string text;
  for (int input = 1; input <= kInputs; ++input) {
    if (unit.IsRecorded(input)) {
      text += "  input " + std::to_string(input) + ": " + unit.UnitInputName[input].Get() + "\n";
    }
  }
  return text;
}

std::string JournalInfo(const StoredRecording& recording, const RecordingCheck& check) {
  if (!recording.Journal) {
    return "  journal: none\n";
  }
  const JournalReading journal = ReadJournal(*recording.Journal);
  std::string text =
      "  journal: " + std::to_string(journal.Entries.size()) + " lines, id " + check.Id + "\n";
  if (check.LastSeal) {
    text += "  last seal: " + std::to_string(check.LastSeal->Rows) + " rows, data " +
            check.LastSeal->Data + "\n";
  }
  return text;
}

CommandResult Info(const Arguments& files) {
  Report report;
  for (const std::string& file : files) {
    const auto recording = ReadOrTell(file, report);
    if (!recording) {
      continue;
    }
    const UnitRecord unit = HeaderOf(*recording);
    const RecordingCheck check = CheckRecording(recording->File(), recording->Journal);
    report.Say(file, kAllIsWell,
               unit.UnitDesignation.Get() + "\n  begun: " + unit.UnitDate.Get() +
                   "\n  instrument: " + std::to_string(unit.UnitInet) +
                   "\n  recording: " + (unit.UnitRecOn == 1 ? "on" : "stopped") +
                   "\n  interval: " + std::to_string(RecIntervalOf(unit)) +
                   " s\n  rows: " + std::to_string(check.Rows) + "\n" + InputsOf(unit) +
                   JournalInfo(*recording, check) +
                   "  columns: " + std::to_string(unit.UnitChannels));
  }
  return std::move(report).Result();
}

std::string VerdictText(const RecordingCheck& check) {
  std::string text = check.Verdict == Verdict::kIntact       ? "intact"
                     : check.Verdict == Verdict::kNotCovered ? "not covered"
                                                             : "damaged";
  text += ", " + std::to_string(check.Rows) + " rows";
  const char* between = ": ";
  for (const std::string& finding : check.Findings) {
    text += between + finding;
    between = "; ";
  }
  return text;
}

// Journals that begin with the same line, of the files that were asked for. Of each only the name
// of its file and the hash of its first line are kept, so that a large directory takes no more
// memory than a small one; copies of one recording are few and read once more.
class Kin {
 public:
  void Take(const std::string& file, const StoredRecording& recording, Report& report) {
    const std::string& journal = *recording.Journal;
    auto& others = by_beginning_[Sha256Of(journal.substr(0, journal.find('\n')))];
    for (const std::string& name : others) {
      const std::string text = ReadRecording(name, report.Finder()).Journal.value_or("");
      if (KinshipOf(text, journal) == Kinship::kForks) {
        report.Say(file, kAllIsWell,
                   "fork: it and " + name + " went on from one, behind line " +
                       std::to_string(CommonLines(text, journal)) + " of the journal");
      }
    }
    if (others.size() < kMostKin) {
      others.push_back(file);
    }
  }

 private:
  static constexpr std::size_t kMostKin = 100;  // copies of one recording
  std::map<std::string, std::vector<std::string>> by_beginning_;
};

CommandResult Verify(const Arguments& files) {
  Report report;
  Kin kin;
  for (const std::string& file : files) {
    const auto recording = ReadOrTell(file, report);
    if (!recording) {
      continue;
    }
    const RecordingCheck check = CheckRecording(recording->File(), recording->Journal);
    report.Say(file, static_cast<int>(check.Verdict), VerdictText(check));
    if (recording->Journal) {
      kin.Take(file, *recording, report);
    }
  }
  return std::move(report).Result();
}

// Says what the ledger of one recording is.
void TellLedger(const std::string& file, const StoredRecording& recording, bool is_json,
                Report& report) {
  const JournalReading journal = ReadJournal(recording.Journal.value_or(""));
  const RecordingCheck check = CheckRecording(recording.File(), recording.Journal);
  const bool is_damaged = check.Verdict == Verdict::kDamaged;
  const LedgerFigures figures = LedgerOf(journal, check.Rows);
  const std::string problem = is_damaged ? VerdictText(check) : "";
  const int status = figures.IsKnown ? kAllIsWell : kNotAllCovered;
  report.Raise(is_damaged ? kSomeDamaged : status);
  if (is_json) {
    report.Print(LedgerJson(file, figures, problem));
  } else {
    report.Say(file, kAllIsWell, (is_damaged ? problem + "\n  " : "") + LedgerWords(figures));
  }
}

CommandResult TellLedgers(const Arguments& arguments) {
  const bool is_json = !arguments.empty() && arguments.front() == "--json";
  const Arguments files(arguments.begin() + (is_json ? 1 : 0), arguments.end());
  if (files.empty()) {
    return WrongUsage("a file is missing");
  }
  if (files.front().starts_with("--")) {
    return WrongUsage("unknown option " + files.front());
  }
  Report report;
  for (const std::string& file : files) {
    if (const auto recording = ReadOrTell(file, report)) {
      TellLedger(file, *recording, is_json, report);
    }
  }
  return std::move(report).Result();
}

// The empty text on success. What could not be completed is taken away again.
std::string WriteNewFile(const std::string& path, const std::string& bytes) {
  RandomFile file;
  if (!file.Open(path, FileAccess::kCreateNew)) {
    return file.Error();
  }
  if (file.WriteAt(0, std::as_bytes(std::span(bytes))) && file.Sync()) {
    return "";
  }
  std::string problem = file.Error();
  file.Close();
  static_cast<void>(DeleteFile(path));
  return problem;
}

CommandResult RepairInto(const Arguments& files) {
  if (files.size() != 2) {
    return WrongUsage("repair takes two files");
  }
  Report report;
  const auto recording = ReadOrTell(files[0], report);
  if (!recording) {
    return std::move(report).Result();
  }
  const RepairedRecording repaired = Repair(*recording);
  for (const std::string& remark : repaired.Remarks) {
    report.Say(files[0], kAllIsWell, remark);
  }
  if (!repaired.Bytes) {
    report.Say(files[0], kSomeDamaged, "it cannot be repaired");
    return std::move(report).Result();
  }
  const std::string problem = WriteNewFile(files[1], *repaired.Bytes);
  if (problem.empty()) {
    report.Say(files[1], kAllIsWell, "written");
  } else {
    report.Fail(files[1], problem);
  }
  return std::move(report).Result();
}

// What export was asked for.
struct ExportWish {
  bool is_json = false;
  bool has_comma = false;
  TimeColumn time = TimeColumn::kSeconds;
  Arguments files;
};

std::optional<TimeColumn> TimeColumnOf(const std::string& value) {
  const std::map<std::string, TimeColumn> columns = {
      {"seconds", TimeColumn::kSeconds}, {"local", TimeColumn::kLocal}, {"utc", TimeColumn::kUtc}};
  const auto found = columns.find(value);
  return found == columns.end() ? std::nullopt : std::optional(found->second);
}

// Takes an option and its value; false if there is none of that kind.
bool TakeOption(ExportWish& wish, const std::string& option, const std::string& value) {
  const bool is_format = option == "--format" && (value == "csv" || value == "json");
  const bool is_decimal = option == "--decimal" && (value == "point" || value == "comma");
  wish.is_json = is_format ? value == "json" : wish.is_json;
  wish.has_comma = is_decimal ? value == "comma" : wish.has_comma;
  const auto time = option == "--time" ? TimeColumnOf(value) : std::nullopt;
  wish.time = time.value_or(wish.time);
  return is_format || is_decimal || time;
}

// Empty, with `wrong`, for options that are none.
std::optional<ExportWish> ReadWish(const Arguments& arguments, std::string& wrong) {
  ExportWish wish;
  std::size_t place = 0;
  while (place < arguments.size() && arguments[place].starts_with("--")) {
    const std::string value = place + 1 < arguments.size() ? arguments[place + 1] : "";
    if (!TakeOption(wish, arguments[place], value)) {
      wrong = "unknown option " + arguments[place] + " " + value;
      return std::nullopt;
    }
    place += 2;
  }
  wish.files.assign(arguments.begin() + static_cast<std::ptrdiff_t>(place), arguments.end());
  wrong = wish.files.empty() ? "a file is missing" : "";
  return wish.files.empty() ? std::nullopt : std::optional(wish);
}

void ExportFile(const std::string& file, const ExportWish& wish, Report& report) {
  const auto recording = ReadOrTell(file, report);
  if (!recording) {
    return;
  }
  if (!IsTavrelHeader(HeaderOf(*recording))) {
    report.Fail(file, "its header is damaged");
    return;
  }
  if (const auto row = FirstRowWithoutTime(*recording, wish.time)) {
    report.Fail(file, "the journal does not say at which time row " + std::to_string(*row) +
                          " was recorded");
    return;
  }
  const TableStyle style{wish.has_comma ? ',' : '.', wish.has_comma ? ';' : ',', wish.time};
  report.Print(wish.is_json ? JsonOf(*recording, file, wish.time) : CsvOf(*recording, style));
}

CommandResult Export(const Arguments& arguments) {
  std::string wrong;
  const auto wish = ReadWish(arguments, wrong);
  if (!wish) {
    return WrongUsage(wrong);
  }
  Report report;
  for (const std::string& file : wish->files) {
    ExportFile(file, *wish, report);
  }
  return std::move(report).Result();
}

}  // namespace

CommandResult RunFileCommand(const std::vector<std::string>& arguments) {
  const std::string command = arguments.empty() ? "" : arguments.front();
  if (command == "--help") {
    return {kAllIsWell, kUsage, ""};
  }
  if (command == "--version") {
    return {kAllIsWell, std::string("tavrel-file ") + kVersion + "\n", ""};
  }
  const std::map<std::string, CommandResult (*)(const Arguments&)> commands = {
      {"info", Info}, {"verify", Verify}, {"repair", RepairInto}};
  const auto found = commands.find(command);
  const bool has_options = command == "export" || command == "ledger";
  if (found == commands.end() && !has_options) {
    return WrongUsage(command.empty() ? "a command is missing" : "unknown command " + command);
  }
  const Arguments files(arguments.begin() + 1, arguments.end());
  if (has_options) {
    return command == "export" ? Export(files) : TellLedgers(files);
  }
  if (files.empty()) {
    return WrongUsage("a file is missing");
  }
  for (const std::string& file : files) {
    if (file.starts_with("--")) {
      return WrongUsage("unknown option " + file);
    }
  }
  return found->second(files);
}

}  // namespace tavrel
