#ifndef TAVREL_WORK_PROGRAM_TIPS_H_
#define TAVREL_WORK_PROGRAM_TIPS_H_

#include <array>

#include "base/tool_tips.h"

namespace tavrel {

// The tool tips of the program editor.
inline constexpr std::array kProgramTips = {
    ToolTip{"cmdNew", {" new setpoint-program ", " neues Programm "}},
    ToolTip{"cmdOpen", {" open a setpoint-program ", " Programm öffnen "}},
    ToolTip{"cmdSave", {" save setpoint-program as ... ", " Programm sichern "}},
};

}  // namespace tavrel

#endif  // TAVREL_WORK_PROGRAM_TIPS_H_
