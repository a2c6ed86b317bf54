#ifndef TAVREL_WORK_CONTROLLER_SWITCH_H_
#define TAVREL_WORK_CONTROLLER_SWITCH_H_

#include "files/unit_record.h"
#include "link/link.h"
#include "platform/dialogs.h"

namespace tavrel {

// The buttons cmd_Ctrl, by index, and none of them.
enum class CtrlButton : int { kNone = -1, kIsotherm = 0, kDynamic = 1, kOff = 2 };

// Which of them stands for what register Z says of the controller. A ramp is a ramp whether it
// rises or falls; what no button stands for shows none.
[[nodiscard]] CtrlButton CtrlButtonOf(std::int16_t controller_state);

// Switches the controller of `unit` to what `button` stands for. A ramp needs an increment and a
// final value, and starts from the actual value: a setpoint of before would make it jump. A box
// tells what is missing, and nothing is sent. False: it was not switched, or the instrument did
// not acknowledge all of it; the exchanges stop at the first that fails.
[[nodiscard]] bool SwitchController(Link& link, Dialogs& dialogs, const UnitRecord& unit,
                                    CtrlButton button);

}  // namespace tavrel

#endif  // TAVREL_WORK_CONTROLLER_SWITCH_H_
