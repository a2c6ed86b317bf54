#ifndef TAVREL_TESTS_SUPPORT_CONTROL_BENCH_H_
#define TAVREL_TESTS_SUPPORT_CONTROL_BENCH_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/bench_program.h"
#include "tests/support/line_failure.h"
#include "tests/support/plugin_line.h"

namespace tavrel {

// Slot 1 with controller 2 of instrument 3, on either kind of line, and an open file.
// Levers: fail_at is the exchange, counted from 1 after Count(), that fails (0: none), fail_from
// that one and all later ones, failure how they do so; lose_at is carried out, but its reply is
// lost.
class ControlBench {
 public:
  static constexpr int kInet = 3;
  static constexpr int kCtrl = 2;

  explicit ControlBench(bool plugin = false) {
    bench.port.answer = [this, plugin](const std::string& command) {
      ++exchanges;
      const std::string words = plugin ? InDirectWords(command) : command;
      if (exchanges == fail_at || (fail_from > 0 && exchanges >= fail_from)) {
        return FailedReply(failure, bench.port, [&] { return bench.line.Answer(words); });
      }
      const std::string reply = bench.line.Answer(words);
      return exchanges == lose_at ? std::string() : reply;
    };
    bench.link.LinkOpen({"COM1", plugin ? 2 : 0, 4});
    RunState& state = bench.state;
    state.SelSlot = 1;
    state.ActiveView = View::kTavWork;
    state.Unit[1] = BenchProgram::Header(kInet, kCtrl, 2, false);
    state.Unit[1].UnitProgName.Set("");
    state.SlotFile[1] = "M260314A.OVN";
    state.SlotPath[1] = bench.home.File("tavdat");
    std::string header(sizeof(UnitRecord), '\0');
    std::memcpy(header.data(), &state.Unit[1], header.size());
    bench.home.Write("tavdat/M260314A.OVN", header);
    state.RecInterval[1] = 10;
    state.SampleLimit[1] = 1000;
    static_cast<void>(
        state.SlotFileNo[1].Open(bench.home.File("tavdat/M260314A.OVN"), FileAccess::kUpdate));
    bench.screens.built = {View::kTavPid, View::kTavWait};
  }

  std::int16_t& Register(char letter) { return bench.line.registers[{kInet, letter, kCtrl}]; }
  UnitRecord& Unit() { return bench.state.Unit[1]; }

  // An exchange with the instrument, so that its state is known to be good.
  void Greet() {
    bench.link.ComInet = kInet;
    bench.link.ComLetter = "Y";
    bench.link.ComIndex = kCtrl;
    bench.link.ReadReg();
  }

  // What is sent from now on is told by Sent().
  void Count() {
    exchanges = 0;
    bench.port.sent.clear();
  }
  const std::vector<std::string>& Sent() const { return bench.port.sent; }

  // The cycle beneath a dialog for a while, without a screen that asks for anything itself.
  void Tick(double seconds) {
    MainCycle::TickHandlers handlers;
    handlers.read_back = [this] { return bench.ReadBack(); };
    bench.cycle.SetHandlers(handlers);
    bench.cycle.Start();
    bench.Run(seconds);
    bench.cycle.Stop();
  }
  std::vector<std::string> Announced() const {
    std::vector<std::string> texts;
    for (const Notice& notice : bench.dialogs.announced) {
      texts.push_back(notice.Title + ": " + notice.Text);
    }
    return texts;
  }

  // The last box, as "title: text".
  std::string LastBox() const {
    const std::vector<Notice>& boxes = bench.dialogs.boxes;
    return boxes.empty() ? "" : boxes.back().Title + ": " + boxes.back().Text;
  }

  BenchProgram bench;
  int exchanges = 0;
  int fail_at = 0;
  int fail_from = 0;
  LineFailure failure = LineFailure::kRefusal;
  int lose_at = 0;
};

// The words of a program file: a record of zeros, then steps of status, increment, setpoint, time.
inline std::string ProgramBytes(const std::vector<std::vector<int>>& steps) {
  std::string bytes(8, '\0');
  for (const std::vector<int>& step : steps) {
    for (const int word : step) {
      bytes += static_cast<char>(word & 0xFF);
      bytes += static_cast<char>((word >> 8) & 0xFF);
    }
  }
  return bytes;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_CONTROL_BENCH_H_
