#include "work/controller_switch.h"

#include "dialogs/checks.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/run_state.h"
#include "work/work_texts.h"

namespace tavrel {
namespace {

constexpr const char* kCheckTitle = "Check settings:";

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

[[nodiscard]] bool WriteTo(Link& link, const UnitRecord& unit, const char* letter,
                           std::int16_t value) {
  return IsGood(Write(link, {unit.UnitInet, letter, unit.UnitCtrl}, value));
}

// The actual value of the controller; empty if it does not answer, or has none now.
std::optional<std::int16_t> ReadActual(Link& link, const UnitRecord& unit) {
  const Reading actual = Read(link, Register{unit.UnitInet, reg::kPresentValue, unit.UnitCtrl});
  return actual.WordOr(kNoData) == kNoData ? std::nullopt : actual.Word();
}

std::optional<Notice> WhyNoRamp(const UnitRecord& unit) {
  if (unit.UnitIncrement < 1) {
    return Notice{"increment ?", kCheckTitle};
  }
  if (unit.UnitFinal < 1) {
    return Notice{"final value ?", kCheckTitle};
  }
  return std::nullopt;
}

SwitchOutcome HalfDone(const BothLanguages& text, Language language) {
  return {true, Notice{text.Text(language), work_text::kController.Text(language)}};
}

SwitchOutcome StartRamp(Link& link, const UnitRecord& unit, Language language) {
  if (!ReadActual(link, unit) ||
      !WriteTo(link, unit, reg::kControllerState, controller::kDynamic)) {
    return {false, NotConnectedNotice()};
  }
  const std::optional<std::int16_t> actual = ReadActual(link, unit);
  if (!actual) {
    return HalfDone(work_text::kOldSetpoint, language);
  }
  if (!WriteTo(link, unit, reg::kSetpoint, *actual)) {
    return HalfDone(work_text::kUnsureSetpoint, language);
  }
  return {true, std::nullopt};
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

SwitchOutcome SwitchController(Link& link, const UnitRecord& unit, CtrlButton button,
                               Language language) {
  if (button == CtrlButton::kDynamic) {
    const std::optional<Notice> objection = WhyNoRamp(unit);
    return objection ? SwitchOutcome{false, objection} : StartRamp(link, unit, language);
  }
  if (!WriteTo(link, unit, reg::kControllerState, StateOf(button))) {
    return {false, NotConnectedNotice()};
  }
  return {true, std::nullopt};
}

}  // namespace tavrel
