#ifndef TAVREL_TESTS_SUPPORT_SAMPLING_LINE_H_
#define TAVREL_TESTS_SUPPORT_SAMPLING_LINE_H_

#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/direct_line.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// Instruments on a direct line that sample by the clock of the test, into buffers of 896 values
// that drop their oldest one. An exchange takes the time that its characters need at `baud`.
// The values of an input count up from 1, so that a missing one shows.
// Levers: those of DirectLine, baud, clearing_pauses (a series that is cleared begins anew at least
// one interval later; the values of the sets between are never made).
class SamplingLine : public DirectLine {
 public:
  static constexpr std::size_t kBuffer = 896;

  SamplingLine(FakeClock& clock, FakePort& port) : clock_(clock), port_(port) {
    port_.answer = [this](const std::string& command) {
      SampleUntilNow();
      Reply(command, Answer(command));
      Pause(command);
      return std::string();
    };
  }

  int baud = 4800;
  bool clearing_pauses = false;

  // `input` makes a value in each `interval`, the first one `phase` after now; `stored` wait
  // already.
  void Sample(int inet, int input, std::chrono::nanoseconds interval,
              std::chrono::nanoseconds phase, int stored) {
    Source source{inet, input, interval, clock_.Elapsed() + phase, 0};
    for (int count = 0; count < stored; ++count) {
      Push(source);
    }
    sources_.push_back(source);
  }

  // The series goes on with another interval, from its next value on.
  void SampleEvery(int inet, int input, std::chrono::nanoseconds interval) {
    for (Source& source : sources_) {
      if (source.inet == inet && source.input == input) {
        source.interval = interval;
      }
    }
  }

  // Values that no longer fitted in.
  [[nodiscard]] int Overrun() const { return overrun_; }

  // Values that wait now.
  [[nodiscard]] std::size_t Waiting(int inet, int input) {
    SampleUntilNow();
    return buffers[{inet, input}].size();
  }

 private:
  static constexpr int kBitsOfACharacter = 11;

  struct Source {
    int inet;
    int input;
    std::chrono::nanoseconds interval;
    std::chrono::nanoseconds next;
    std::int16_t made;
  };

  void Push(Source& source) {
    auto& buffer = buffers[{source.inet, source.input}];
    buffer.push_back(++source.made);
    if (buffer.size() > kBuffer) {
      buffer.pop_front();
      ++overrun_;
    }
  }
  void SampleUntilNow() {
    for (Source& source : sources_) {
      for (; source.next <= clock_.Elapsed(); source.next += source.interval) {
        Push(source);
      }
    }
  }
  void Pause(const std::string& command) {
    for (Source& source : sources_) {
      const std::string clears = "R" + std::to_string(source.inet - 1) +
                                 "0123456789ABCDEF"[source.input] + std::string("=0\r");
      const auto begins = clock_.Elapsed() + source.interval;
      while (clearing_pauses && command == clears && source.next < begins) {
        ++source.made;
        source.next += source.interval;
      }
    }
  }
  void Reply(const std::string& command, const std::string& reply) {
    if (!reply.empty()) {
      const auto bits = kBitsOfACharacter * (command.size() + reply.size());
      port_.Arrive(std::chrono::nanoseconds(std::chrono::seconds(bits)) / baud, reply);
    }
  }

  FakeClock& clock_;
  FakePort& port_;
  std::vector<Source> sources_;
  int overrun_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_SAMPLING_LINE_H_
