#include "instrument/self_test.h"

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
  switch (command) {
    case kRam:
      seconds_left_ = kRamSeconds;
      break;
    case kEprom:
      seconds_left_ = kEpromSeconds;
      break;
    default:
      // The watchdog test lasts as long as the period that it measures.
      seconds_left_ = results_[kWatchdog] * kWatchdogUnit;
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
  return results_[running_];
}

}  // namespace instrument
