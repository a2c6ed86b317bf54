#ifndef TAVREL_TESTS_SETUP_CHANNEL_BENCH_H_
#define TAVREL_TESTS_SETUP_CHANNEL_BENCH_H_

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "setup/channel_adjustment.h"
#include "tests/support/bench_program.h"
#include "tests/support/line_failure.h"
#include "tests/support/plugin_line.h"

namespace tavrel {

// TavChann on a scripted instrument 3, on either kind of line, ticked every 100 ms.
// Levers: fails(command) decides for each command in direct words whether it fails, failure how;
// takes is the time of one exchange; on_command runs before each.
class ChannelBench {
 public:
  static constexpr int kInet = 3;

  explicit ChannelBench(bool plugin = false) {
    bench.port.answer = [this, plugin](const std::string& command) {
      const std::string words = plugin ? InDirectWords(command) : command;
      commands.push_back(words);
      on_command(words);
      bench.clock.Advance(takes);
      const auto answer = [&] { return bench.line.Answer(words); };
      return fails(words) ? FailedReply(failure, bench.port, answer) : answer();
    };
    bench.link.LinkOpen({"COM1", plugin ? 2 : 0, 4});
    bench.state.ActiveView = View::kMainSheet;
    bench.state.ActiveInet = kInet;
    for (int row = 0; row < kChannelRows; ++row) {
      Register('L', row) = static_cast<std::int16_t>(row == 0 ? 2 : row <= 8 ? 3 : 4);
      Register('S', row) = 1;
      Register('O', row) = static_cast<std::int16_t>(10 + row);
      Register('J', row) = 1;
      Register('K', row) = 13107;
      Register('Y', row) = static_cast<std::int16_t>(row == 0 ? 2512 : 400 + row);
    }
    Register('T', 0) = 10;
  }

  std::int16_t& Register(char letter, int row) {
    return bench.line.registers[{kInet, letter, row}];
  }

  // An exchange with the instrument, so that its state is known to be good; then the dialog opens.
  void Greet() {
    for (int attempt = 0; attempt < 3; ++attempt) {
      bench.link.ComInet = kInet;
      bench.link.ComLetter = "Y";
      bench.link.ComIndex = 0;
      bench.link.ReadReg();
    }
  }
  void Open() {
    Greet();
    OpenAsItIs();
  }
  void OpenAsItIs() {
    Forget();
    dialog->Open();
  }
  // Opens it and lets it read its sheet.
  void OpenIdle() {
    Open();
    ASSERT_TRUE(TickTo(AdjState::kIdle));
    Forget();
  }
  void Forget() {
    bench.port.sent.clear();
    commands.clear();
  }

  void Tick() {
    dialog->Timer_chann();
    bench.clock.Advance(std::chrono::milliseconds(ChannelAdjustment::kTickMilliseconds));
  }
  void Tick(double seconds) {
    const auto end = bench.clock.Elapsed() + std::chrono::duration<double>(seconds);
    while (bench.clock.Elapsed() < end) {
      Tick();
    }
  }
  // False after 10000 ticks.
  bool TickTo(AdjState state) {
    for (int tick = 0; tick < 10000; ++tick) {
      if (dialog->State() == state) {
        return true;
      }
      Tick();
    }
    return dialog->State() == state;
  }

  // A run of those rows, up to where the user has to bring them to the end of the span.
  void RunToRaised(std::int16_t sensor_code, const std::vector<int>& rows) {
    Choose(sensor_code);
    ASSERT_TRUE(TickTo(AdjState::kSelect));
    for (const int row : rows) {
      dialog->Sheet_Click(row);
    }
    dialog->CmdOK_Click();
    ASSERT_TRUE(TickTo(AdjState::kAwaitShorted));
    dialog->CmdOK_Click();
    ASSERT_TRUE(TickTo(AdjState::kAwaitRaised));
  }
  void RunToFinal(std::int16_t sensor_code, const std::vector<int>& rows) {
    RunToRaised(sensor_code, rows);
    for (const int row : rows) {
      Register('Y', row) = static_cast<std::int16_t>(4000 + row);
    }
    dialog->CmdOK_Click();
    ASSERT_TRUE(TickTo(AdjState::kAwaitFinal));
  }
  void Choose(std::int16_t sensor_code) {
    switch (sensor_code) {
      case sensor::kLinear:
        dialog->Mnu_Linear_Click();
        return;
      case sensor::kNiCrNi:
        dialog->Mnu_NiCrNi_Click();
        return;
      case sensor::kRtd:
        dialog->Mnu_RTD_Click();
        return;
      default:
        dialog->Mnu_FeCuNi_Click();
    }
  }

  const ChannelValues& Values() const { return dialog->Values(); }
  const ChannelRow& Row(int row) const { return dialog->Values().Sheet[row]; }
  // All boxes, as "title: text".
  std::vector<std::string> Boxes() const {
    std::vector<std::string> texts;
    for (const Notice& notice : bench.dialogs.boxes) {
      texts.push_back(notice.Title + ": " + notice.Text);
    }
    return texts;
  }
  std::string LastBox() const { return bench.dialogs.boxes.empty() ? "" : Boxes().back(); }

  // The next `times` commands that begin with `words`, in the words of a direct line, fail.
  void FailNext(const std::string& words, int times) {
    fails = [words, times](const std::string& command) mutable {
      return command.starts_with(words) && times-- > 0;
    };
  }

  BenchProgram bench;
  std::vector<std::string> commands;  // in direct words
  std::function<bool(const std::string&)> fails = [](const std::string&) { return false; };
  std::function<void(const std::string&)> on_command = [](const std::string&) {};
  LineFailure failure = LineFailure::kLostRequest;
  std::chrono::microseconds takes{0};
  ChannelAdjustment* const dialog = &bench.channels;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SETUP_CHANNEL_BENCH_H_
