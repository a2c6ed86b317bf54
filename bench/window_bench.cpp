// The program beside a bare window: how soon it is painted and what it keeps resident. Both run
// as processes of their own and measure themselves in the same way.
#include <chrono>
#include <sstream>

#include "bench/bench_home.h"
#include "bench/promise.h"
#include "tests/e2e/process.h"

namespace tavrel {
namespace {

constexpr int kStarts = 7;

struct Look {
  double paint = 0;   // milliseconds
  double memory = 0;  // megabytes
};

// Runs a program of one window; both figures are 0 if it failed.
Look LookAt(std::vector<std::string> command) {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  command.insert(command.begin() + 1, std::to_string(std::chrono::nanoseconds(now).count()));
  Process process(command);
  std::istringstream line(process.ReadLine(std::chrono::seconds(60)));
  Look look;
  double kilobytes = 0;
  line >> look.paint >> kilobytes;
  look.memory = kilobytes / 1024;
  return look;
}

void CompareWindows(benchmark::State& state, Promise& promise, double Look::*figure) {
  const BenchHome home("----", {15, 2000, true});
  for (auto unused : state) {
    const Look form = LookAt({TAVREL_MAIN_FORM, home.Path()});
    const Look bare = LookAt({TAVREL_BARE_WINDOW});
    if (form.paint <= 0 || bare.paint <= 0) {
      state.SkipWithError("a window did not come up");
      return;
    }
    promise.Measured(form.*figure);
    promise.Limit(bare.*figure);
  }
  promise.Report(state);
}

void FirstPaint(benchmark::State& state) {
  Promise promise("ms");
  promise.MustBeWithin(3);
  CompareWindows(state, promise, &Look::paint);
}
BENCHMARK(FirstPaint)->Name("first paint")->Iterations(kStarts);

void ResidentMemory(benchmark::State& state) {
  Promise promise("MB");
  promise.MustBeWithin(2);
  CompareWindows(state, promise, &Look::memory);
}
BENCHMARK(ResidentMemory)->Name("resident memory, 12 slots")->Iterations(3);

}  // namespace
}  // namespace tavrel
