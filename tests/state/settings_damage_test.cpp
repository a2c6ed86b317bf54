#include <algorithm>
#include <cmath>
#include <iterator>
#include <random>

#include "platform/file_system.h"
#include "tests/state/settings_fixture.h"

namespace tavrel {
namespace {

// Files that a crash, a stranger's editor or a bad disk left behind.
class DamagedSettings : public SettingsTest {
 protected:
  // Loads `bytes` as the settings file and tests what every load promises.
  void LoadBytes(const std::string& bytes) {
    home_.Write(kSettingsFile, bytes);
    store_.SettingsLoad();
    const SettingsValues& settings = state_.Settings;
    ASSERT_EQ(settings.TypeSel, 4);
    ASSERT_NE(state_.SettingsRead, state_.FirstRun);
    ASSERT_TRUE(settings.ComMode >= -32768 && settings.ComMode <= 32767);
    ASSERT_TRUE(std::isfinite(settings.PFontSize));
    ASSERT_TRUE(settings.DefPath.empty() || settings.DefPath == home_.File("tavdat") ||
                HoldsAnyFile(settings.DefPath));
  }

  // What was made of the bytes is what the next starts make of it, too: behind the one that puts
  // the default in the place of a data directory that is not there. The default directory holds a
  // recording here, for an empty one is given up at each load.
  void ExpectToBeSavedAsTheyWereRead() {
    std::filesystem::create_directory(home_.File("tavdat"));
    home_.Write("tavdat/M260314A.OVE", "x");
    ASSERT_EQ(store_.SettingsSave(), "");
    store_.SettingsLoad();
    ASSERT_EQ(store_.SettingsSave(), "");
    const std::string saved = home_.Read(kSettingsFile);
    store_.SettingsLoad();
    ASSERT_TRUE(state_.SettingsRead);
    ASSERT_EQ(store_.SettingsSave(), "");
    ASSERT_EQ(home_.Read(kSettingsFile), saved);
  }

  [[nodiscard]] std::string FullFile() {
    store_.SettingsDefaults();
    state_.Settings.Plant = "Wärme";
    state_.Settings.ActiveFiles[0] = "M260314A.OVE";
    EXPECT_EQ(store_.SettingsSave(), "");
    return home_.Read(kSettingsFile);
  }
};

TEST_F(DamagedSettings, AreReadAsFarAsTheyGo) {
  const std::string full = FullFile();
  const std::size_t plant_end = full.find("rme\"\r\n") + 3;
  for (std::size_t length = 0; length <= full.size(); ++length) {
    LoadBytes(full.substr(0, length));
    const bool marked = length >= std::string("\"VERSION::").size();
    ASSERT_EQ(state_.SettingsRead, marked) << length;
    if (length >= plant_end) {
      ASSERT_EQ(state_.Settings.Plant, "Wärme") << length;
    }
  }
  EXPECT_EQ(state_.Settings.VerType, "Standard");
}

TEST_F(DamagedSettings, NeverHarmAsAnOldLayoutEither) {
  home_.Write(kSettingsFile, "junk");
  const std::string full = FullFile();
  for (std::size_t length = 0; length <= full.size(); ++length) {
    home_.Write(kLegacySettingsFile, full.substr(0, length));
    LoadBytes("junk");
    ASSERT_TRUE(state_.SettingsChanged);
  }
}

TEST_F(DamagedSettings, MayHoldAnyBytes) {
  std::mt19937 random(20260314);
  std::uniform_int_distribution<int> byte(0, 255);
  std::uniform_int_distribution<std::size_t> length(0, 600);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = "VERSION::\n";
    std::generate_n(std::back_inserter(bytes), length(random),
                    [&] { return static_cast<char>(byte(random)); });
    LoadBytes(bytes);
    ExpectToBeSavedAsTheyWereRead();
    LoadBytes(bytes.substr(10));
    ExpectToBeSavedAsTheyWereRead();
  }
}

TEST_F(DamagedSettings, MayHaveAnyByteOfThemChanged) {
  const std::string full = FullFile();
  std::mt19937 random(14032026);
  std::uniform_int_distribution<int> byte(0, 255);
  std::uniform_int_distribution<std::size_t> place(0, full.size() - 1);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = full;
    for (int change = 0; change < 5; ++change) {
      bytes.at(place(random)) = static_cast<char>(byte(random));
    }
    LoadBytes(bytes);
    ExpectToBeSavedAsTheyWereRead();
  }
}

TEST_F(DamagedSettings, MayHoldZeroBytesInAPath) {
  LoadBytes(std::string("\"VERSION:: 6.1\"\r\n\"DEFPATH:: /") + '\0' + "x\"\r\n");
  EXPECT_EQ(state_.Settings.DefPath, "");
}

}  // namespace
}  // namespace tavrel
