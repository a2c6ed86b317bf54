#ifndef TAVREL_MAIN_MAIN_MENU_H_
#define TAVREL_MAIN_MAIN_MENU_H_

#include <array>
#include <string_view>

#include "base/active_view.h"

namespace tavrel {

// What a menu entry does.
enum class MenuAction {
  kHeading,   // opens the list of the entries below it
  kShow,      // opens the form `Opens`
  kSettings,  // settings dialog, then the port is opened anew
  kHelp,      // the manual
  kExit,      // exit question, shut-down
};

// One line of the main form's menu.
struct MenuEntry {
  std::string_view Control;
  std::string_view Caption;
  MenuAction Action = MenuAction::kHeading;
  View Opens = View::kNone;
  bool HidesCommands = false;  // picCmds is hidden while the form is open
  bool StopsCycle = false;     // the form has the line to itself, Timer_Main stands still
};

// The whole menu from left to right and from top to bottom. Entries up to the next heading
// belong to the heading before them; MnuHelp and MnuExit stand in the bar by themselves.
inline constexpr std::array kMainMenu = {
    MenuEntry{"MnuTools", "Tools  "},
    MenuEntry{"MnuSettings", "System:    Settings  ", MenuAction::kSettings, View::kTavSett},
    MenuEntry{"MnuInst", "System:    Installation", MenuAction::kShow, View::kTavInst, true},
    MenuEntry{"MnuChannels", "Tavrel:    adjust   channels", MenuAction::kShow, View::kTavChann},
    MenuEntry{"MnuTavNo", "Tavrel:    assign  numbers", MenuAction::kShow, View::kTavNum, true},
    MenuEntry{"MnuProg", "Tavrel:    program", MenuAction::kShow, View::kTavProg},
    MenuEntry{"MnuExit2", "Exit", MenuAction::kExit},
    MenuEntry{"MnuDiagnostic", "Diagnostic  "},
    MenuEntry{"MnuQS", "Quality  System", MenuAction::kShow, View::kAllQs, true},
    MenuEntry{"MnuComm", "Test:     Com - Port", MenuAction::kShow, View::kAllCom, true},
    MenuEntry{"MnuMemory", "Test:     Memory", MenuAction::kShow, View::kAllMem, true},
    MenuEntry{"MnuOutputs", "Test:     Outputs", MenuAction::kShow, View::kSpTavHs, true},
    MenuEntry{"MnuWdog", "Test:     Watchdog", MenuAction::kShow, View::kAllWdog, true},
    MenuEntry{"MnuVariables", "Show:   Variables", MenuAction::kShow, View::kAllRam, true},
    MenuEntry{"MnuRegisters", "Show:   Registers", MenuAction::kShow, View::kAllRegs, true},
    MenuEntry{"MnuTerminal", "Terminal", MenuAction::kShow, View::kAllTerm, true, true},
    MenuEntry{"MnuHelp", "Help   ", MenuAction::kHelp},
    MenuEntry{"MnuExit", "Exit", MenuAction::kExit},
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_MAIN_MENU_H_
