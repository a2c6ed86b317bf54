#ifndef TAVREL_INSTRUMENT_LINE_TIMING_H_
#define TAVREL_INSTRUMENT_LINE_TIMING_H_

#include <chrono>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "instrument/instrument_line.h"

namespace instrument {

using Moment = std::chrono::steady_clock::time_point;
using CharTime = std::chrono::nanoseconds;

// The time of one character: start, 8 data bits, parity or second stop bit, stop bit make 11
// bits in both kinds of line. A baud rate of 0 takes no time.
[[nodiscard]] constexpr CharTime CharTimeAt(int baud) {
  constexpr std::int64_t kBits = 11;
  return baud > 0 ? CharTime(kBits * 1'000'000'000 / baud) : CharTime(0);
}

// A host waits 100 ms for the end of a reply, from the end of its command on. What is complete
// later than this counts as late: the rest may pass between the machine's line and its programs.
inline constexpr std::chrono::milliseconds kInTime{90};

// A byte and the moment at which its last bit is over.
struct TimedByte {
  Moment when;
  char byte = 0;
  // Of an incoming byte: by so much it may have come earlier, for nobody looked at the line.
  std::chrono::nanoseconds unseen{0};
};

// A pseudo-terminal delivers a whole command at once. This holds each byte back until it would
// have arrived over a real line.
class IncomingBytes {
 public:
  explicit IncomingBytes(CharTime char_time) : char_time_(char_time) {}
  // Nobody has looked at the line for the time `unseen`.
  void Add(std::string_view bytes, Moment now, std::chrono::nanoseconds unseen = {});
  // The next byte that has arrived by `now`, with the moment of its arrival.
  [[nodiscard]] std::optional<TimedByte> Take(Moment now);
  [[nodiscard]] std::optional<Moment> NextDue() const;
  void DropAll() { bytes_.clear(); }

 private:
  CharTime char_time_;
  Moment last_{};
  std::deque<TimedByte> bytes_;
};

// Bytes of replies, each with the moment at which the host is to see it. A reply waits for the
// one before it, but a late one lets others pass: the two may then mix, as on a real line. A
// sample whose reply is complete only after kInTime is handed over late, whatever the cause; where
// that depends on when its command came, and nobody looked at the line then, it is in doubt.
class OutgoingBytes {
 public:
  struct Due {
    std::vector<TimedByte> bytes;
    std::vector<HandedSample> handed;  // whose replies are complete with these bytes
  };

  explicit OutgoingBytes(CharTime char_time) : char_time_(char_time) {}
  // `asked` is the moment at which the command was complete, or up to `unseen` earlier.
  void Add(const Reply& reply, Moment asked, std::chrono::nanoseconds unseen = {});
  [[nodiscard]] Due TakeDue(Moment now);
  [[nodiscard]] std::optional<Moment> NextDue() const;
  // Forgets what has not gone out; returns the samples that are lost with it.
  [[nodiscard]] std::vector<HandedSample> DropAll();

 private:
  struct Item {
    char byte = 0;
    std::optional<HandedSample> completes;
    Moment asked;
    std::chrono::nanoseconds unseen{0};
  };

  [[nodiscard]] static HandedSample HandedAt(Moment now, const Item& item);

  CharTime char_time_;
  Moment busy_until_{};
  std::multimap<Moment, Item> items_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_LINE_TIMING_H_
