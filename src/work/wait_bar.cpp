#include "work/wait_bar.h"

namespace tavrel {
namespace {

constexpr int kStep = 10;
constexpr int kLastStepBelow = 91;

}  // namespace

void WaitBar::Open() {
  value_ = 0;
  OpenScreen();
  state_.TickWait.SetIn(0, clock_);
  events_.SetPointer(Pointer::kHourglass);
}

void WaitBar::Advance() {
  state_.TickWait.SetIn(kWaitBarSeconds, clock_);
  if (value_ < kLastStepBelow) {
    value_ += kStep;
    return;
  }
  Unload();
}

void WaitBar::Unload() {
  if (IsOpen()) {
    CloseScreen();
    events_.SetPointer(Pointer::kNormal);
  }
}

}  // namespace tavrel
