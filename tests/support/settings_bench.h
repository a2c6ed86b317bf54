#ifndef TAVREL_TESTS_SUPPORT_SETTINGS_BENCH_H_
#define TAVREL_TESTS_SUPPORT_SETTINGS_BENCH_H_

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/bench_program.h"

namespace tavrel {

// The program on the bench with settings that every list of the settings dialog can show, and the
// dialog on demand.
class SettingsBench {
 public:
  SettingsBench() {
    SettingsValues& values = bench.state.Settings;
    values.Plant = "Foundry South";
    values.Lab = "M. Weber";
    values.HelpLang = "English";
    values.CommPort = "COM3";
    values.DefPath = bench.home.File("tavdat");
    values.PFontName = "Arial";
    values.PFontSize = 11;
    values.PDrawWidth = 2;
    bench.screens.built = {View::kTavSett, View::kAllDir};
    bench.state.ActiveView = View::kMainSheet;
  }

  SettingsDialog& Open() {
    dialog.Open();
    return dialog;
  }

  // The next cmdPath opens that directory and takes it.
  void NextDirectory(const std::string& path) {
    std::filesystem::create_directories(path);
    bench.screens.on_show = [this, path](View) {
      directory.Lists().Open(path);
      directory.CmdOK_Click();
    };
  }

  void PutIntoUse(int slot, bool recording) {
    bench.state.SlotFile[slot] = "M260314A.OVN";
    bench.state.Unit[slot].UnitRecOn = recording ? 1 : 0;
  }

  std::string SavedSettings() const { return bench.home.Read("TAVREL.USR"); }

  BenchProgram bench;
  DirectoryChoice& directory = bench.directory;
  SettingsDialog& dialog = bench.settings_dialog;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_SETTINGS_BENCH_H_
