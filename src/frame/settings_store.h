#ifndef TAVREL_FRAME_SETTINGS_STORE_H_
#define TAVREL_FRAME_SETTINGS_STORE_H_

#include <string>

#include "frame/run_state.h"

namespace tavrel {

inline constexpr const char* kSettingsFile = "TAVREL.USR";        // key lines
inline constexpr const char* kLegacySettingsFile = "TAVDEF.USR";  // lines in a fixed order

// The settings file in RunState::DataHome, read once at start and written whole when something
// changed. Reading cannot fail visibly: any problem leads to defaults.
class SettingsStore {
 public:
  // `state` outlives this; AppPath and DataHome are set.
  explicit SettingsStore(RunState& state) : state_(state) {}

  // Reads TAVREL.USR; without it come the defaults, without its mark in the first line the old
  // layout. Sets SettingsRead and FirstRun, and TypeSel to 4 whatever the file holds.
  void SettingsLoad();

  // Fills all values with their defaults; FirstRun true, SettingsRead false.
  void SettingsDefaults();

  // Reads TAVDEF.USR, or takes the defaults if there is none.
  void SettingsLegacy();

  // Writes all keys, whole or not at all, and clears SettingsChanged. If the save drops a name
  // of an ACTIVE key that the file held, the file is first kept as TAVREL.BAK. Empty text on
  // success, else the system's error text.
  [[nodiscard]] std::string SettingsSave();

 private:
  RunState& state_;
};

// The directory where recording files are: DefPath, or the directory tavdat beside the settings
// if that is empty, which is then made if missing.
[[nodiscard]] std::string DataDirectory(const RunState& state);

}  // namespace tavrel

#endif  // TAVREL_FRAME_SETTINGS_STORE_H_
