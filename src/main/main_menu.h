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
  kKeys,      // the table of all keys
  kExit,      // exit question, shut-down
};

// One line of the main form's menu.
struct MenuEntry {
  std::string_view Control;
  std::string_view Caption;
  char Letter = 0;  // the first behind the colon, if any: Alt and it choose the entry
  MenuAction Action = MenuAction::kHeading;
  View Opens = View::kNone;
  bool HidesCommands = false;  // picCmds is hidden while the form is open
  bool StopsCycle = false;     // the form has the line to itself, Timer_Main stands still
  std::string_view German{};   // its caption in German, if it has one of its own
  char GermanLetter = 0;       // of that
};

// The whole menu from left to right and from top to bottom. Entries up to the next heading
// belong to the heading before them; MnuHelp, MnuKeys and MnuExit stand in the
// bar by themselves.
inline constexpr std::array kMainMenu = {
    MenuEntry{"MnuTools", "Tools  ", 'T'},
    MenuEntry{"MnuSettings", "System:    Settings  ", 'S', MenuAction::kSettings, View::kTavSett},
    MenuEntry{"MnuInst", "System:    Installation", 'I', MenuAction::kShow, View::kTavInst, true},
    MenuEntry{"MnuChannels", "Tavrel:    adjust   channels", 'c', MenuAction::kShow,
              View::kTavChann},
    MenuEntry{"MnuTavNo", "Tavrel:    assign  numbers", 'a', MenuAction::kShow, View::kTavNum,
              true},
    MenuEntry{"MnuProg", "Tavrel:    program", 'p', MenuAction::kShow, View::kTavProg},
    MenuEntry{"MnuExit2", "Exit", 'x', MenuAction::kExit},
    MenuEntry{"MnuDiagnostic", "Diagnostic  ", 'D'},
    MenuEntry{"MnuQS", "Quality  System", 'Q', MenuAction::kShow, View::kAllQs, true},
    MenuEntry{"MnuComm", "Test:     Com - Port", 'C', MenuAction::kShow, View::kAllCom, true},
    MenuEntry{"MnuMemory", "Test:     Memory", 'M', MenuAction::kShow, View::kAllMem, true},
    MenuEntry{"MnuOutputs", "Test:     Outputs", 'O', MenuAction::kShow, View::kSpTavHs, true},
    MenuEntry{"MnuWdog", "Test:     Watchdog", 'W', MenuAction::kShow, View::kAllWdog, true},
    MenuEntry{"MnuVariables", "Show:   Variables", 'V', MenuAction::kShow, View::kAllRam, true},
    MenuEntry{"MnuRegisters", "Show:   Registers", 'R', MenuAction::kShow, View::kAllRegs, true},
    MenuEntry{"MnuTerminal", "Terminal", 'i', MenuAction::kShow, View::kAllTerm, true, true},
    MenuEntry{"MnuHelp", "Help   ", 'H', MenuAction::kHelp},
    MenuEntry{"MnuKeys", "Keys   ", 'K', MenuAction::kKeys, View::kTavKeys, false, false,
              "Tasten   ", 'a'},
    MenuEntry{"MnuExit", "Exit", 'x', MenuAction::kExit},
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_MAIN_MENU_H_
