#include "frame/main_cycle.h"

namespace tavrel {
namespace {

constexpr double kMidnightGuard = 86300;  // seconds since midnight; from here on the cycle waits

// Screens whose next step hangs on the running light.
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
    parts_.state.Trigger = !parts_.state.Trigger;
    return;
  }
  in_tick_ = true;
  RunTick();
  in_tick_ = false;
  parts_.messages.ShowKept();
  parts_.simulation.AskIfDue();
  GoOnIfPressed();
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
  if (StandsAtMidnight() || !parts_.link.IsSettled()) {
    return;
  }
  const bool is_free = ServeScreen();
  BlinkTrigger();
  if (is_free) {
    DoFreeWork();
  }
  parts_.sheet.RefreshInfo();
}

// Deadlines are seconds of one day. In the last minutes of the day the cycle stands still, so
// that none is set beyond its end; once the clock has wrapped all are armed anew. The same is
// done whenever the clock is found lower than before: the machine slept over midnight.
bool MainCycle::StandsAtMidnight() {
  const double timer = parts_.clock.Timer();
  const bool wrapped = timer < last_timer_;
  last_timer_ = timer;
  if (timer > kMidnightGuard) {
    return true;
  }
  if (wrapped) {
    ArmAll();
  }
  return false;
}

void MainCycle::ArmAll() {
  RunState& state = parts_.state;
  const float now = Timer();
  state.TickTen = now + 10;
  state.TickMinute = now + 60;
  state.TickRefresh = now + 5;
  state.TickFlush = now + 100;
  state.TickWait = now + 1;
  state.TickBlink = 0;
}

// True if the screen in front leaves the tick free.
bool MainCycle::ServeScreen() {
  const RunState& state = parts_.state;
  switch (state.ActiveView) {
    case View::kMainSheet:
      if (!IsPast(state.TickRefresh)) {
        return true;
      }
      parts_.sheet.RefreshRow();
      return false;
    case View::kTavWork:
      if (!IsPast(state.TickRefresh) || !guests_.refresh_worksheet) {
        return true;
      }
      guests_.refresh_worksheet();
      return state.SelSlot == kViewedFile;  // a viewed file needs no line
    case View::kTavGraph:
      return state.GraphIdle;
    case View::kTavWait:
      if (!IsPast(state.TickWait) || !guests_.advance_wait_bar) {
        return true;
      }
      guests_.advance_wait_bar();
      return false;
    default:
      return true;
  }
}

void MainCycle::BlinkTrigger() {
  RunState& state = parts_.state;
  if (HasTrigger(state.ActiveView) && IsPast(state.TickBlink)) {
    state.Trigger = !state.Trigger;
  }
}

void MainCycle::DoFreeWork() {
  RunState& state = parts_.state;
  if (IsPast(state.TickTen)) {
    state.TickTen = Timer() + 10;
    parts_.link.ReopenIfLost();
    parts_.engine.TenSecondTick();
    parts_.attachment.RetryWaiting();
  }
  if (!guests_.read_back || !guests_.read_back()) {
    parts_.engine.PumpOnce();
  }
  if (IsPast(state.TickMinute) && next_program_ > kSlots) {
    state.TickMinute += 60;
    next_program_ = 1;
  }
  StepPrograms();
  if (IsPast(state.TickFlush)) {
    state.TickFlush = Timer() + 1200;
    parts_.engine.FlushFiles();
  }
}

// Behind a step that failed the others wait for one of the next ticks, instead of holding up the
// user interface until the line has settled.
void MainCycle::StepPrograms() {
  while (next_program_ <= kSlots && parts_.link.IsSettled()) {
    if (guests_.step_program) {
      guests_.step_program(next_program_);
    }
    ++next_program_;
  }
}

}  // namespace tavrel
