// What the worksheet takes of the line and of the user's time, beside bare calls of the system on
// the same line.
#include <QEventLoop>
#include <QTimer>
#include <algorithm>

#include "bench/bare_line.h"
#include "bench/bench_home.h"
#include "bench/instrument_line.h"
#include "bench/promise.h"
#include "bench/qt_machine.h"
#include "work/forms/tav_work.h"

namespace tavrel {
namespace {

constexpr int kInputsShown = 15;
constexpr int kExchanges = 3 + kInputsShown;  // kind, state and setpoint, then the inputs
constexpr int kRounds = 7;
constexpr double kLongestWaitForAKey = 150;  // milliseconds

// The worksheet of a slot with 15 inputs, beside its form, on a line of six instruments.
class Bench {
 public:
  explicit Bench(int mode)
      : home_("COM1", {kInputsShown, 10, false}),
        line(mode, home_.File("COM1"), {"--instruments", "6", "--control", Control()}),
        machine_(home_.Path()),
        program(machine_.All(), home_.Path()) {
    program.state.Settings.ComMode = mode;
  }

  // False if the line did not open.
  bool Open() {
    if (!line.IsUp() || !program.Load()) {
      return false;
    }
    program.start_up.MainFormShow();
    program.state.SelSlot = 1;
    program.worksheet.Open();
    form_ = std::make_unique<TavWork>(program.worksheet);
    form_->show();
    program.cycle.SetHandlers({[this] { Refresh(); }, {}, {}});
    return program.link.IsGood(1);
  }
  bool Tell(const std::string& command) const {
    return RunCommand({TAVREL_INSTRUMENT, "--send", Control(), command}) == 0;
  }

  // The ticks of one whole refresh, in milliseconds each, in the event loop of the program: while
  // a tick runs a key has to wait.
  std::vector<double> Ticks() {
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    std::vector<double> ticks;
    program.state.TickRefresh.At = 0;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
      ticks.push_back(TimeOf<std::milli>([&] { program.cycle.Tick(); }));
      if (program.state.TickRefresh.At > 0) {
        loop.quit();
      }
    });
    timer.start(kTickMilliseconds);
    loop.exec();
    return ticks;
  }

 private:
  [[nodiscard]] std::string Control() const { return home_.File("control"); }
  void Refresh() {
    program.worksheet.Refresh();
    form_->ShowRefresh();
  }

  BenchHome home_;

 public:
  InstrumentLine line;

 private:
  QtMachine machine_;

 public:
  LiveProgram program;

 private:
  std::unique_ptr<TavWork> form_;
};

double Sum(const std::vector<double>& times) {
  double sum = 0;
  for (const double time : times) {
    sum += time;
  }
  return sum;
}

double Longest(const std::vector<double>& times) {
  return *std::max_element(times.begin(), times.end());
}

// As many bare exchanges as a refresh makes, in milliseconds; 0 if one failed.
double BareExchanges(const InstrumentLine& line) {
  BareLine bare(line.Device());
  bool is_good = true;
  const double time = TimeOf<std::milli>([&] {
    for (int count = 0; count < kExchanges; ++count) {
      is_good = is_good && bare.Exchange(line.Read());
    }
  });
  return is_good ? time : 0;
}

void LineTimeOfARefresh(benchmark::State& state) {
  Bench bench(static_cast<int>(state.range(0)));
  if (!bench.Open()) {
    state.SkipWithError("the program did not start");
    return;
  }
  Promise promise("ms");
  for (auto unused : state) {
    promise.Measured(Sum(bench.Ticks()));
    bench.program.link.LinkClose();
    promise.Limit(BareExchanges(bench.line));
    bench.program.commands.LinkOpen();
  }
  promise.MustBeWithin(1.05);
  promise.Report(state);
}
BENCHMARK(LineTimeOfARefresh)
    ->Name("worksheet of 15 inputs, 4800")
    ->Arg(kDirect)
    ->Iterations(kRounds);
BENCHMARK(LineTimeOfARefresh)
    ->Name("worksheet of 15 inputs, 9600")
    ->Arg(kPlugin)
    ->Iterations(kRounds);

void KeyOnTheWorksheet(benchmark::State& state, const std::string& command) {
  Bench bench(kDirect);
  if (!bench.Open() || !bench.Tell(command)) {
    state.SkipWithError("the program did not start");
    return;
  }
  Promise promise("ms");
  promise.Limit(110);  // one silence: 10 ms pause and 100 ms wait
  for (auto unused : state) {
    promise.Measured(Longest(bench.Ticks()));
  }
  promise.MustBeAtMost(kLongestWaitForAKey);
  promise.Report(state);
}
BENCHMARK_CAPTURE(KeyOnTheWorksheet, answers, "fault all none")
    ->Name("key on the worksheet")
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(KeyOnTheWorksheet, silent, "fault all silence on")
    ->Name("key on the worksheet, silent")
    ->Iterations(kRounds);

}  // namespace
}  // namespace tavrel
