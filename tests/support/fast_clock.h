#ifndef TAVREL_TESTS_SUPPORT_FAST_CLOCK_H_
#define TAVREL_TESTS_SUPPORT_FAST_CLOCK_H_

#include <chrono>

#include "platform/system_clock.h"

namespace tavrel {

// The machine's clock whose seconds of the day run so many times faster, as those of an
// instrument at speed-up do; at speed-up 0 they stand still until a test moves them. Waits on the
// line keep their true time.
// Levers: Advance(), patience (waits on the line last so many times longer, so that a reply that a
// busy machine puts off still comes in time; set before the program starts).
class FastClock : public Clock {
 public:
  explicit FastClock(int speedup) : speedup_(speedup) {}

  int patience = 1;
  void Advance(std::chrono::seconds time) { moved_ += time; }

  [[nodiscard]] double Timer() const override {
    const std::chrono::duration<double> since = speedup_ * (clock_.Elapsed() - begin_) + moved_;
    return kStart + since.count();
  }
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override {
    return clock_.Elapsed() / patience;
  }
  [[nodiscard]] WallTime Now() const override { return clock_.Now(); }

 private:
  static constexpr double kStart = 36000;  // ten o'clock: no midnight comes in a test

  SystemClock clock_;
  int speedup_;
  std::chrono::seconds moved_{0};
  std::chrono::nanoseconds begin_ = clock_.Elapsed();
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FAST_CLOCK_H_
