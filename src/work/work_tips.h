#ifndef TAVREL_WORK_WORK_TIPS_H_
#define TAVREL_WORK_WORK_TIPS_H_

#include <array>

#include "base/tool_tips.h"

namespace tavrel {

// A control of a control array stands with its index behind the name.
inline constexpr std::array kWorksheetTips = {
    ToolTip{"cmd_Rec_1", {" start/resume data acquisition ", " Datenerfassung = ein "}},
    ToolTip{"cmd_Rec_2", {" stop data acquisition ", " Datenerfassung = aus "}},
    ToolTip{"cmd_New", {" create a new data-file ", " neue Datei (Datenerfassung) "}},
    ToolTip{"cmd_SetRec",
            {" properties of data acquisition ", " Eigenschaften der Datenerfassung "}},
    ToolTip{"cmd_setCtrl", {" properties of controller  ", " Eigenschaften des Reglers "}},
    ToolTip{"cmd_ProgOn", {" program ", " Regler = Programm gesteuert "}},
    ToolTip{"cmd_ProgOff", {" terminate controller-program ", " Regler-Programm beenden "}},
    ToolTip{"cmd_Ctrl_0", {" controller = isothermal ", " Regler = isotherm "}},
    ToolTip{"cmd_Ctrl_1",
            {" controller = dynamic (linear ramp)  ", " Regler = dynamisch (Rampe) "}},
    ToolTip{"cmd_Ctrl_2", {" controller = off ", " Regler = aus "}},
    ToolTip{"cmd_Coord", {" coordinates ", " Koordinaten für die Graphik "}},
    ToolTip{"CmdOK", {" show the graph  ", " Graphik anzeigen  (Eingabe-Taste) "}},
    ToolTip{"cmdExit", {" exit  (esc-key) ", " Ende  (Esc-Taste) "}},
    ToolTip{"Lbl_rec", {" time recorded ", " Aufzeichnungsdauer "}},
    ToolTip{"Lbl_sampl", {" sampling time ", " Abtastzeit "}},
    ToolTip{"Lbl_setpoint", {" setpoint ", " Sollwert "}},
    ToolTip{"Lbl_Step", {" number of program-step  ", " Programmschritt "}},
    ToolTip{"Lbl_Time",
            {" time until next program-step ", " Zeit bis zum nächsten Programmschritt "}},
};

}  // namespace tavrel

#endif  // TAVREL_WORK_WORK_TIPS_H_
