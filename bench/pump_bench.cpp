// What the pump takes of the line while buffers in the instruments are nearly full, beside bare
// calls of the system on the same line.
#include <poll.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <functional>

#include "bench/bare_line.h"
#include "bench/bench_home.h"
#include "bench/instrument_line.h"
#include "bench/promise.h"
#include "bench/qt_machine.h"
#include "main/forms/tavrel.h"

namespace tavrel {
namespace {

constexpr int kChannels = 2;
constexpr int kStored = 880;  // sets in each buffer: room for 16
constexpr int kRounds = 5;
constexpr int kBareExchanges = 40;
constexpr std::chrono::seconds kWatched{4};
constexpr std::chrono::seconds kPatience{20};
constexpr double kLongestWaitForAKey = 150;  // milliseconds

// Milliseconds for which the line is watched behind each sample.
constexpr int QuietOf(int mode) {
  return mode == kDirect ? 15 : 12;
}

// At least 26 exchanges a second at 4800 baud and 36 at 9600.
constexpr double MostOf(int mode) {
  return mode == kDirect ? 1000.0 / 26 : 1000.0 / 36;
}

std::vector<std::string> SamplingOptions() {
  std::vector<std::string> options = {"--instruments", std::to_string(kInets)};
  for (int inet = 1; inet <= kInets; ++inet) {
    const std::string name = std::to_string(inet) + "=";
    options.insert(options.end(),
                   {"--sample", name + "100", "--backlog", name + std::to_string(kStored)});
  }
  return options;
}

// The program with its main form in its event loop, twelve recordings in danger on six
// instruments.
class Bench {
 public:
  explicit Bench(int mode)
      : home_("COM1", {kChannels, 10, true}),
        line(mode, home_.File("COM1"), SamplingOptions()),
        machine_(home_.Path()),
        program(machine_.All(), home_.Path()) {
    program.state.Settings.ComMode = mode;
  }

  // False if the program did not start.
  bool Open() {
    if (!line.IsUp() || !program.Load()) {
      return false;
    }
    form_ = std::make_unique<Tavrel>(
        Tavrel::Parts{program.sheet, program.commands, program.cycle, program.start_up}, kSlots);
    form_->show();
    return RunUntil([this] { return program.engine.IsPressed(); });
  }

  // Milliseconds for each sample of the pump, while `view` is in front.
  double TimeOfASample(View view) {
    program.state.ActiveView = view;
    const int before = Samples();
    const double time = TimeOf<std::milli>([] { RunFor(kWatched); });
    return time / std::max(Samples() - before, 1);
  }

  // The longest time in milliseconds for which no event was served.
  double LongestWait() {
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    double longest = 0;
    auto last = std::chrono::steady_clock::now();
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
      const auto now = std::chrono::steady_clock::now();
      longest = std::max(longest, std::chrono::duration<double, std::milli>(now - last).count());
      last = now;
    });
    timer.start(1);
    program.state.ActiveView = View::kMainSheet;
    program.state.TickRefresh.At = 0;
    RunFor(kWatched);
    return longest;
  }

  // The line for other hands.
  void Leave() {
    program.cycle.Stop();
    program.link.LinkClose();
  }
  void Return() {
    program.commands.LinkOpen();
    program.cycle.Start();
  }

 private:
  static void RunFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
  }
  static bool RunUntil(const std::function<bool()>& is_reached) {
    const QDeadlineTimer end(kPatience);
    while (!is_reached() && !end.hasExpired()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    return is_reached();
  }
  [[nodiscard]] int Samples() const {
    int rows = 0;
    for (int slot = 1; slot <= kSlots; ++slot) {
      rows += program.state.SampleCount[slot];
    }
    return rows * kChannels;
  }

  BenchHome home_;

 public:
  InstrumentLine line;

 private:
  QtMachine machine_;

 public:
  LiveProgram program;

 private:
  std::unique_ptr<Tavrel> form_;
};

// A command as long as those for most of the samples, and the time for which the line is watched
// behind its reply. Milliseconds; 0 if an exchange failed.
double BareSample(const InstrumentLine& line, int mode) {
  BareLine bare(line.Device());
  bool is_good = true;
  const double time = TimeOf<std::milli>([&] {
    for (int count = 0; count < kBareExchanges; ++count) {
      is_good = is_good && bare.Exchange(mode == kDirect ? "Y21?" : "n2p21?");
      poll(nullptr, 0, QuietOf(mode));
    }
  });
  return is_good ? time / kBareExchanges : 0;
}

void SampleInDanger(benchmark::State& state) {
  const int mode = static_cast<int>(state.range(0));
  Bench bench(mode);
  if (!bench.Open()) {
    state.SkipWithError("the program did not start");
    return;
  }
  Promise promise("ms");
  for (auto unused : state) {
    promise.Measured(bench.TimeOfASample(View::kTavProg));
    bench.Leave();
    promise.Limit(BareSample(bench.line, mode));
    bench.Return();
  }
  promise.MustBeAtMost(MostOf(mode));
  promise.Report(state);
}
BENCHMARK(SampleInDanger)->Name("sample in danger, 4800")->Arg(kDirect)->Iterations(kRounds);
BENCHMARK(SampleInDanger)->Name("sample in danger, 9600")->Arg(kPlugin)->Iterations(kRounds);

// While the rows of the sheet are refreshed and the pump uses the line in between.
void KeyInDanger(benchmark::State& state) {
  Bench bench(kDirect);
  if (!bench.Open()) {
    state.SkipWithError("the program did not start");
    return;
  }
  Promise promise("ms");
  promise.Limit(110);  // one silence: 10 ms pause and 100 ms wait
  for (auto unused : state) {
    promise.Measured(bench.LongestWait());
  }
  promise.MustBeAtMost(kLongestWaitForAKey);
  promise.Report(state);
}
BENCHMARK(KeyInDanger)->Name("key in danger")->Iterations(kRounds);

}  // namespace
}  // namespace tavrel
