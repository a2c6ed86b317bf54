#ifndef TAVREL_TESTS_SETTINGS_SETTINGS_FIXTURE_H_
#define TAVREL_TESTS_SETTINGS_SETTINGS_FIXTURE_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "state/settings_store.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// Settings in a directory of their own, which is the program's as well.
class SettingsTest : public testing::Test {
 protected:
  SettingsTest() {
    state_.AppPath = home_.Path() + "/";
    state_.DataHome = home_.Path() + "/";
  }

  // Writes TAVREL.USR: the mark and `lines`, each in quotes.
  void WriteKeyFile(const std::vector<std::string>& lines) const {
    std::string bytes = "\"VERSION:: 6.1\"\r\n";
    for (const std::string& line : lines) {
      bytes += "\"" + line + "\"\r\n";
    }
    home_.Write(kSettingsFile, bytes);
  }

  // The same, then loads it.
  const SettingsValues& Load(const std::vector<std::string>& lines) {
    WriteKeyFile(lines);
    store_.SettingsLoad();
    return state_.Settings;
  }

  // Makes a directory with a file in it and gives its path.
  [[nodiscard]] std::string FilledDirectory(const std::string& name) const {
    std::filesystem::create_directories(home_.File(name));
    home_.Write(name + "/M260314A.OVE", "x");
    return home_.File(name);
  }

  TemporaryDirectory home_;
  std::unique_ptr<RunState> owned_state_ = std::make_unique<RunState>();
  RunState& state_ = *owned_state_;
  SettingsStore store_{state_};
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SETTINGS_SETTINGS_FIXTURE_H_
