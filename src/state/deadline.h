#ifndef TAVREL_STATE_DEADLINE_H_
#define TAVREL_STATE_DEADLINE_H_

#include "platform/clock.h"

namespace tavrel {

// What the cycle does again and again, and how often, in seconds.
inline constexpr float kWakeSeconds = 10;     // waiting slots are read again
inline constexpr float kMinuteSeconds = 60;   // steps of the controller programs
inline constexpr float kFlushSeconds = 1200;  // what was recorded is put to the disk
inline constexpr float kRefreshSeconds = 5;   // between two passes of the sheet or the worksheet
inline constexpr float kWaitBarSeconds = 1;   // between two steps of the wait bar

// A moment of the day, in seconds since local midnight in single precision. It is not past before
// the clock has gone beyond it, so 0 is due at once at any time but midnight itself. Over midnight
// all deadlines are set anew.
struct Deadline {
  float At = 0;

  [[nodiscard]] bool IsPast(const Clock& clock) const {
    return static_cast<float>(clock.Timer()) > At;
  }
  void SetIn(float seconds, const Clock& clock) {
    At = static_cast<float>(clock.Timer()) + seconds;
  }
  void MakeDue() { At = 0; }
};

}  // namespace tavrel

#endif  // TAVREL_STATE_DEADLINE_H_
