#ifndef TAVREL_SETUP_INSTALLATION_TIPS_H_
#define TAVREL_SETUP_INSTALLATION_TIPS_H_

#include <array>

#include "base/numbered.h"
#include "base/tool_tips.h"

namespace tavrel {

inline constexpr const char* kInstallationCaption = " Installation  of  tests";

inline constexpr std::array kInstallationTips = {
    ToolTip{"cmd_Input_0", {" remove input  ", " Eingang löschen "}},
    ToolTip{"cmd_Input_1", {" controller input ", " Regler-Eingang "}},
    ToolTip{"cmd_Input_2", {" reference input ", " Referenz-Eingang "}},
    ToolTip{"cmd_Input_3", {" measuring input ", " allgemeiner Messeingang "}},
    ToolTip{"cmd_TavNo_0", {" clear this number ", " Nummer löschen "}},
    ToolTip{"CmdOK", {" OK  (enter-key) ", " Installation sichern "}},
};

// The buttons of picInput, by the code of the role.
inline constexpr Numbered<BothLanguages, 0, 3> kInputButtons = {
    {BothLanguages{"remove", "löschen"}, BothLanguages{"C   controller", "C   Regler"},
     BothLanguages{"R   reference", "R   Referenz"},
     BothLanguages{"M   measuring input", "M   Messeingang"}}};

inline constexpr BothLanguages kClearButton = {"clear", "löschen"};

// Above the columns of the inputs.
inline constexpr const char* kControllersHead = "¦       controllers       ¦";
inline constexpr const char* kInputsHead = "general purpose inputs";

}  // namespace tavrel

#endif  // TAVREL_SETUP_INSTALLATION_TIPS_H_
