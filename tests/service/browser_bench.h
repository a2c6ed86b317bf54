#ifndef TAVREL_TESTS_SERVICE_BROWSER_BENCH_H_
#define TAVREL_TESTS_SERVICE_BROWSER_BENCH_H_

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "service/register_sheet.h"
#include "tests/service/service_bench.h"
#include "tests/support/line_failure.h"
#include "tests/support/plugin_line.h"

namespace tavrel {

// Columns and rows of the browser of variables.
inline constexpr int kDec = 2;
inline constexpr int kLegend = 3;
inline int RowOf(char letter, int index) {
  return (letter - 'G') * 16 + index;
}

// Instrument 3 under a browser of registers, on either kind of line: registers of the bench's line,
// and the ports of its processor. Levers: is_plugin before Start; ports; masks, what a port gives
// when it is read; fails, how the command that it is asked for fails.
class BrowserBench : public ServiceBench {
 protected:
  static constexpr const char* kEscapeText = "\x1b";

  void Begin() {
    bench.state.Settings.ComMode = is_plugin ? 1 : 0;
    bench.port.answer = [this](const std::string& command) { return Reply(command); };
    Start();
    bench.state.ActiveInet = 3;
  }

  std::string Reply(const std::string& command) {
    const auto failure = fails(command);
    if (failure) {
      return FailedReply(*failure, bench.port, [&] { return Answer(command); });
    }
    return Answer(command);
  }

  // What the line says to a command that arrives.
  std::string Answer(const std::string& command) {
    if (command == kEscapeText) {
      return "";
    }
    if (is_plugin && command.starts_with("n2o")) {
      return AnswerPort(command.substr(3), '?', '=', ".");
    }
    if (!is_plugin && command.find_first_of("@:") != std::string::npos) {
      return AnswerPort(command, '@', ':', "");
    }
    return bench.line.Answer(is_plugin ? InDirectWords(command) : command);
  }

  // Pulses until the sheet has all values; at most so many.
  void Load(RegisterSheet& sheet, int pulses) {
    for (int pulse = 0; pulse < pulses && !sheet.IsLoaded(); ++pulse) {
      Pulses(1);
    }
  }

  // What an action of the user sends.
  Texts SentBy(const std::function<void()>& action) {
    bench.port.sent.clear();
    action();
    Texts sent;
    sent.swap(bench.port.sent);
    return sent;
  }
  void Set(char letter, int index, int word) {
    bench.line.registers[{3, letter, index}] = static_cast<std::int16_t>(word);
  }

  bool is_plugin = false;
  std::array<std::int16_t, 128> ports{};
  std::array<int, 128> masks{};
  std::function<std::optional<LineFailure>(const std::string&)> fails =
      [](const std::string&) -> std::optional<LineFailure> { return std::nullopt; };

 private:
  std::string AnswerPort(const std::string& command, char read, char write,
                         const char* acknowledge) {
    const std::size_t end = command.find_first_of({read, write});
    const auto address = static_cast<std::size_t>(std::stoi(command.substr(0, end), nullptr, 16));
    if (command[end] == read) {
      char digits[4];
      std::snprintf(digits, sizeof digits, "%02X\r", ports.at(address) & 0xFF);
      return digits;
    }
    const int word = std::stoi(command.substr(end + 1), nullptr, 16);
    ports.at(address) = static_cast<std::int16_t>(word | masks.at(address));
    return acknowledge;
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SERVICE_BROWSER_BENCH_H_
