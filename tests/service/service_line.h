#ifndef TAVREL_TESTS_SERVICE_SERVICE_LINE_H_
#define TAVREL_TESTS_SERVICE_SERVICE_LINE_H_

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "tests/service/service_bench.h"
#include "tests/support/line_failure.h"
#include "tests/support/plugin_line.h"

namespace tavrel {

inline constexpr const char* kEsc = "\x1b";

// A service screen on a line of either kind, with the instruments of DirectLine.
// Levers: failures (how the next exchanges end, in their order; none is a good one), replies (what
// comes in place of the next answers, in their order; "good" is the answer itself), on_command
// (what an instrument does with a command that it has carried out, in the words of a direct line).
class ServiceLine : public ServiceBench {
 protected:
  ServiceLine() {
    bench.port.answer = [this](const std::string& command) { return Answer(command); };
  }
  void StartOn(int com_mode, int inet) {
    bench.state.Settings.ComMode = com_mode;
    Start();
    bench.state.ActiveInet = inet;
  }
  [[nodiscard]] std::string Carry(const std::string& words) {
    const bool is_reading = words.back() == '?';
    if (is_reading) {
      on_command(words);
    }
    std::string answer = bench.line.Answer(words);
    if (!is_reading) {
      on_command(words);
    }
    return answer;
  }
  [[nodiscard]] std::string Answer(const std::string& command) {
    if (command == kEsc) {
      return "";
    }
    const bool is_direct = bench.state.Settings.ComMode == 0;
    const std::string words = is_direct ? command : InDirectWords(command);
    if (!replies.empty()) {
      const std::string reply = replies.front();
      replies.pop_front();
      const std::string answer = Carry(words);
      return reply == "good" ? answer : reply;
    }
    if (!failures.empty()) {
      const std::optional<LineFailure> failure = failures.front();
      failures.pop_front();
      if (failure) {
        return FailedReply(*failure, bench.port, [&] { return Carry(words); });
      }
    }
    return Carry(words);
  }
  void FailExchange(int number, LineFailure failure) {
    failures.assign(static_cast<std::size_t>(number), std::nullopt);
    failures.emplace_back(failure);
  }
  [[nodiscard]] std::int16_t& Word(int inet, char letter, int index) {
    return bench.line.registers[{inet, letter, index}];
  }

  std::deque<std::optional<LineFailure>> failures;
  std::deque<std::string> replies;
  std::function<void(const std::string& words)> on_command = [](const std::string&) {};
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SERVICE_SERVICE_LINE_H_
