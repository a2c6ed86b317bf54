#ifndef TAVREL_TESTS_SUPPORT_GRID_RUN_H_
#define TAVREL_TESTS_SUPPORT_GRID_RUN_H_

#include <algorithm>
#include <chrono>
#include <functional>

#include "tests/support/bench_program.h"

namespace tavrel {

// Runs the cycle as an event loop does: ticks on a grid of 50 ms, a tick that comes too late at
// once and those it has passed over never, and between the ticks what runs while nothing else
// waits. For programs on a line whose exchanges take their time.
class GridRun {
 public:
  explicit GridRun(BenchProgram& bench) : bench_(bench), next_(bench.clock.Elapsed()) {}

  void For(std::chrono::nanoseconds time) {
    const auto end = bench_.clock.Elapsed() + time;
    Until([&] { return bench_.clock.Elapsed() >= end; }, time);
  }

  // False if `is_reached` has not come true within `limit`. It is asked before each tick.
  bool Until(const std::function<bool()>& is_reached, std::chrono::nanoseconds limit) {
    const auto end = bench_.clock.Elapsed() + limit;
    while (!is_reached()) {
      if (bench_.clock.Elapsed() >= end) {
        return false;
      }
      Turn();
    }
    return true;
  }

  // The longest time for which a key had to wait so far.
  [[nodiscard]] std::chrono::nanoseconds LongestWait() const { return longest_; }

 private:
  static constexpr std::chrono::nanoseconds kGrid = std::chrono::milliseconds(kTickMilliseconds);

  // One tick and what fits in before the next.
  void Turn() {
    Timed([&] { bench_.cycle.Tick(); });
    next_ += (std::max(bench_.clock.Elapsed() - next_, kGrid) / kGrid) * kGrid;
    bool is_idle = false;
    while (bench_.clock.Elapsed() < next_ && !is_idle) {
      Timed([&] { is_idle = !bench_.events.RunIdle(); });
    }
    bench_.clock.Advance(std::max(next_ - bench_.clock.Elapsed(), std::chrono::nanoseconds(0)));
  }
  template <typename Work>
  void Timed(Work work) {
    const auto before = bench_.clock.Elapsed();
    work();
    longest_ = std::max(longest_, bench_.clock.Elapsed() - before);
  }

  BenchProgram& bench_;
  std::chrono::nanoseconds next_;  // place of the next tick on the grid
  std::chrono::nanoseconds longest_{};
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_GRID_RUN_H_
