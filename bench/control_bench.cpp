// What the controllers take of the user's time: their dialogs beside an instrument that is silent,
// and the minute in which the programs of all slots go on.
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <fstream>
#include <functional>

#include "bench/bare_line.h"
#include "bench/bench_home.h"
#include "bench/instrument_line.h"
#include "bench/promise.h"
#include "bench/qt_machine.h"
#include "tests/support/fake_screen.h"

namespace tavrel {
namespace {

constexpr int kRounds = 5;
constexpr int kTelegramsOfARamp = 5;         // F, Y, W, I and Z
constexpr double kLongestWaitForAKey = 150;  // milliseconds
constexpr double kSilence = 110;             // milliseconds: 10 of pause and 100 of waiting
constexpr const char* kProgram = "ramp.prg";

// Twelve slots on six instruments at 4800 baud; whoever chooses a program chooses kProgram.
class Bench {
 public:
  Bench() : line(kDirect, home_.File("COM1"), {"--instruments", "6", "--control", Control()}) {
    dialogs_.chosen_file = home_.File(kProgram);
    ProgramRows rows;
    rows[0] = {controller::kDynamic, 10, 6000, 1};
    rows[1] = {controller::kDynamic, 10, 8000, 600};
    std::ofstream(dialogs_.chosen_file, std::ios::binary) << ProgramFileBytes(rows);
  }

  // False if the line did not open.
  bool Open() {
    if (!line.IsUp() || !program.Load()) {
      return false;
    }
    program.start_up.MainFormShow();
    program.state.SelSlot = 1;
    program.cycle.SetHandlers({{}, {}, [this](int slot) { program.runner.StepProgram(slot); }});
    return program.link.IsGood(1);
  }
  void LetTheLineSettle() { machine_.events.Rest(program.link.SettleTime()); }
  bool Silence() const {
    return RunCommand({TAVREL_INSTRUMENT, "--send", Control(), "fault all silence on"}) == 0;
  }

  // The longest tick in milliseconds, in the event loop of the program, until `is_over`: while a
  // tick runs a key has to wait. 0 if it is not over within the time.
  double LongestTick(const std::function<bool()>& is_over) {
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    double longest = 0;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
      longest = std::max(longest, TimeOf<std::milli>([&] { program.cycle.Tick(); }));
      if (is_over()) {
        loop.quit();
      }
    });
    QTimer::singleShot(std::chrono::seconds(20), &loop, &QEventLoop::quit);
    timer.start(kTickMilliseconds);
    loop.exec();
    return is_over() ? longest : 0;
  }

  [[nodiscard]] bool DoAllAnswer() const {
    for (std::int16_t inet = 1; inet <= kInets; ++inet) {
      if (!program.link.IsGood(inet)) {
        return false;
      }
    }
    return true;
  }
  [[nodiscard]] bool HaveAllTakenAStep() const {
    for (int slot = 1; slot <= kSlots; ++slot) {
      if (program.state.Unit[slot].UnitProgStep < 1) {
        return false;
      }
    }
    return true;
  }

 private:
  [[nodiscard]] std::string Control() const { return home_.File("control"); }

  BenchHome home_{"COM1", {2, 10, true}};
  FakeDialogs dialogs_;
  QtMachine machine_{home_.Path()};

 public:
  InstrumentLine line;
  LiveProgram program{{machine_.port, machine_.clock, dialogs_, machine_.screens, machine_.events,
                       machine_.shell, machine_.printer, machine_.clipboard, machine_.regional},
                      home_.Path()};
};

// Behind a silence a late reply is waited for, which is no part of what is measured.
template <typename Screen>
void DialogBesideSilence(benchmark::State& state, Screen ProgramLogic::*screen) {
  Bench bench;
  if (!bench.Open() || !bench.Silence()) {
    state.SkipWithError("the program did not start");
    return;
  }
  Promise promise("ms");
  promise.Limit(kSilence);
  for (auto unused : state) {
    bench.LetTheLineSettle();
    promise.Measured(TimeOf<std::milli>([&] { (bench.program.*screen).Open(); }));
    (bench.program.*screen).CloseNow();
  }
  promise.MustBeAtMost(kLongestWaitForAKey);
  promise.Report(state);
}
BENCHMARK_CAPTURE(DialogBesideSilence, controller, &ProgramLogic::controller_settings)
    ->Name("controller dialog, silent")
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(DialogBesideSilence, pid, &ProgramLogic::pid_parameters)
    ->Name("PID dialog, silent")
    ->Iterations(kRounds);

// Twelve ramps that step in the same minute.
void MinuteOfThePrograms(benchmark::State& state) {
  Bench bench;
  if (!bench.Open()) {
    state.SkipWithError("the program did not start");
    return;
  }
  Promise promise("ms");
  for (auto unused : state) {
    const double first_pass = bench.LongestTick([&bench] { return bench.DoAllAnswer(); });
    for (int slot = 1; slot <= kSlots; ++slot) {
      static_cast<void>(bench.program.runner.Start(slot));
    }
    const double longest = bench.LongestTick([&bench] { return bench.HaveAllTakenAStep(); });
    if (first_pass <= 0 || longest <= 0) {
      state.SkipWithError("the programs did not step");
      return;
    }
    promise.Measured(longest);
    bench.program.link.LinkClose();
    BareLine bare(bench.line.Device());
    promise.Limit(TimeOf<std::milli>([&] {
      for (int count = 0; count < kTelegramsOfARamp; ++count) {
        static_cast<void>(bare.Exchange(bench.line.Read()));
      }
    }));
  }
  promise.MustBeAtMost(kLongestWaitForAKey);
  promise.Report(state);
}
BENCHMARK(MinuteOfThePrograms)->Name("tick in the minute of twelve ramps")->Iterations(1);

}  // namespace
}  // namespace tavrel
