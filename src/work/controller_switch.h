#ifndef TAVREL_WORK_CONTROLLER_SWITCH_H_
#define TAVREL_WORK_CONTROLLER_SWITCH_H_

#include <optional>

#include "base/language.h"
#include "link/link.h"
#include "platform/dialogs.h"
#include "state/unit_record.h"

namespace tavrel {

// The buttons cmd_Ctrl, by index, and none of them.
enum class CtrlButton : int { kNone = -1, kIsotherm = 0, kDynamic = 1, kOff = 2 };

// Which of them stands for what register Z says of the controller. A ramp is a ramp whether it
// rises or falls; what no button stands for shows none.
[[nodiscard]] CtrlButton CtrlButtonOf(std::int16_t controller_state);

// What became of a wish to switch a controller.
struct SwitchOutcome {
  bool IsAcknowledged = false;      // the controller has the new state
  std::optional<Notice> Objection;  // what is missing, or was not acknowledged, for the user
};

// Switches the controller of `unit` to what `button` stands for. A ramp needs an increment and a
// final value, and starts from the actual value: a setpoint of before would make it jump. So the
// actual value is read beforehand, too, and without one nothing is sent. The exchanges stop at
// the first that fails; a controller that is on a ramp then, but has kept its setpoint, is both
// acknowledged and objected to.
[[nodiscard]] SwitchOutcome SwitchController(Link& link, const UnitRecord& unit, CtrlButton button,
                                             Language language);

}  // namespace tavrel

#endif  // TAVREL_WORK_CONTROLLER_SWITCH_H_
