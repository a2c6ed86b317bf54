#ifndef TAVREL_STATE_SETTINGS_BACKUP_H_
#define TAVREL_STATE_SETTINGS_BACKUP_H_

#include <array>
#include <string>

#include "state/settings_values.h"

// Copies of the settings file from before a save that drops names of ACTIVE keys: TAVREL.BAK and,
// while that still holds names that nobody has attached again, TAVREL.BA2 to TAVREL.BA9.
namespace tavrel {

// The names of the ACTIVE keys, slot n at place n - 1.
using ActiveNames = std::array<std::string, kSlots>;

// True if a name of `before` stands in none of the keys of `after`.
[[nodiscard]] bool DropsActiveName(const ActiveNames& before, const ActiveNames& after);

// What a save does to the ACTIVE keys.
struct KeyChange {
  ActiveNames Before;
  ActiveNames After;
};

// Copies the settings file at `settings_path` into a backup in `directory` and returns its path;
// empty if none could be written. A backup is only written over when each name that it holds
// stands in a key of `change`, or another recording than the default one has its row: the user has
// set that row up anew. A link in the place of a backup is replaced, not followed.
[[nodiscard]] std::string KeepBackup(const std::string& directory, const std::string& settings_path,
                                     const KeyChange& change);

}  // namespace tavrel

#endif  // TAVREL_STATE_SETTINGS_BACKUP_H_
