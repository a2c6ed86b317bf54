#include "main/main_cycle.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "main/main_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr float kFirstFlush = 100;        // seconds behind midnight
constexpr double kMidnightGuard = 86300;  // seconds since midnight; from here on the cycle waits
constexpr float kSecondsPerDay = 86400;
constexpr double kLongestStand = kSecondsPerDay - kMidnightGuard + 60;  // with a slow first tick

// Screens that make a step with each change of their running light.
bool HasTrigger(View view) {
  switch (view) {
    case View::kAllCom:
    case View::kAllMem:
    case View::kAllQs:
    case View::kAllRam:
    case View::kAllRegs:
    case View::kSpTavHs:
    case View::kAllWdog:
      return true;
    default:
      return false;
  }
}

}  // namespace

void MainCycle::Tick() {
  if (!enabled_ || in_tick_) {
    return;
  }
  if (parts_.state.ActiveView == View::kTavNum) {
    StepNumbering();
    return;
  }
  in_tick_ = true;
  RunTick();
  in_tick_ = false;
  parts_.messages.ShowKept();
  parts_.simulation.AskIfDue();
  GoOnIfPressed();
}

// The line belongs to the screen that assigns numbers: nothing else of the cycle runs beneath it.
void MainCycle::StepNumbering() {
  in_tick_ = true;
  if (parts_.link.IsSettled()) {
    const Messages::Deferral deferral(parts_.messages);
    StepScreenInFront();
  }
  in_tick_ = false;
  parts_.messages.ShowKept();
}

void MainCycle::GoOnIfPressed() {
  if (parts_.engine.IsPressed()) {
    parts_.events.WhenIdle([this] { PumpBetweenTicks(); });
  }
}

// What takes a tick for itself, or the line, keeps the time between two ticks as well. Behind an
// exchange that failed one of the next ticks goes on, once the line has settled.
void MainCycle::PumpBetweenTicks() {
  const View view = parts_.state.ActiveView;
  const bool is_drawing = view == View::kTavGraph && !parts_.state.GraphIdle;
  const bool is_taken = in_tick_ || view == View::kTavNum || is_drawing;
  if (!enabled_ || is_taken || StandsAtMidnight() || !parts_.link.IsSettled()) {
    return;
  }
  in_tick_ = true;
  {
    const KeepLinkArguments keep(parts_.link);
    parts_.engine.PumpOnce();
  }
  in_tick_ = false;
  parts_.messages.ShowKept();
  GoOnIfPressed();
}

void MainCycle::RunTick() {
  const KeepLinkArguments keep(parts_.link);
  const Messages::Deferral deferral(parts_.messages);
  if (StandsAtMidnight()) {
    ServeAtMidnight();
    return;
  }
  if (!parts_.link.IsSettled()) {
    return;
  }
  const bool is_free = ServeScreen();
  StepServiceScreen();
  // Behind an exchange of the screen that failed the rest waits for one of the next ticks.
  if (is_free && parts_.link.IsSettled()) {
    DoFreeWork();
  }
  parts_.sheet.RefreshInfo();
}

// Deadlines are seconds of one day. In the last minutes of the day the cycle stands still, so
// that none is set beyond its end; once the clock has wrapped all are armed anew.
bool MainCycle::StandsAtMidnight() {
  const Moment now{parts_.clock.Timer(), parts_.clock.Elapsed()};
  const Moment before = last_tick_.value_or(now);
  const bool stands = now.timer > kMidnightGuard;
  last_tick_ = stands ? before : now;
  const std::chrono::duration<double> away = now.elapsed - before.elapsed;
  const auto midnights = std::lround((before.timer + away.count() - now.timer) / kSecondsPerDay);
  if (!stands && midnights > 0) {
    ArmAfterMidnight(static_cast<float>(midnights), away.count() > kLongestStand);
  }
  return stands;
}

// Minutes that the machine has slept, or that a form had the line to itself, are due to the
// programs as they are by day.
void MainCycle::ArmAfterMidnight(float midnights, bool was_away) {
  Deadline& minute = parts_.state.TickMinute;
  const float due = minute.At - midnights * kSecondsPerDay;
  ArmAll();
  if (was_away) {
    minute.At = due;
  }
}

// A controller is off while its wait bar runs: that must not take until the next day. The service
// screens count elapsed time, and a test that one of them runs must not stand still with an output
// switched on.
void MainCycle::ServeAtMidnight() {
  if (parts_.state.ActiveView == View::kTavWait) {
    static_cast<void>(ServeScreen());
  }
  if (parts_.link.IsSettled()) {
    StepServiceScreen();
  }
}

