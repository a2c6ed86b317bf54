#include "work/controller_switch.h"

#include "link/registers.h"

namespace tavrel {
namespace {

constexpr const char* kTitle = "Check settings:";

std::int16_t StateOf(CtrlButton button) {
  switch (button) {
    case CtrlButton::kIsotherm:
      return controller::kIsotherm;
    case CtrlButton::kDynamic:
      return controller::kDynamic;
    default:
      return controller::kOff;
  }
}

// All arguments are set for each exchange: the cycle and other forms share them.
void Address(Link& link, const UnitRecord& unit, const char* letter) {
  link.ComInet = unit.UnitInet;
  link.ComLetter = letter;
  link.ComIndex = unit.UnitCtrl;
}

bool Write(Link& link, const UnitRecord& unit, const char* letter, std::int16_t value) {
  Address(link, unit, letter);
  link.ComValue = value;
  link.WriteReg();
  return link.IsGood(unit.UnitInet);
}

bool HasRamp(Dialogs& dialogs, const UnitRecord& unit) {
  if (unit.UnitIncrement < 1) {
    dialogs.Message({"increment ?", kTitle, BoxIcon::kWarning});
    return false;
  }
  if (unit.UnitFinal < 1) {
    dialogs.Message({"final value ?", kTitle, BoxIcon::kWarning});
    return false;
  }
  return true;
}

bool StartRamp(Link& link, const UnitRecord& unit) {
  if (!Write(link, unit, reg::kControllerState, controller::kDynamic)) {
    return false;
  }
  Address(link, unit, reg::kPresentValue);
  link.ReadReg();
  if (!link.IsGood(unit.UnitInet)) {
    return false;
  }
  return Write(link, unit, reg::kSetpoint, link.ComValue);
}

}  // namespace

CtrlButton CtrlButtonOf(std::int16_t controller_state) {
  switch (controller_state) {
    case controller::kOff:
      return CtrlButton::kOff;
    case controller::kIsotherm:
      return CtrlButton::kIsotherm;
    case controller::kDynamic:
    case controller::kDynamicFalling:
      return CtrlButton::kDynamic;
    default:
      return CtrlButton::kNone;
  }
}

bool SwitchController(Link& link, Dialogs& dialogs, const UnitRecord& unit, CtrlButton button) {
  if (button == CtrlButton::kDynamic) {
    return HasRamp(dialogs, unit) && StartRamp(link, unit);
  }
  return Write(link, unit, reg::kControllerState, StateOf(button));
}

}  // namespace tavrel
