#ifndef TAVREL_DIALOGS_FILE_TIPS_H_
#define TAVREL_DIALOGS_FILE_TIPS_H_

#include <array>

#include "base/tool_tips.h"

namespace tavrel {

inline constexpr std::array kOpenFileTips = {
    ToolTip{"cmdOpen", {" open file   (enter-key) ", " Datei öffnen  (Eingabe-Taste) "}},
    ToolTip{"cmdBack", {" cancel   (esc-key) ", " Abbrechen  (Esc-Taste) "}},
    ToolTip{"cmdNew", {" ok   (enter-key) ", " OK  (Eingabe-Taste) "}},
    ToolTip{"cmdCopy", {" copy file(s) ", " Datei(en) kopieren "}},
    ToolTip{"cmdVerify",
            {" hold the chosen files against their journals   (all: Ctrl+A in the list) ",
             " die gewählten Dateien gegen ihre Journale prüfen   (alle: Strg+A in der Liste) "}},
    ToolTip{"cmdFile", {" sort by filename ", " nach Dateinamen sortieren "}},
    ToolTip{"cmdProduct", {" sort by contents ", " nach Inhalt sortieren "}},
};

inline constexpr std::array kCopyFilesTips = {
    ToolTip{"cmdCopy", {" Copy file(s)  ", " Datei(en) kopieren "}},
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FILE_TIPS_H_
