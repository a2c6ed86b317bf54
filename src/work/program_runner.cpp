#include "work/program_runner.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/element.h"
#include "base/number.h"
#include "base/units.h"
#include "dialogs/checks.h"
#include "dialogs/program_file.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "platform/file_system.h"
#include "state/box_titles.h"
#include "state/deadline.h"

namespace tavrel {
namespace {

// What comes next in a program and when.
constexpr BothLanguages kStepOf{"step %1 of %2, ", "Schritt %1 von %2, "};
constexpr BothLanguages kEndAt{"end at %1", "Ende um %1"};
constexpr BothLanguages kOffAt{"next off at %1", "dann aus um %1"};
constexpr BothLanguages kSetpointAt{"next %1 °C at %2", "dann %1 °C um %2"};

std::optional<Notice> WhyNotToRun(const std::string& name, const ProgramFile& file) {
  const std::int64_t steps = file.Records - 1;
  if (!file.Problem.empty()) {
    return Notice{name + ": " + file.Problem, kReadTitle};
  }
  if (steps < 1) {
    return Notice{name + "  is damaged !", kReadTitle};
  }
  if (steps > kMostSteps) {
    return Notice{name + "  is too big !", kReadTitle};
  }
  const std::optional<std::string> finding = StartFinding(file.Steps);
  return finding ? std::optional(Notice{*finding, kProgramCheckTitle}) : std::nullopt;
}

}  // namespace

ProgramStart ProgramRunner::Start(int slot) {
  RunState& state = parts_.state;
  if (!IsSlot(slot) || state.SlotFile[slot].empty()) {
    return ProgramStart::kNotStarted;
  }
  if (state.ProgRunning[slot]) {
    parts_.events.Beep();
    return ProgramStart::kRunsAlready;
  }
  if (!CheckConnected(parts_.dialogs, parts_.link, state.Unit[slot].UnitInet)) {
    return ProgramStart::kNotStarted;
  }
  // A name without a point can only be a rest of an older file.
  if (state.Unit[slot].UnitProgName.Get().find('.') == std::string::npos) {
    state.Unit[slot].UnitProgName.Set("");
  }
  return ChooseProgramFile(state, parts_.dialogs) ? Load(slot) : ProgramStart::kNotStarted;
}

ProgramStart ProgramRunner::Load(int slot) {
  const SettingsValues& settings = parts_.state.Settings;
  ProgramFile file = ReadProgramFile(JoinPath(settings.ProgPath, settings.ProgFile));
  const std::optional<Notice> objection = WhyNotToRun(settings.ProgFile, file);
  if (objection) {
    parts_.dialogs.Message(*objection);
    return ProgramStart::kNotStarted;
  }
  Begin(slot, std::move(file.Steps));
  return ProgramStart::kStarted;
}

void ProgramRunner::Begin(int slot, std::vector<ProgramStep> steps) {
  RunState& state = parts_.state;
  UnitRecord& unit = state.Unit[slot];
  ProgTable[slot] = {std::move(steps), unit.UnitInet, unit.UnitCtrl};
  unit.UnitProgName.Set(state.Settings.ProgFile);
  unit.UnitProgWait = 0;
  unit.UnitProgStep = 0;
  state.ProgRunning[slot] = true;
  state.SlotDirty[slot] = true;
  state.TickMinute.SetIn(0, parts_.clock);
}

bool ProgramRunner::Stop(int slot) {
  if (!IsSlot(slot) || !parts_.state.ProgRunning[slot]) {
    return true;
  }
  if (!parts_.dialogs.AskOk({"terminate program", " ", BoxIcon::kQuestion})) {
    return !parts_.state.ProgRunning[slot];  // it may have ended beneath the box
  }
  parts_.state.ProgRunning[slot] = false;
  return true;
}

int ProgramRunner::ProgSteps(int slot) const {
  return IsSlot(slot) ? static_cast<int>(ProgTable[slot].steps.size()) : 0;
}

std::string ProgramRunner::ProgressText(int slot, Language language) const {
  if (!IsSlot(slot) || !parts_.state.ProgRunning[slot] ||
      parts_.state.Unit[slot].UnitProgStep < 1) {
    return "";
  }
  const int done = parts_.state.Unit[slot].UnitProgStep;
  const std::string text =
      kStepOf.Text(language, {std::to_string(done), std::to_string(ProgSteps(slot))});
  const std::string at = TimeOfNextStep(slot);
  const ProgramStep* next = NextStep(slot);
  if (next == nullptr) {
    return text + kEndAt.Text(language, {at});
  }
  if (next->Status <= 0) {
    return text + kOffAt.Text(language, {at});
  }
  const std::string degrees = ShortestNumber(next->Setpoint / kStepsPerDegree);
  return text + kSetpointAt.Text(language, {degrees, at});
}

// On the wall clock: the rest of the minute that runs, and whole minutes behind it.
std::string ProgramRunner::TimeOfNextStep(int slot) const {
  const double rest = parts_.state.TickMinute.At - parts_.clock.Timer();
  const int minutes = std::max<int>(parts_.state.Unit[slot].UnitProgWait, 1) - 1;
  const WallTime now = parts_.clock.Now();
  const double second = std::clamp(rest, 0.0, static_cast<double>(kMinuteSeconds)) + now.Second;
  const int at = now.Hour * 60 + now.Minute + minutes + static_cast<int>(second / kMinuteSeconds);
  constexpr int kDay = 24 * 60;
  const auto two_digits = [](int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  const std::string time = two_digits(at % kDay / 60) + ":" + two_digits(at % 60);
  return at < kDay ? time : time + " (+" + std::to_string(at / kDay) + " d)";
}

const ProgramStep* ProgramRunner::NextStep(int slot) const {
  const UnitRecord& unit = parts_.state.Unit[slot];
  const Loaded& program = ProgTable[slot];
  const bool is_meant = program.inet == unit.UnitInet && program.ctrl == unit.UnitCtrl;
  return is_meant ? ElementAt(program.steps, unit.UnitProgStep) : nullptr;
}

bool ProgramRunner::MayStep(int slot) const {
  const RunState& state = parts_.state;
  if (!IsSlot(slot) || !state.ProgRunning[slot] || !state.SlotFileNo[slot].IsOpen()) {
    return false;
  }
  const UnitRecord& unit = state.Unit[slot];
  return parts_.link.IsGood(unit.UnitInet) && !state.IsHeld(unit.UnitInet, unit.UnitCtrl);
}

void ProgramRunner::StepProgram(int slot) {
  if (!MayStep(slot)) {
    return;
  }
  UnitRecord& unit = parts_.state.Unit[slot];
  if (unit.UnitProgWait > 1) {
    --unit.UnitProgWait;
    return;
  }
  unit.UnitProgWait = 0;  // also where a file or an older header holds a time below 0
  const ProgramStep* step = NextStep(slot);
  if (step == nullptr) {
    parts_.state.ProgRunning[slot] = false;
    return;
  }
  const ControllerJournal::Actor actor(parts_.engine.Controllers(), "program");
  const int done = unit.UnitProgStep;
  const ProgramStep sent = *step;  // the program may be replaced while the answers are awaited
  if (!SendStep(slot, sent)) {
    unit.UnitProgWait = 1;
    return;
  }
  unit.UnitProgStep = static_cast<std::int16_t>(done + 1);
  unit.UnitProgWait = sent.Time;
  parts_.state.SlotDirty[slot] = true;
  // The program has switched the controller: an older order to switch it off is void.
  parts_.engine.Orders().Drop(unit.UnitInet, unit.UnitCtrl);
}

bool ProgramRunner::SendStep(int slot, const ProgramStep& step) {
  const UnitRecord& unit = parts_.state.Unit[slot];
  if (step.Status >= controller::kDynamic) {
    return SendRamp(unit, step);
  }
  return Send(unit, reg::kSetpoint, step.Setpoint) &&
         Send(unit, reg::kControllerState, step.Status);
}

// The ramp starts at the actual value, so that it does not begin with a jump. An instrument that
// has none now is asked again a minute later.
bool ProgramRunner::SendRamp(const UnitRecord& unit, const ProgramStep& step) {
  if (!Send(unit, reg::kFinalValue, step.Setpoint)) {
    return false;
  }
  const std::int16_t actual =
      Read(parts_.link, Register{unit.UnitInet, reg::kPresentValue, unit.UnitCtrl}).WordOr(kNoData);
  return actual != kNoData && Send(unit, reg::kSetpoint, actual) &&
         Send(unit, reg::kIncrement, step.Increment) &&
         Send(unit, reg::kControllerState, step.Status);
}

bool ProgramRunner::Send(const UnitRecord& unit, const char* letter, std::int16_t value) {
  return IsGood(Write(parts_.link, {unit.UnitInet, letter, unit.UnitCtrl}, value));
}

}  // namespace tavrel
