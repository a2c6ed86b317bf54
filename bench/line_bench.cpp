// The real link and the real serial port on a pseudo-terminal with virtual instruments, beside
// the same exchange by bare calls of the system on the same line.
#include <poll.h>
#include <sys/resource.h>

#include <QEventLoop>
#include <QTimer>
#include <functional>

#include "bench/bare_line.h"
#include "bench/instrument_line.h"
#include "bench/promise.h"
#include "link/link.h"
#include "main/main_cycle.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/system_clock.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kBlock = 20;  // exchanges in a row, before the other side has its turn
constexpr int kBlocks = 5;
constexpr int kSilences = 21;
constexpr int kTicks = 200;  // 10 s

// One instrument, COM1 of a directory of its own.
class Bench {
 public:
  explicit Bench(int mode, const std::vector<std::string>& options = {})
      : mode_(mode), line(mode, directory_.File("COM1"), options) {}

  // The link, open on this line; false if it did not open.
  bool Open(Link& link) const {
    link.LinkOpen({"COM1", mode_});
    return line.IsUp() && link.PortOpen && !link.Simulated;
  }
  [[nodiscard]] const std::string& Directory() const { return directory_.Path(); }

 private:
  int mode_;
  TemporaryDirectory directory_;

 public:
  InstrumentLine line;
};

bool ReadOnce(Link& link) {
  link.ComInet = 1;
  link.ComLetter = "Y";
  link.ComIndex = 1;
  link.ReadReg();
  return link.IsGood(1);
}

// One block of exchanges; each takes its place in `note`. False if one failed.
bool Block(const std::function<bool()>& exchange, const std::function<void(double)>& note) {
  for (int count = 0; count < kBlock; ++count) {
    bool is_good = false;
    note(TimeOf<std::milli>([&] { is_good = exchange(); }));
    if (!is_good) {
      return false;
    }
  }
  return true;
}

void ExchangeAtLineSpeed(benchmark::State& state) {
  const Bench bench(static_cast<int>(state.range(0)));
  SystemClock clock;
  QtSerialPort port(bench.Directory());
  Link link(port, clock);
  Promise promise("ms");
  for (auto unused : state) {
    bool is_good = bench.Open(link) && Block([&] { return ReadOnce(link); },
                                             [&](double time) { promise.Measured(time); });
    link.LinkClose();
    BareLine bare(bench.line.Device());
    is_good = is_good && Block([&] { return bare.Exchange(bench.line.Read()); },
                               [&](double time) { promise.Limit(time); });
    if (!is_good) {
      state.SkipWithError("an exchange failed");
      return;
    }
  }
  promise.MustBeWithin(1.05);
  promise.Report(state);
}
BENCHMARK(ExchangeAtLineSpeed)
    ->Name("exchange at line speed, 4800")
    ->Arg(kDirect)
    ->Iterations(kBlocks);
BENCHMARK(ExchangeAtLineSpeed)
    ->Name("exchange at line speed, 9600")
    ->Arg(kPlugin)
    ->Iterations(kBlocks);

// The pause behind a command and the wait for a reply, by bare waits.
void WaitBare() {
  poll(nullptr, 0, 10);
  poll(nullptr, 0, 100);
}

// Between two silences the line rests for longer than a late reply is waited for.
void Silence(benchmark::State& state) {
  const Bench bench(kDirect, {"--fault", "silence"});
  SystemClock clock;
  QtSerialPort port(bench.Directory());
  Link link(port, clock);
  if (!bench.Open(link)) {
    state.SkipWithError("the line did not open");
    return;
  }
  Promise promise("ms");
  for (auto unused : state) {
    promise.Limit(TimeOf<std::milli>(WaitBare));
    poll(nullptr, 0, static_cast<int>(link.SettleTime().count()));
    promise.Measured(TimeOf<std::milli>([&] { ReadOnce(link); }));
    if (link.ComResult != LinkResult::kTimeOut) {
      state.SkipWithError("the line was not silent");
      return;
    }
  }
  promise.MustBeWithinSlack(2);
  promise.Report(state);
}
BENCHMARK(Silence)->Name("silence")->Iterations(kSilences);

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Percent of a core that this process takes while `exchange` runs on each tick of the cycle.
double LoadOf(const std::function<bool()>& exchange) {
  QEventLoop loop;
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  int ticks = 0;
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
    ++ticks;
    if (!exchange() || ticks == kTicks) {
      loop.quit();
    }
  });
  const double cpu = CpuSeconds();
  timer.start(kTickMilliseconds);
  const double wall = TimeOf<std::ratio<1>>([&] { loop.exec(); });
  return ticks == kTicks ? (CpuSeconds() - cpu) / wall * 100 : 0;
}

void LoadOfOneExchangePerTick(benchmark::State& state) {
  const Bench bench(kDirect);
  SystemClock clock;
  QtSerialPort port(bench.Directory());
  Link link(port, clock);
  Promise promise("% of a core");
  for (auto unused : state) {
    const double product = bench.Open(link) ? LoadOf([&] { return ReadOnce(link); }) : 0;
    link.LinkClose();
    BareLine bare(bench.line.Device());
    const double floor = LoadOf([&] { return bare.Exchange(bench.line.Read()); });
    if (product == 0 || floor == 0) {
      state.SkipWithError("an exchange failed");
      return;
    }
    promise.Measured(product);
    promise.Limit(floor);
  }
  promise.MustBeAtMost(2);
  promise.Report(state);
}
BENCHMARK(LoadOfOneExchangePerTick)->Name("CPU with one exchange per tick")->Iterations(1);

}  // namespace
}  // namespace tavrel
