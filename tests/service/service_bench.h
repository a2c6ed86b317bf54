#ifndef TAVREL_TESTS_SERVICE_SERVICE_BENCH_H_
#define TAVREL_TESTS_SERVICE_SERVICE_BENCH_H_

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "service/service_screen.h"
#include "state/stepped_screen.h"
#include "tests/support/bench_program.h"

namespace tavrel {

// A service screen on the whole program with a scripted line; the cycle gives it its turns.
class ServiceBench : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  // From the loaded settings to the running cycle; nothing has been sent yet.
  void Start() {
    bench.Start();
    bench.port.sent.clear();
  }
  void Open(ServiceScreen& screen) {
    screen.Open();
    turn_.reset();
    turn_ = std::make_unique<SteppedScreens::Turn>(bench.stepped, screen.Number(),
                                                   [&screen] { screen.Step(); });
  }
  // What is sent at each of so many turns, without those in which the line settles. A turn that
  // sends nothing ends after a second.
  Texts Pulses(int count) {
    constexpr int kMostTicks = 20;
    Texts all;
    for (int pulse = 0; pulse < count; ++pulse) {
      bench.port.sent.clear();
      for (int tick = 0; tick < kMostTicks && bench.port.sent.empty(); ++tick) {
        bench.cycle.Tick();
        bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
      }
      all.insert(all.end(), bench.port.sent.begin(), bench.port.sent.end());
    }
    bench.port.sent.clear();
    return all;
  }

  BenchProgram bench;

 private:
  std::unique_ptr<SteppedScreens::Turn> turn_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SERVICE_SERVICE_BENCH_H_
