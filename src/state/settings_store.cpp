#include "state/settings_store.h"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "platform/file_system.h"
#include "state/settings_keys.h"

namespace tavrel {
namespace {

constexpr char kUnknown = '?';   // company and user before they are known
constexpr int kTypeInForce = 4;  // the one link variant that is in use

// The lines of the legacy file, counted from 1. Lines that are not named are passed over.
constexpr std::size_t kLegacyActive = 2;  // twelve of them
constexpr std::size_t kLegacyPlant = 14;
constexpr std::size_t kLegacyLab = 15;
constexpr std::size_t kLegacyDefPath = 16;
constexpr std::size_t kLegacyDestPath = 17;
constexpr std::size_t kLegacyCommPort = 19;
constexpr std::size_t kLegacyHelpLang = 20;
constexpr std::size_t kLegacyNameLength = 12;  // "M260314A.OVE"

// Where `name` stands in the directory of the settings, under the spelling that it has there.
std::string PathOf(const RunState& state, const char* name) {
  return FindFile(state.DataHome, name).value_or(JoinPath(state.DataHome, name));
}

// The lines of the file `name` in `directory`; empty if there is none, or if `no_answer` says why
// nobody can tell.
std::optional<std::vector<std::string>> LinesOf(const std::string& directory, const char* name,
                                                NoAnswer& no_answer) {
  NoAnswer not_found;
  const std::string path = FindFile(directory, name, not_found).value_or(JoinPath(directory, name));
  const auto bytes = ReadWholeFile(path, kLargestSettingsFile, no_answer);
  if (bytes) {
    return SettingsLines(*bytes);
  }
  if (no_answer.Why == Failure::kNone) {
    no_answer = not_found;
  }
  return std::nullopt;
}

std::string DefaultDefPath(const RunState& state) {
  return JoinPath(state.DataHome, kDataDirectory);
}

SettingsValues DefaultValues(const RunState& state) {
  SettingsValues values;
  values.Plant = std::string(1, kUnknown);
  values.Lab = values.Plant;
  values.HelpLang = "English";
  values.CommPort = "----";
  values.TypeSel = kTypeInForce;
  values.DefPath = DefaultDefPath(state);
  values.OpenPath = values.DefPath;
  values.SortKey = "FD";
  values.DestPath = "A:";
  values.PFontName = "Arial";
  values.PFontSize = 11;
  values.PColorType = 2;
  values.PDrawWidth = 2;
  values.ProgPath = StripSeparator(state.AppPath);
  values.VerType = "Standard";
  return values;
}

// `lines` of the legacy file as far as they go; what is missing is empty.
SettingsValues LegacyValues(const std::vector<std::string>& lines) {
  const auto line = [&lines](std::size_t number) {
    return number <= lines.size() ? lines[number - 1] : std::string();
  };
  SettingsValues values;
  for (std::size_t slot = 0; slot < values.ActiveFiles.size(); ++slot) {
    const std::string name = Trim(line(kLegacyActive + slot));
    values.ActiveFiles.at(slot) = TrimRight(FirstCharacters(name, kLegacyNameLength));
  }
  values.Plant = line(kLegacyPlant);
  values.Lab = line(kLegacyLab);
  values.DefPath = Trim(line(kLegacyDefPath));
  values.DestPath = Trim(line(kLegacyDestPath));
  values.CommPort = line(kLegacyCommPort);
  values.HelpLang = line(kLegacyHelpLang);
  return values;
}

void FillIfEmpty(std::string& value, const std::string& filling) {
  if (value.empty()) {
    value = filling;
  }
}

// What the legacy layout left open, and what is never taken from it: its ComMode (line 27) is
// overwritten although the file names one.
void CompleteLegacyValues(SettingsValues& values, const RunState& state) {
  const SettingsValues defaults = DefaultValues(state);
  FillIfEmpty(values.Plant, defaults.Plant);
  FillIfEmpty(values.Lab, defaults.Lab);
  FillIfEmpty(values.DefPath, defaults.DefPath);
  FillIfEmpty(values.DestPath, defaults.DestPath);
  FillIfEmpty(values.CommPort, defaults.CommPort);
  FillIfEmpty(values.HelpLang, defaults.HelpLang);
  FillIfEmpty(values.SortKey, defaults.SortKey);
  values.TypeSel = kTypeInForce;
  values.ProgPath = defaults.ProgPath;
  values.ProgFile.clear();
  values.ComMode = 0;
  values.DefPath = StripSeparator(values.DefPath);
  values.VerType = defaults.VerType;
  values.Diagnostic = false;
}

// A directory that cannot be looked into now is not without files.
bool IsWithoutFiles(const std::string& directory) {
  NoAnswer no_answer;
  return !HoldsAnyFile(directory, no_answer) && no_answer.Why == Failure::kNone;
}

// A directory without any file counts as missing, so that the first start, which has made
// nothing yet, ends with an empty DefPath and the file routines fall back on tavdat.
void CheckPaths(SettingsValues& values, const RunState& state) {
  if (values.DefPath.empty()) {
    values.DefPath = DefaultDefPath(state);
  } else {
    values.DefPath = StripSeparator(values.DefPath);
    if (IsWithoutFiles(values.DefPath)) {
      values.DefPath.clear();
    }
  }
  if (values.OpenPath.empty()) {
    return;
  }
  values.OpenPath = StripSeparator(values.OpenPath);
  if (IsWithoutFiles(values.OpenPath)) {
    values.OpenPath = values.DefPath;
  }
}

}  // namespace

// The lines of that file; empty if there is none. Where that cannot be told ReadError says why. A
// user who has no settings of his own begins with those beside the program, if they are for him.
std::optional<std::vector<std::string>> SettingsStore::ReadLines(const char* name) {
  NoAnswer no_answer;
  auto lines = LinesOf(state_.DataHome, name, no_answer);
  if (!lines && no_answer.Why == Failure::kNone && state_.AppPath != state_.DataHome) {
    lines = LinesOf(state_.AppPath, name, no_answer);
    if (no_answer.Why == Failure::kNotAllowed) {
      return std::nullopt;
    }
  }
  read_error_ = no_answer.Text;
  return lines;
}

void SettingsStore::SettingsLoad() {
  read_error_.clear();
  names_on_disk_.reset();
  const auto lines = ReadLines(kSettingsFile);
  if (!read_error_.empty()) {
    return;
  }
  state_.SettingsRead = true;
  state_.FirstRun = false;
  if (!lines) {
    SettingsDefaults();
  } else if (lines->empty() || !IsKeyFile(lines->front())) {
    SettingsLegacy();
  } else {
    state_.Settings = {};
    TakeKeyLines(state_.Settings, *lines);
    names_on_disk_ = state_.Settings.ActiveFiles;
  }
  if (!read_error_.empty()) {
    return;
  }
  CheckPaths(state_.Settings, state_);
  state_.Settings.TypeSel = kTypeInForce;
}

void SettingsStore::SettingsDefaults() {
  state_.Settings = DefaultValues(state_);
  state_.SettingsRead = false;
  state_.FirstRun = true;
}

void SettingsStore::SettingsLegacy() {
  const auto lines = ReadLines(kLegacySettingsFile);
  if (!read_error_.empty()) {
    return;
  }
  if (lines) {
    state_.Settings = LegacyValues(*lines);
  } else {
    SettingsDefaults();
  }
  CompleteLegacyValues(state_.Settings, state_);
  state_.SettingsChanged = true;
  state_.SettingsRead = false;
  state_.FirstRun = true;
}

std::string SettingsStore::SettingsSave() {
  if (!read_error_.empty()) {
    return read_error_;
  }
  // A backup that cannot be made does not stop the save: dropping a name is mostly the user's
  // own wish, and a failed save ends the program.
  static_cast<void>(KeepDroppedNames());
  std::string error = ReplaceFile(PathOf(state_, kSettingsFile), KeyFileBytes(state_.Settings));
  if (error.empty()) {
    state_.SettingsChanged = false;
    names_on_disk_ = state_.Settings.ActiveFiles;
  }
  return error;
}

// Where the file cannot be read now, it holds what was read or written last. One that is too long
// is not trusted to hold nothing.
std::string SettingsStore::KeepDroppedNames() {
  const std::string path = PathOf(state_, kSettingsFile);
  if (!FindFile(state_.DataHome, kSettingsFile)) {
    return "";
  }
  NoAnswer no_answer;
  const auto bytes = ReadWholeFile(path, kLargestSettingsFile, no_answer);
  std::optional<ActiveNames> before;
  if (no_answer.Why != Failure::kNone) {
    before = names_on_disk_;
  } else if (bytes) {
    SettingsValues held;
    TakeKeyLines(held, SettingsLines(*bytes));
    before = held.ActiveFiles;
  }
  const ActiveNames& after = state_.Settings.ActiveFiles;
  if (before && !DropsActiveName(*before, after)) {
    return "";
  }
  return KeepBackup(state_.DataHome, path, {before.value_or(ActiveNames()), after});
}

std::string DataDirectory(const RunState& state) {
  if (!state.Settings.DefPath.empty()) {
    return state.Settings.DefPath;
  }
  std::string directory = DefaultDefPath(state);
  // If it cannot be made, the first file in it says so to the user.
  static_cast<void>(MakeDirectory(directory));
  return directory;
}

}  // namespace tavrel
