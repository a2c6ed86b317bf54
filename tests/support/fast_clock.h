#ifndef TAVREL_TESTS_SUPPORT_FAST_CLOCK_H_
#define TAVREL_TESTS_SUPPORT_FAST_CLOCK_H_

#include <chrono>

#include "platform/system_clock.h"

namespace tavrel {

// The machine's clock whose seconds of the day run so many times faster, as those of an
// instrument at speed-up do. Waits on the line keep their true time.
class FastClock : public Clock {
 public:
  explicit FastClock(int speedup) : speedup_(speedup) {}

  [[nodiscard]] double Timer() const override {
    return kStart + speedup_ * std::chrono::duration<double>(clock_.Elapsed() - begin_).count();
  }
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override { return clock_.Elapsed(); }
  [[nodiscard]] WallTime Now() const override { return clock_.Now(); }

 private:
  static constexpr double kStart = 36000;  // ten o'clock: no midnight comes in a test

  SystemClock clock_;
  int speedup_;
  std::chrono::nanoseconds begin_ = clock_.Elapsed();
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FAST_CLOCK_H_
