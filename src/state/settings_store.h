#ifndef TAVREL_STATE_SETTINGS_STORE_H_
#define TAVREL_STATE_SETTINGS_STORE_H_

#include <optional>
#include <string>
#include <vector>

#include "state/run_state.h"
#include "state/settings_backup.h"

namespace tavrel {

inline constexpr const char* kSettingsFile = "TAVREL.USR";        // key lines
inline constexpr const char* kLegacySettingsFile = "TAVDEF.USR";  // lines in a fixed order

// The settings file in RunState::DataHome, read once at start and written whole when something
// changed. If it is not there the one in RunState::AppPath is read, which a user cannot write. A
// file that is missing or damaged leads to defaults. One that is there but cannot be read does not:
// a save over it would lose the names of all tests.
class SettingsStore {
 public:
  // `state` outlives this; AppPath and DataHome are set.
  explicit SettingsStore(RunState& state) : state_(state) {}

  // Reads TAVREL.USR; without it come the defaults, without its mark in the first line the old
  // layout. Sets SettingsRead and FirstRun, and TypeSel to 4 whatever the file holds. May be
  // called again after a ReadError.
  void SettingsLoad();

  // The system's words if a settings file is there, or may be there, and could not be read by the
  // last SettingsLoad; empty if all went well. Until then nothing is saved.
  [[nodiscard]] const std::string& ReadError() const { return read_error_; }

  // Fills all values with their defaults; FirstRun true, SettingsRead false.
  void SettingsDefaults();

  // Reads TAVDEF.USR, or takes the defaults if there is none.
  void SettingsLegacy();

  // Writes all keys, whole or not at all, and clears SettingsChanged. If the save drops a name
  // of an ACTIVE key that the file held, the file is first kept as a backup. Empty text on
  // success, else the system's error text.
  [[nodiscard]] std::string SettingsSave();

  // Keeps the file now, if a save would drop a name of an ACTIVE key. The path of the backup;
  // empty if there is nothing to keep or it cannot be kept.
  std::string KeepDroppedNames();

 private:
  [[nodiscard]] std::optional<std::vector<std::string>> ReadLines(const char* name);

  RunState& state_;
  std::string read_error_;
  std::optional<ActiveNames> names_on_disk_;  // as last read or written; empty: nobody knows
};

inline constexpr const char* kDataDirectory = "tavdat";

// The directory where recording files are: DefPath, or the directory tavdat beside the settings
// if that is empty, which is then made if missing.
[[nodiscard]] std::string DataDirectory(const RunState& state);

}  // namespace tavrel

#endif  // TAVREL_STATE_SETTINGS_STORE_H_
