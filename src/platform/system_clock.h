#ifndef TAVREL_PLATFORM_SYSTEM_CLOCK_H_
#define TAVREL_PLATFORM_SYSTEM_CLOCK_H_

#include "platform/clock.h"

namespace tavrel {

// What a timer of the day shows so much later: seconds since midnight, below 86400.
[[nodiscard]] double TimerLater(double timer, std::chrono::duration<double> later);

// The clock of the machine.
class SystemClock : public Clock {
 public:
  SystemClock();

  [[nodiscard]] double Timer() const override;
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override;
  [[nodiscard]] WallTime Now() const override;

 private:
  // Seconds since local midnight at the moment when Elapsed() was zero_.
  double timer_at_zero_ = 0;
  std::chrono::nanoseconds zero_{};
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SYSTEM_CLOCK_H_
