// What the measuring cycle costs the user: a tick that has nothing to do, and the longest time
// for which keys have to wait.
#include <pty.h>
#include <unistd.h>

#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <array>
#include <filesystem>

#include "bench/bench_home.h"
#include "bench/promise.h"
#include "bench/qt_machine.h"
#include "main/forms/tavrel.h"

namespace tavrel {
namespace {

constexpr int kRounds = 101;
constexpr int kTicksOfARound = 1000;
constexpr double kFarAway = 1000;  // seconds
constexpr std::chrono::seconds kWatched{5};
constexpr int kPasses = 5;

// Twelve rows in use, no pass due, no recording on. The form copies its values after each tick.
void IdleTick(benchmark::State& state) {
  const BenchHome home("----", {});
  QtMachine machine(home.Path());
  LiveProgram program(machine.All(), home.Path());
  if (!program.Load()) {
    state.SkipWithError("the program did not start");
    return;
  }
  Tavrel form({program.sheet, program.commands, program.cycle, program.start_up}, kSlots);
  program.start_up.MainFormShow();
  form.UpdateWidgets();
  Promise promise("us");
  for (auto unused : state) {
    const auto later = static_cast<float>(machine.clock.Timer() + kFarAway);
    program.state.TickRefresh.At = later;
    program.state.TickTen.At = later;
    promise.Measured(TimeOf<std::micro>([&] {
                       for (int tick = 0; tick < kTicksOfARound; ++tick) {
                         program.cycle.Tick();
                         form.UpdateWidgets();
                       }
                     }) /
                     kTicksOfARound);
    promise.Limit(TimeOf<std::micro>([&] {
                    for (int tick = 0; tick < kTicksOfARound; ++tick) {
                      benchmark::DoNotOptimize(machine.clock.Timer());
                    }
                  }) /
                  kTicksOfARound);
  }
  promise.MustBeAtMost(20);
  promise.Report(state);
}
BENCHMARK(IdleTick)->Name("tick with nothing to do")->Iterations(kRounds);

// A line at whose other end nobody answers.
class DeadLine {
 public:
  explicit DeadLine(const std::string& link) {
    std::array<char, 64> name{};
    if (openpty(&master_, &slave_, name.data(), nullptr, nullptr) == 0) {
      std::filesystem::create_symlink(name.data(), link);
    }
  }
  ~DeadLine() {
    close(master_);
    close(slave_);
  }
  DeadLine(const DeadLine&) = delete;
  DeadLine& operator=(const DeadLine&) = delete;

 private:
  int master_ = -1;
  int slave_ = -1;
};

// The longest tick in milliseconds, in the event loop of the program, while a pass goes over the
// rows and the pump has its turn behind it: while a tick runs a key has to wait.
double LongestTick(LiveProgram& program) {
  QEventLoop loop;
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  double longest = 0;
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
    longest = std::max(longest, TimeOf<std::milli>([&] { program.cycle.Tick(); }));
  });
  QTimer::singleShot(kWatched, &loop, &QEventLoop::quit);
  program.state.TickRefresh.At = 0;
  program.state.TickTen.At = 0;
  timer.start(kTickMilliseconds);
  loop.exec();
  return longest;
}

void KeyBesideSilence(benchmark::State& state) {
  const BenchHome home("COM1", {2, 10, true});
  const DeadLine line(home.File("COM1"));
  QtMachine machine(home.Path());
  LiveProgram program(machine.All(), home.Path());
  if (!program.Load()) {
    state.SkipWithError("the line did not open");
    return;
  }
  program.start_up.MainFormShow();
  Promise promise("ms");
  promise.Limit(110);  // one silence: 10 ms pause and 100 ms wait
  for (auto unused : state) {
    promise.Measured(LongestTick(program));
  }
  promise.MustBeAtMost(150);
  promise.Report(state);
}
BENCHMARK(KeyBesideSilence)->Name("key beside six silent instruments")->Iterations(kPasses);

// The service screens that open without a question, each with its form's turns, over recordings.
void KeyInServiceScreens(benchmark::State& state) {
  const BenchHome home("COM1", {2, 10, true});
  const DeadLine line(home.File("COM1"));
  QtMachine machine(home.Path());
  LiveProgram program(machine.All(), home.Path());
  if (!program.Load()) {
    state.SkipWithError("the line did not open");
    return;
  }
  program.start_up.MainFormShow();
  const std::array<ServiceScreen*, 5> screens = {&program.variable_browser, &program.port_browser,
                                                 &program.communication_test, &program.quality_data,
                                                 &program.output_test};
  Promise promise("ms");
  promise.Limit(110);
  for (auto unused : state) {
    double longest = 0;
    for (ServiceScreen* const screen : screens) {
      screen->Open();
      const SteppedScreens::Turn turn(program.stepped, screen->Number(),
                                      [screen] { screen->Step(); });
      longest = std::max(longest, LongestTick(program));
      screen->CloseNow();
    }
    promise.Measured(longest);
  }
  promise.MustBeAtMost(150);
  promise.Report(state);
}
BENCHMARK(KeyInServiceScreens)->Name("key in service screens, silent")->Iterations(1);

}  // namespace
}  // namespace tavrel
