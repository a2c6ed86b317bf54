#include "instrument/self_test.h"

#include "instrument/numbers.h"

namespace instrument {
namespace {

constexpr double kRamSeconds = 3.0;
constexpr double kEpromSeconds = 2.0;
constexpr double kWatchdogUnit = 0.01;  // seconds

}  // namespace

bool SelfTest::Knows(int command) {
  return command == kRam || command == kEprom || command == kWatchdog;
}

void SelfTest::Begin(int command) {
  running_ = command;
  if (results_[command].hangs) {
    seconds_left_ = 0.0;
    return;
  }
  switch (command) {
    case kRam:
      seconds_left_ = kRamSeconds;
      break;
    case kEprom:
      seconds_left_ = kEpromSeconds;
      break;
    default:
      // The watchdog test lasts as long as the period that it measures.
      seconds_left_ = results_[kWatchdog].word * kWatchdogUnit;
      break;
  }
}

std::optional<std::int16_t> SelfTest::Advance(double seconds) {
  if (seconds_left_ <= 0.0) {
    return std::nullopt;
  }
  seconds_left_ -= seconds;
  if (seconds_left_ > 0.0) {
    return std::nullopt;
  }
  return results_[running_].word;
}

std::optional<int> TestNamed(std::string_view name) {
  if (name == "ram") {
    return SelfTest::kRam;
  }
  if (name == "eprom") {
    return SelfTest::kEprom;
  }
  return name == "watchdog" ? std::optional(SelfTest::kWatchdog) : std::nullopt;
}

std::optional<SelfTest::Result> ParseTestResult(std::string_view text) {
  if (text == "hang") {
    return SelfTest::Result{0, true};
  }
  const auto number = ParseNumber<std::int16_t>(text, -32768, 32767);
  return number ? std::optional(SelfTest::Result{*number}) : std::nullopt;
}

}  // namespace instrument
