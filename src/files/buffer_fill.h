#ifndef TAVREL_FILES_BUFFER_FILL_H_
#define TAVREL_FILES_BUFFER_FILL_H_

#include <chrono>
#include <optional>

namespace tavrel {

// How full the instrument's buffer of one recording is: what register R said once, plus the sets
// that the instrument may have made since then, less those that were taken. R costs an exchange
// and is read seldom; between two readings the time and the interval tell the rest. A bound from
// above: the instrument holds that many sets or fewer.
//
// "Now" is a reading of Clock::Elapsed() and never lower than the one of the call before. A moment
// in which something was asked of the instrument is that before the exchange, so that a set which
// is made during it counts.
class BufferFill {
 public:
  // A recording with room for fewer sets than this is in danger of losing some.
  static constexpr int kDangerRoom = 64;

  // The instrument held `sets` sets at `now`, and makes one in each `interval` (1 s or more). A
  // set of which some inputs have arrived already counts as held. Brought into 0..896.
  void TakeReading(int sets, std::chrono::seconds interval, std::chrono::nanoseconds now);

  // One set has arrived whole. No effect while nothing is known.
  void TakeSet(std::chrono::nanoseconds now);

  // False until the first reading; the answers below are then empty or false.
  [[nodiscard]] bool IsKnown() const { return interval_.count() > 0; }

  // The sets that wait in the instrument at most, 0..896.
  [[nodiscard]] std::optional<int> MostWaiting(std::chrono::nanoseconds now) const;

  // The sets that it has room for at least, 0..896.
  [[nodiscard]] std::optional<int> LeastRoom(std::chrono::nanoseconds now) const;

  // True if there may be room for fewer than kDangerRoom sets.
  [[nodiscard]] bool IsInDanger(std::chrono::nanoseconds now) const;

  // True if the buffer may have held 896 sets at any moment since the first reading, or since
  // ForgetFull(). A full buffer drops its oldest set for each new one.
  [[nodiscard]] bool MayHaveBeenFull(std::chrono::nanoseconds now) const;

  // What a full buffer has done is settled. It counts anew from the present count on: while 896
  // sets may still be waiting it stays true.
  void ForgetFull() { was_full_ = false; }

  // The sets that the instrument would hold at most if its buffer had no end. What is above 896
  // has been dropped.
  [[nodiscard]] std::optional<int> MostWithoutLimit(std::chrono::nanoseconds now) const;

 private:
  int count_ = 0;  // sets at since_
  std::chrono::nanoseconds since_{};
  std::chrono::seconds interval_{};  // 0: nothing is known
  bool was_full_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_BUFFER_FILL_H_
