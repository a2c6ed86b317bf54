#ifndef TAVREL_MAIN_LINE_STATE_H_
#define TAVREL_MAIN_LINE_STATE_H_

#include <optional>
#include <string>

#include "base/language.h"
#include "platform/clock.h"

namespace tavrel {

// What is known of the line to the instruments, without asking any of them.
struct LineState {
  bool Simulated = false;  // no port: nothing else counts
  bool PortOpen = false;
  std::string Port;                     // "COM3"
  std::string Device;                   // "/dev/ttyUSB0"; empty if it is not known
  std::string Speed;                    // baud: "4800"; empty if it was never chosen
  int Answered = 0;                     // exchanges of the last minute
  std::optional<WallTime> GoneSince;    // the device has vanished
  std::optional<WallTime> SilentSince;  // it is there, but nothing has answered since
  std::optional<int> NextTry;           // seconds until the lost port is tried again
  std::string Buffers;                  // how long the instruments keep what is recorded, in words
};

// The line at the foot of the sheet, in words. `now` is the wall clock: a moment of another day is
// told with its date.
[[nodiscard]] std::string LineStateText(const LineState& line, const WallTime& now,
                                        Language language);

}  // namespace tavrel

#endif  // TAVREL_MAIN_LINE_STATE_H_
