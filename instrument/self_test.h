#ifndef TAVREL_INSTRUMENT_SELF_TEST_H_
#define TAVREL_INSTRUMENT_SELF_TEST_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

namespace instrument {

// The firmware's own tests behind the command mailbox. One runs at a time and takes its time.
class SelfTest {
 public:
  static constexpr int kRam = 6;        // result 0: passed, else the address that failed
  static constexpr int kEprom = 9;      // likewise
  static constexpr int kWatchdog = 10;  // result: the watchdog's period in units of 10 ms
  // What a test gives.
  struct Result {
    std::int16_t word = 0;
    bool hangs = false;  // it never ends by itself
  };
  static constexpr std::int16_t kFirmwareVersion = 0x0115;

  [[nodiscard]] static bool Knows(int command);
  void SetResult(int command, Result result) { results_[command] = result; }

  // Begins a test, in place of one that may run.
  void Begin(int command);
  void Abort() { seconds_left_ = 0.0; }
  // Lets `seconds` pass; gives the result when the running test ends in them.
  [[nodiscard]] std::optional<std::int16_t> Advance(double seconds);
  // The command of the test that runs or ran last.
  [[nodiscard]] int Running() const { return running_; }

 private:
  std::map<int, Result> results_{{kRam, {}}, {kEprom, {}}, {kWatchdog, {160}}};
  int running_ = 0;
  double seconds_left_ = 0.0;
};

// "ram", "eprom" or "watchdog": the command that runs it.
[[nodiscard]] std::optional<int> TestNamed(std::string_view name);

// A number of 16 bits, or "hang"; nothing for another text.
[[nodiscard]] std::optional<SelfTest::Result> ParseTestResult(std::string_view text);

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_SELF_TEST_H_