void MainCycle::ArmAll() {
  RunState& state = parts_.state;
  state.TickTen.SetIn(kWakeSeconds, parts_.clock);
  state.TickMinute.SetIn(kMinuteSeconds, parts_.clock);
  state.TickRefresh.SetIn(kRefreshSeconds, parts_.clock);
  state.TickFlush.SetIn(kFirstFlush, parts_.clock);
  state.TickWait.SetIn(kWaitBarSeconds, parts_.clock);
  state.TickBlink = {};
}

// True if the screen in front leaves the tick free.
bool MainCycle::ServeScreen() {
  const RunState& state = parts_.state;
  switch (state.ActiveView) {
    case View::kMainSheet:
      if (!state.TickRefresh.IsPast(parts_.clock)) {
        return true;
      }
      parts_.sheet.RefreshRow();
      return false;
    case View::kTavWork:
      if (!state.TickRefresh.IsPast(parts_.clock) || !handlers_.refresh_worksheet) {
        return true;
      }
      handlers_.refresh_worksheet();
      return state.SelSlot == kViewedFile;  // a viewed file needs no line
    case View::kTavGraph:
      return state.GraphIdle;
    case View::kTavWait:
      if (!state.TickWait.IsPast(parts_.clock) || !handlers_.advance_wait_bar) {
        return true;
      }
      handlers_.advance_wait_bar();
      return false;
    default:
      return true;
  }
}

void MainCycle::StepServiceScreen() {
  const RunState& state = parts_.state;
  if (HasTrigger(state.ActiveView) && parts_.clock.Elapsed() >= state.TickBlink) {
    StepScreenInFront();
  }
}

void MainCycle::StepScreenInFront() {
  RunState& state = parts_.state;
  state.Trigger = !state.Trigger;
  parts_.stepped.Step(state.ActiveView);
}

void MainCycle::DoFreeWork() {
  RunState& state = parts_.state;
  if (state.TickTen.IsPast(parts_.clock)) {
    state.TickTen.SetIn(kWakeSeconds, parts_.clock);
    parts_.link.ReopenIfLost();
    parts_.engine.TenSecondTick();
    parts_.attachment.RetryWaiting();
  }
  if (!handlers_.read_back || !handlers_.read_back()) {
    parts_.engine.PumpOnce();
  }
  if (next_program_ > kSlots) {
    BeginMinute();
  }
  StepPrograms();
  if (state.TickFlush.IsPast(parts_.clock)) {
    state.TickFlush.SetIn(kFlushSeconds, parts_.clock);
    parts_.engine.FlushFiles();
  }
}

void MainCycle::BeginMinute() {
  RunState& state = parts_.state;
  if (!state.TickMinute.IsPast(parts_.clock)) {
    is_catching_up_ = false;
    return;
  }
  TellCatchUp();
  state.TickMinute.At += kMinuteSeconds;
  next_program_ = 1;
}

// After the machine has slept, or the cycle has stood still for a form, the programs make up for
// the minutes that they missed. The user is told once how many these are.
void MainCycle::TellCatchUp() {
  const RunState& state = parts_.state;
  const auto is_running = [](bool runs) { return runs; };
  const int minutes = static_cast<int>((Timer() - state.TickMinute.At) / kMinuteSeconds);
  if (is_catching_up_ || minutes < 1 ||
      std::none_of(state.ProgRunning.begin(), state.ProgRunning.end(), is_running)) {
    return;
  }
  is_catching_up_ = true;
  parts_.engine.Controllers().CaughtUp(minutes);
  const BothLanguages& text =
      minutes == 1 ? main_text::kStoodStillMinute : main_text::kStoodStillMinutes;
  const Language language = UserLanguage(state);
  parts_.messages.Report(
      0, {text.Text(language, {std::to_string(minutes)}), main_text::kProgramTitle.Text(language)});
}

// Only one step that uses the line: a ramp takes five exchanges. Behind one that failed the others
// wait for one of the next ticks, instead of holding up the user interface until the line has
// settled.
void MainCycle::StepPrograms() {
  const auto before = parts_.link.Exchanges();
  while (next_program_ <= kSlots && parts_.link.IsSettled() && parts_.link.Exchanges() == before) {
    if (handlers_.step_program) {
      handlers_.step_program(next_program_);
    }
    ++next_program_;
  }
}

}  // namespace tavrel
