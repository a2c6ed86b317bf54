#include "service/watchdog_test.h"

namespace tavrel {
namespace {

constexpr std::int16_t kMeasure = 10;
constexpr std::int16_t kStop = 0;
constexpr int kPeriod = 8;       // index of the result
constexpr int kPeriodUnit = 10;  // milliseconds
constexpr std::chrono::seconds kPatience{3};

}  // namespace

void WatchdogTest::Clear() {
  values_ = WatchdogTestValues();
  wdog_step_ = WdogStep::kOrder;
}

void WatchdogTest::CloseNow() {
  ServiceScreen::CloseNow();
  Clear();
}

void WatchdogTest::Cmd_again_Click() {
  if (values_.Cmd_again) {
    Clear();
  }
}

// A measurement that has ended stays so, whether the instrument has heard of it or not.
void WatchdogTest::TakeStep() {
  if (wdog_step_ == WdogStep::kEnded || !MissesAnswer(Exchange())) {
    return;
  }
  Parts().events.SetPointer(Pointer::kNormal);
  wdog_step_ = wdog_step_ == WdogStep::kEnded ? wdog_step_ : WdogStep::kOrder;
}

LinkResult WatchdogTest::Exchange() {
  switch (wdog_step_) {
    case WdogStep::kOrder:
      return Begin();
    case WdogStep::kWait:
      return WaitForEnd();
    default:
      return TakePeriod();
  }
}

LinkResult WatchdogTest::Begin() {
  Parts().link.LinkAbort();
  const LinkResult result = Order(kMeasure);
  Parts().events.SetPointer(Pointer::kHourglass);
  wdog_deadline_ = Parts().clock.Elapsed() + kPatience;
  wdog_step_ = IsGood(result) ? WdogStep::kWait : wdog_step_;
  return result;
}

LinkResult WatchdogTest::WaitForEnd() {
  const Progress progress = LookForEnd();
  if (progress.is_done) {
    wdog_step_ = WdogStep::kResult;
  } else if (Parts().clock.Elapsed() > wdog_deadline_) {
    return GiveUp();
  }
  return progress.status;
}

LinkResult WatchdogTest::GiveUp() {
  const LinkResult result = Order(kStop);
  values_.Lbl_delay = "> 3000";
  values_.Lbl_error = true;
  End();
  return result;
}

LinkResult WatchdogTest::TakePeriod() {
  const Reading period = Result(kPeriod, 0);
  if (period.IsGood()) {
    const int milliseconds = period.word * kPeriodUnit;
    values_.Lbl_delay = std::to_string(milliseconds);
    values_.Lbl_error = milliseconds < kShortest || milliseconds > kLongest;
    End();
  }
  return period.status;
}

void WatchdogTest::End() {
  Parts().events.SetPointer(Pointer::kNormal);
  values_.Cmd_again = true;
  wdog_step_ = WdogStep::kEnded;
}

}  // namespace tavrel
