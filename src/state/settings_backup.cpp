#include "state/settings_backup.h"

#include <algorithm>
#include <optional>

#include "base/file_names.h"
#include "base/text.h"
#include "platform/file_system.h"
#include "state/settings_keys.h"

namespace tavrel {
namespace {

constexpr std::array<const char*, 9> kBackupFiles = {"TAVREL.BAK", "TAVREL.BA2", "TAVREL.BA3",
                                                     "TAVREL.BA4", "TAVREL.BA5", "TAVREL.BA6",
                                                     "TAVREL.BA7", "TAVREL.BA8", "TAVREL.BA9"};

bool Holds(const ActiveNames& names, const std::string& name) {
  return std::ranges::any_of(names,
                             [&name](const std::string& held) { return EqualNoCase(held, name); });
}

// True if nothing is lost with a backup that holds `kept`.
bool IsSettled(const ActiveNames& kept, const KeyChange& change) {
  for (std::size_t row = 0; row < kept.size(); ++row) {
    const std::string& name = kept.at(row);
    const std::string& now = change.Before.at(row);
    const bool is_set_up_anew = !now.empty() && !IsDefaultFileName(now);
    if (!name.empty() && !is_set_up_anew && !Holds(change.Before, name) &&
        !Holds(change.After, name)) {
      return false;
    }
  }
  return true;
}

// False also for a backup that is there but cannot be read now.
bool MayBeWritten(const std::string& backup, const KeyChange& change) {
  if (IsLink(backup)) {
    return true;
  }
  NoAnswer no_answer;
  const auto bytes = ReadWholeFile(backup, kLargestSettingsFile, no_answer);
  if (!bytes) {
    return no_answer.Why == Failure::kNone;
  }
  SettingsValues kept;
  TakeKeyLines(kept, SettingsLines(*bytes));
  return IsSettled(kept.ActiveFiles, change);
}

}  // namespace

bool DropsActiveName(const ActiveNames& before, const ActiveNames& after) {
  return std::ranges::any_of(
      before, [&after](const std::string& name) { return !name.empty() && !Holds(after, name); });
}

std::string KeepBackup(const std::string& directory, const std::string& settings_path,
                       const KeyChange& change) {
  for (const char* name : kBackupFiles) {
    std::string backup = FindFile(directory, name).value_or(JoinPath(directory, name));
    if (MayBeWritten(backup, change) && CopyFileTo(settings_path, backup).empty()) {
      return backup;
    }
  }
  return "";
}

}  // namespace tavrel
