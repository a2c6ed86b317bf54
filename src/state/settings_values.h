#ifndef TAVREL_STATE_SETTINGS_VALUES_H_
#define TAVREL_STATE_SETTINGS_VALUES_H_

#include <array>
#include <string>

#include "state/numbers.h"

namespace tavrel {

// The user's settings as they stand in the settings file. All texts are UTF-8. A key that is
// missing from a file leaves its value empty or 0, so "empty" and 0 are values to reckon with.
struct SettingsValues {
  std::string Plant;
  std::string Lab;
  std::string HelpLang;  // first letter G: German, else English
  std::string Acro;      // kept and written back, otherwise unused
  bool Diagnostic = false;
  std::string CommPort;  // COM1..COM30, "----" simulates
  int ComMode = 0;       // 0 direct, 1 and 2 plug-in interfaces
  int TypeSel = 0;       // link variant; 4 is in force whatever the file holds
  std::string DefPath;   // recording files; empty means the directory tavdat of the program
  std::string OpenPath;  // last directory of the open dialog
  std::string OpenFile;  // last opened file
  std::string SortKey;   // FA, FD, PA, PD
  std::string DestPath;  // last destination of copying
  std::array<std::string, kSlots> ActiveFiles;  // file name of slot n at place n - 1
  std::string PrintName;
  std::string PFontName;
  float PFontSize = 0;  // points
  int PColorType = 0;
  int PDrawWidth = 0;  // points
  std::string ProgPath;
  std::string ProgFile;
  std::string VerType;
};

}  // namespace tavrel

#endif  // TAVREL_STATE_SETTINGS_VALUES_H_
