#ifndef TAVREL_TESTS_STANDSTILL_SERVED_SPANS_H_
#define TAVREL_TESTS_STANDSTILL_SERVED_SPANS_H_

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <ctime>

#include "platform/qt/qt_events.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// A port whose waits take no time here and are counted as if they did.
class CountedPort : public FakePort {
 public:
  explicit CountedPort(FakeClock& clock) : FakePort(clock), clock_(clock) {}

  // All that the program has waited for the line until now.
  [[nodiscard]] std::chrono::nanoseconds Waited() const { return waited_; }

  void WaitForData(std::chrono::nanoseconds limit) override {
    const auto before = clock_.Elapsed();
    FakePort::WaitForData(limit);
    waited_ += clock_.Elapsed() - before;
  }

 private:
  FakeClock& clock_;
  std::chrono::nanoseconds waited_{};
};

// The longest times, in milliseconds, in which the window served nothing.
struct LongestSpans {
  double line = 0;  // waiting for the line: a count of exchanges, the same on every machine
  double work = 0;  // that and the work of this program's processor
  double wall = 0;  // that and all that has passed meanwhile, other processes and disks included
};

// Looks how long no event is served: a timer without an interval fires whenever a key would be
// taken from the queue.
class ServedSpans {
 public:
  explicit ServedSpans(const CountedPort& port) : port_(port) {
    beat_.callOnTimeout([this] { Served(); });
  }

  void Begin() {
    longest_ = {};
    Mark();
    beat_.start(0);
  }
  [[nodiscard]] LongestSpans End() {
    Served();
    beat_.stop();
    return longest_;
  }
  void Served() {
    if (!beat_.isActive()) {
      return;
    }
    const double line = Milliseconds(port_.Waited() - line_);
    longest_.line = std::max(longest_.line, line);
    longest_.work = std::max(longest_.work, line + Milliseconds(Time(kWork) - worked_));
    longest_.wall = std::max(longest_.wall, line + Milliseconds(Time(kWall) - passed_));
    Mark();
  }

 private:
  static constexpr clockid_t kWork = CLOCK_THREAD_CPUTIME_ID;
  static constexpr clockid_t kWall = CLOCK_MONOTONIC;

  static std::chrono::nanoseconds Time(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
  }
  static double Milliseconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double, std::milli>(time).count();
  }
  void Mark() {
    line_ = port_.Waited();
    worked_ = Time(kWork);
    passed_ = Time(kWall);
  }

  const CountedPort& port_;
  QTimer beat_;
  std::chrono::nanoseconds line_{};
  std::chrono::nanoseconds worked_{};
  std::chrono::nanoseconds passed_{};
  LongestSpans longest_;
};

// The program's own loop of events. A rest takes no time here; it paints and answers the window
// manager, at least every 20 ms.
class CountedEvents : public QtEvents {
 public:
  CountedEvents(FakeClock& clock, ServedSpans& spans) : clock_(clock), spans_(spans) {}

  void Rest(std::chrono::milliseconds time) override {
    spans_.Served();
    clock_.Advance(time);
    QtEvents::Rest(std::chrono::milliseconds(0));
    spans_.Served();
  }
  // A rule that waits in a loop of its own waits for the clock.
  void Pump() override {
    clock_.Advance(std::chrono::milliseconds(1));
    ++in_rule_;
    QtEvents::Pump();
    --in_rule_;
  }

  // The events that are served now are those that a rule asks for while it works.
  [[nodiscard]] bool IsInRule() const { return in_rule_ > 0; }

 private:
  FakeClock& clock_;
  ServedSpans& spans_;
  int in_rule_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_STANDSTILL_SERVED_SPANS_H_
