#ifndef TAVREL_PLATFORM_CLOCK_H_
#define TAVREL_PLATFORM_CLOCK_H_

#include <chrono>

namespace tavrel {

// A date and time of day as a wall clock shows it, in local time.
struct WallTime {
  int Year = 2000;  // four digits
  int Month = 1;    // 1..12
  int Day = 1;      // 1..31
  int Hour = 0;     // 0..23
  int Minute = 0;   // 0..59
  int Second = 0;   // 0..60

  int ZoneMinutes = 0;  // by which local time is ahead of universal time; below 0 west of it
};

// The three times the program knows. They never share a purpose: deadlines of the day use
// Timer(), waits use Elapsed(), names and dates use Now().
class Clock {
 public:
  virtual ~Clock() = default;

  // Seconds since local midnight, 0 <= t < 86400, with fractions. It is set by the wall clock
  // once, when the clock is made, and from then on counts real seconds, sleep of the machine
  // included: neither summer time nor a correction of the wall clock moves it.
  [[nodiscard]] virtual double Timer() const = 0;

  // Time that passed since some fixed moment, sleep included. Never goes back, never wraps.
  [[nodiscard]] virtual std::chrono::nanoseconds Elapsed() const = 0;

  // The wall clock.
  [[nodiscard]] virtual WallTime Now() const = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_CLOCK_H_
