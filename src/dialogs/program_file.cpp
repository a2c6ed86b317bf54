#include "dialogs/program_file.h"

namespace tavrel {

bool ChooseProgramFile(RunState& state, Dialogs& dialogs, FileMode mode) {
  SettingsValues& settings = state.Settings;
  FileChoice choice;
  choice.Mode = mode;
  choice.Directory = settings.ProgPath;
  choice.FileName = settings.ProgFile;
  choice.DefaultExtension = "prg";
  choice.Filter = "program  (*.prg)|*.prg";
  dialogs.FileDialog(choice);
  if (choice.FileName.empty()) {
    return false;
  }
  if (settings.ProgPath != choice.Directory || settings.ProgFile != choice.FileName) {
    settings.ProgPath = choice.Directory;
    settings.ProgFile = choice.FileName;
    state.SettingsChanged = true;
  }
  return true;
}

}  // namespace tavrel
