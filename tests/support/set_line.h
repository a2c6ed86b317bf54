#ifndef TAVREL_TESTS_SUPPORT_SET_LINE_H_
#define TAVREL_TESTS_SUPPORT_SET_LINE_H_

#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "tests/support/direct_line.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// One instrument, number 1, on a direct line that samples sets of inputs by the clock of the test,
// into buffers of 896 values. The values tell their set and input: set s of input k is 100 s + k,
// s counted from 1 and never begun anew, but taken modulo kCycle so that it fits a word.
// Levers: those of DirectLine; places (when an input is sampled in its set), interval;
// swallowed (commands that are carried out once without a reply), dropped (commands that do not
// arrive once), Restart().
class SetLine : public DirectLine {
 public:
  static constexpr std::size_t kBuffer = 896;
  static constexpr int kCycle = 320;

  SetLine(FakeClock& clock, FakePort& port) : clock_(clock) {
    port.answer = [this](const std::string& command) { return Hear(command); };
  }

  std::chrono::nanoseconds interval = std::chrono::seconds(10);
  std::map<int, std::chrono::nanoseconds> places;  // the inputs that are sampled
  std::set<std::string> swallowed;
  std::set<std::string> dropped;
  std::function<void(const std::string&)> on_command = [](const std::string&) {};

  // The first set begins so much later than now.
  void Begin(std::chrono::nanoseconds later) {
    first_ = clock_.Elapsed() + later;
    made_.clear();
    buffers.clear();
  }

  // Switched off and on: the buffers are empty, all series begin in the same set after a while.
  void Restart(std::chrono::nanoseconds later) {
    Sample();
    int most = 0;
    for (const auto& [input, made] : made_) {
      most = std::max(most, made);
    }
    before_ += most;
    Begin(later);
  }

  // The same where sampling goes on by the instrument's own clock: the rest of a set that has begun
  // is left out.
  void RestartInPlace() {
    const auto since = clock_.Elapsed() - first_;
    Restart(interval - (since % interval + interval) % interval);
  }

  // Sets that were begun so far.
  [[nodiscard]] int Sets() {
    Sample();
    int most = 0;
    for (const auto& [input, made] : made_) {
      most = std::max(most, made);
    }
    return before_ + most;
  }

  void Sample() {
    for (const auto& [input, place] : places) {
      while (first_ + place + made_[input] * interval <= clock_.Elapsed()) {
        auto& buffer = buffers[{1, input}];
        const int its_set = (before_ + ++made_[input]) % kCycle;
        buffer.push_back(static_cast<std::int16_t>((100 * its_set) + input));
        if (buffer.size() > kBuffer) {
          buffer.pop_front();
        }
      }
    }
  }

 private:
  std::string Hear(const std::string& command) {
    Sample();
    on_command(command);
    if (dropped.erase(command) != 0) {
      return "";
    }
    const bool starts = command.substr(0, 1) == "R" && command.find('=') != std::string::npos;
    const std::string reply = Answer(command);
    if (starts) {
      Begin(interval + interval / 3);
    }
    return swallowed.erase(command) != 0 ? "" : reply;
  }

  FakeClock& clock_;
  std::chrono::nanoseconds first_ = std::chrono::hours(100000);
  std::map<int, int> made_;
  int before_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_SET_LINE_H_
