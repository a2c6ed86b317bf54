#ifndef TAVREL_GRAPH_GRAPH_TIPS_H_
#define TAVREL_GRAPH_GRAPH_TIPS_H_

#include <array>

#include "base/tool_tips.h"

namespace tavrel {

// A control of a control array stands with its index behind the name.
inline constexpr std::array kGraphTips = {
    ToolTip{"CboXY", {" change the view ", " Darstellung ändern ... "}},
    ToolTip{"PbPrint", {" print the graph ", " Graphik drucken "}},
    ToolTip{"PbSave", {" create a sub-file ", " Subdatei erstellen "}},
    ToolTip{"PbCopy", {" copy graph to the clipboard ", " Graphik in Zwischenablage kopieren "}},
    ToolTip{"PbEval_0", {" measure a distance ", " Differenz messen "}},
    ToolTip{"PbEval_1", {" integrate ", " Fläche berechnen "}},
    ToolTip{"PbMark_0", {" delete last mark  ", " letzte Eingabe löschen "}},
    ToolTip{"PbMark_1", {" add x,y - coordinates ", " Koordinatenwerte hinzufügen "}},
    ToolTip{"PbMark_2", {" add a comment ", " Kommentar hinzufügen "}},
    ToolTip{"cmdOver", {" show the overview ", " Übersicht anzeigen  (Eingabe-Taste) "}},
    ToolTip{"cmdPart", {" show the part view ", " Ausschnitt anzeigen  (Eingabe-Taste) "}},
    ToolTip{"cmdExit", {" exit  (esc-key) ", " Ende  (Esc-Taste) "}},
    ToolTip{"lblRes", {" resolution = ... ", " Auflösung = ... "}},
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_TIPS_H_
