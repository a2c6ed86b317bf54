#ifndef TAVREL_TESTS_SERVICE_OUTPUT_BENCH_H_
#define TAVREL_TESTS_SERVICE_OUTPUT_BENCH_H_

#include <array>
#include <string>
#include <vector>

#include "service/output_test.h"
#include "tests/service/service_bench.h"
#include "tests/support/line_failure.h"
#include "tests/support/plugin_line.h"

namespace tavrel {

// The test of outputs of instrument 3 on a scripted line of either kind. The instrument has a
// status for each controller, in the order of their numbers.
// Levers: fail_at is the exchange, counted from 1 after Count(), that fails, and failure how;
// silent answers nothing.
class OutputBench : public ServiceBench {
 protected:
  static constexpr int kInet = 3;

  void Prepare(bool plugin = false) {
    is_plugin = plugin;
    bench.state.Settings.ComMode = plugin ? 2 : 0;
    bench.port.answer = [this](const std::string& command) { return Answer(command); };
    Start();
    bench.cycle.SetHandlers({[] {}, [] {}, [this](int slot) { bench.runner.StepProgram(slot); },
                             [this] { return bench.output_recovery.Step(); }});
    bench.state.ActiveInet = kInet;
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      Status(ctrl) = kFound.at(static_cast<std::size_t>(ctrl - 1));
    }
  }
  void OpenTest(bool plugin = false) {
    Prepare(plugin);
    Open(screen);
    Count();
  }
  // Opens it and goes on until nothing is written any more.
  void OpenAndTake() {
    OpenTest();
    Turns(60);
    bench.port.sent.clear();
  }
  void Count() {
    exchanges = 0;
    bench.port.sent.clear();
  }

  std::string Answer(const std::string& command) {
    ++exchanges;
    const std::string words = is_plugin ? InDirectWords(command) : command;
    const auto carry_out = [&] { return Shown(bench.line.Answer(words)); };
    if (silent) {
      return "";
    }
    if (!refused.empty() && words.rfind(refused, 0) == 0) {
      return "?";
    }
    return exchanges == fail_at ? FailedReply(failure, bench.port, carry_out) : carry_out();
  }
  // Looks at the outputs behind each command.
  std::string Shown(std::string reply) {
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      const bool is_tested = Status(ctrl) == 5;
      was_heated = was_heated || (is_tested && Register('Q', ctrl) != 0);
    }
    return reply;
  }

  std::int16_t& Register(char letter, int ctrl) {
    return bench.line.registers[{kInet, letter, ctrl}];
  }
  std::int16_t& Status(int ctrl) { return Register('Z', ctrl); }
  std::array<int, 3> Values(int ctrl) {
    return {Register('U', ctrl), Register('Q', ctrl), Status(ctrl)};
  }
  std::array<int, 4> Statuses() { return {Status(1), Status(2), Status(3), Status(4)}; }
  bool AnyPower() {
    bool any = false;
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      any = any || Register('U', ctrl) != 0 || Register('Q', ctrl) != 0;
    }
    return any;
  }

  // So many ticks of the cycle; what is sent in them.
  Texts Turns(int count) {
    const auto before = bench.port.sent.size();
    for (int turn = 0; turn < count; ++turn) {
      bench.cycle.Tick();
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    }
    return {bench.port.sent.begin() + static_cast<int>(before), bench.port.sent.end()};
  }
  bool RunsUntilClosed() {
    for (int turn = 0; turn < 400 && screen.IsOpen(); ++turn) {
      Turns(1);
    }
    return !screen.IsOpen();
  }
  std::string RecordText() const {
    return bench.home.Exists(kOutputRecordsFile) ? bench.home.Read(kOutputRecordsFile) : "";
  }

  static constexpr std::array<std::int16_t, 4> kFound = {2, 0, 1, 4};
  static constexpr const char* kRecord =
      "inet 3 controller 1 Z=2\r\ninet 3 controller 2 Z=0\r\ninet 3 controller 3 Z=1\r\n"
      "inet 3 controller 4 Z=4\r\nend\r\n";

  OutputTest& screen = bench.output_test;
  bool is_plugin = false;
  bool silent = false;
  std::string refused;  // commands in the words of a direct line that begin so
  int exchanges = 0;
  int fail_at = 0;
  LineFailure failure = LineFailure::kLostRequest;
  bool was_heated = false;  // power and a closed contact at the same time, by the test
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SERVICE_OUTPUT_BENCH_H_
