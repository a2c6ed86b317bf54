#ifndef TAVREL_BASE_TOOL_TIPS_H_
#define TAVREL_BASE_TOOL_TIPS_H_

#include <array>
#include <string_view>

#include "base/language.h"

namespace tavrel {

// The tool tip of a control, by the control's name; in a table of rows it serves each of them.
struct ToolTip {
  std::string_view Control;
  BothLanguages Text;
};

inline constexpr std::array kMainSheetTips = {
    ToolTip{"tx_Des", {" designation of apparatus ", " Bezeichnung der Apparatur "}},
    ToolTip{"lb_TavNo", {" select this Tavrel ", " dieses Tavrel auswählen "}},
    ToolTip{"lb_File", {" Tavrel-file ", " Tavrel-Datei "}},
    ToolTip{"lb_Rec", {" time recorded ", " Aufzeichnungsdauer "}},
    ToolTip{"lb_Rstat",
            {" actual condition of recording ", " aktueller Zustand der Aufzeichnung "}},
    ToolTip{"lb_Ref", {" actual value of reference ", " aktueller Referenzwert "}},
    ToolTip{"lb_Ctrl", {" actual value of controller ", " aktueller Wert des Reglers "}},
    ToolTip{"lb_Cstat", {" actual condition of controller ", " aktueller Zustand des Reglers "}},
    ToolTip{"cmd_Work", {" show Worksheet/Graph ", " Arbeitsblatt/Graphik anzeigen "}},
    ToolTip{"imgTavSel", {" Tavrel selected ", " dieses Tavrel ist ausgewählt "}},
    ToolTip{"cmd_Open", {" open a Tavrel-file ", " Tavrel-Datei öffnen "}},
};

inline constexpr std::array kSettingsTips = {
    ToolTip{"cboCom", {" (----) = Tavrel will be simulated ", " (----) = Tavrel wird simuliert "}},
    ToolTip{"cboDia", {" default = 'no' ", " empfohlen = 'nein' "}},
    ToolTip{"cboHelp", {" select ... ", " Sprache für Hilfe "}},
    ToolTip{"cboMode", {" default = 'direct' ", " Normaleinstellung = 'direct' "}},
    ToolTip{"CboWidth", {" line width (default = 2) ", " Graphik-Linienstärke  (Protokolle) "}},
    ToolTip{"CmdOK",
            {" save new settings  (enter-key) ", " Einstellungen speichern  (Eingabe-Taste) "}},
    ToolTip{"CmdFont", {" font, size ", " Schriftart und Grösse  (Protokolle) "}},
    ToolTip{"cmdPath", {" default path for Tavrel-files ", " Pfad für Tavrel-Dateien "}},
    ToolTip{"Txt_Plant", {" any text ... ", " beliebiger Text ... "}},
    ToolTip{"Txt_Lab", {" any text ... ", " beliebiger Text ... "}},
};

}  // namespace tavrel

#endif  // TAVREL_BASE_TOOL_TIPS_H_
