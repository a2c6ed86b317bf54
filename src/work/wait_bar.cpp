#include "work/wait_bar.h"

namespace tavrel {
namespace {

constexpr float kStepSeconds = 1;
constexpr int kStep = 10;
constexpr int kLastStepBelow = 91;

}  // namespace

void WaitBar::Open() {
  value_ = 0;
  OpenScreen();
  state_.TickWait = static_cast<float>(clock_.Timer());
  events_.SetPointer(Pointer::kHourglass);
}

void WaitBar::Advance() {
  state_.TickWait = static_cast<float>(clock_.Timer()) + kStepSeconds;
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
