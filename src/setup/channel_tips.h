#ifndef TAVREL_SETUP_CHANNEL_TIPS_H_
#define TAVREL_SETUP_CHANNEL_TIPS_H_

#include <array>

#include "base/tool_tips.h"

namespace tavrel {

inline constexpr std::array kChannelTips = {
    ToolTip{"CmdOK", {" ok  (enter-key)  ", " OK  (Eingabe-Taste) "}},
    ToolTip{"ComIcon", {" no connection ... ", " keine Verbindung "}},
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_CHANNEL_TIPS_H_
