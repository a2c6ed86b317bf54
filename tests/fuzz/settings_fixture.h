#ifndef TAVREL_TESTS_FUZZ_SETTINGS_FIXTURE_H_
#define TAVREL_TESTS_FUZZ_SETTINGS_FIXTURE_H_

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <string>

#include "base/text.h"
#include "state/run_state.h"
#include "state/settings_keys.h"
#include "state/settings_store.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// A settings store over a directory of its own, in which the directory of recordings holds a
// file, so that it counts as there.
struct SettingsFixture {
  TemporaryDirectory home;
  RunState state;
  SettingsStore store{state};

  SettingsFixture() {
    state.AppPath = home.Path() + "/";
    state.DataHome = state.AppPath;
    std::filesystem::create_directory(home.File("tavdat"));
    home.Write("tavdat/M011111A.NEW", "");
  }

  void CheckLoaded() const {
    const SettingsValues& values = state.Settings;
    Require(values.TypeSel == 4, "link variant 4 is in force whatever the file holds");
    for (const int number : {values.ComMode, values.PColorType, values.PDrawWidth}) {
      Require(number >= std::numeric_limits<std::int16_t>::min() &&
                  number <= std::numeric_limits<std::int16_t>::max(),
              "whole numbers are held in 16 bits");
    }
    Require(std::isfinite(values.PFontSize), "the font size is a number");
  }

  // What was loaded may hold what no line can hold, such as a quote, which is replaced; what was
  // saved once is then loaded and saved for ever without a change.
  void CheckRoundTrip() {
    const SettingsValues before = state.Settings;
    const std::string first = SaveAndLoad();
    CheckLoaded();
    CheckKept(before);
    Require(state.SettingsRead && !state.FirstRun, "a saved file is a file of keys");
    const std::string second = SaveAndLoad();
    Require(LinesIn(first) == LinesIn(second), "every key is one line");
    const std::string third = SaveAndLoad();
    Require(second == third, "saved settings are read and written without a change");
  }

 private:
  // Paths are left out: one that leads nowhere is not kept.
  void CheckKept(const SettingsValues& before) const {
    constexpr std::array kTexts = {
        &SettingsValues::Plant,     &SettingsValues::Lab,      &SettingsValues::HelpLang,
        &SettingsValues::Acro,      &SettingsValues::CommPort, &SettingsValues::OpenFile,
        &SettingsValues::SortKey,   &SettingsValues::DestPath, &SettingsValues::PrintName,
        &SettingsValues::PFontName, &SettingsValues::ProgFile, &SettingsValues::VerType};
    for (const auto text : kTexts) {
      Require(state.Settings.*text == Storable(before.*text), "a text survives save and load");
    }
    Require(state.Settings.ComMode == before.ComMode &&
                state.Settings.PColorType == before.PColorType &&
                state.Settings.PDrawWidth == before.PDrawWidth &&
                state.Settings.Diagnostic == before.Diagnostic,
            "a number survives save and load");
  }
  // `text` as far as a line can hold it.
  static std::string Storable(std::string text) {
    std::replace(text.begin(), text.end(), '"', '\'');
    std::replace(text.begin(), text.end(), '\r', ' ');
    std::replace(text.begin(), text.end(), '\n', ' ');
    return Trim(text);
  }

  std::string SaveAndLoad() {
    Require(store.SettingsSave().empty(), "the settings can be saved");
    Require(!state.SettingsChanged, "saved settings are not changed ones");
    std::string bytes = home.Read(kSettingsFile);
    store.SettingsLoad();
    return bytes;
  }
  static std::size_t LinesIn(const std::string& bytes) { return SettingsLines(bytes).size(); }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FUZZ_SETTINGS_FIXTURE_H_
