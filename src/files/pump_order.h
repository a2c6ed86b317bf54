#ifndef TAVREL_FILES_PUMP_ORDER_H_
#define TAVREL_FILES_PUMP_ORDER_H_

#include <chrono>
#include <optional>
#include <vector>

#include "files/buffer_fill.h"
#include "files/recording_format.h"
#include "state/run_state.h"

namespace tavrel {

// Which recordings the pump serves before all others, because their buffers in the instruments
// come near their ends. By its cursor alone the pump would drain one recording whole before
// another has its turn, and lose sets of those that come last. While no buffer is in danger it
// says nothing, and the cursor alone decides.
//
// Slots 1..12. Moments are readings of Clock::Elapsed().
class PumpOrder {
 public:
  using Time = std::chrono::nanoseconds;

  // An outage that lasts so long can have filled a buffer; a shorter one costs no exchange.
  static constexpr std::chrono::seconds kOutage{60};

  // After a failed exchange a slot in danger is tried again without waiting for the ten-second
  // tick, but not for longer than this: then the line is not bad, the instrument is away.
  static constexpr std::chrono::seconds kBadLine{5};

  // The count of the slot's buffer is to be read before its next sample.
  void WantReading(int slot) { entries_[slot].is_wanted = true; }

  // The instrument held `sets` sets of the slot's recording at `now`, before the exchange that
  // said so.
  void TakeReading(int slot, int sets, std::chrono::seconds interval, Time now);

  // The instrument refuses to count; it is not asked again before the next outage.
  void TakeRefusal(int slot);

  // One set of the slot is in its file. The next slot in danger has its turn then.
  void TakeSet(int slot, Time now);

  // How an exchange for the slot has ended: an outage begins with the first one that fails, and
  // the next slot in danger has its turn.
  void TakeFailure(int slot, Time now);
  void TakeAnswer(int slot) { entries_[slot].failing_since.reset(); }

  // True if the count is to be read before anything else of that slot: at the start, and when its
  // instrument may be back after an outage.
  [[nodiscard]] bool WantsReading(int slot, Time now) const;

  // True for a slot in danger whose last exchange has failed on a line that is only bad.
  [[nodiscard]] bool MayTryAgain(int slot, Time now) const;

  // The slots to be served first: those of which a count is wanted, then those in danger from the
  // one on whose turn it is. Only slots that are kReading. Empty: the cursor decides.
  [[nodiscard]] std::vector<int> First(const BySlot<ReadState>& read_state, Time now) const;

  // True if the slot's buffer may have dropped a set since its count was read last: the count is to
  // be read again before the next sample.
  [[nodiscard]] bool MayHaveDropped(int slot, Time now) const {
    return entries_[slot].fill.MostWithoutLimit(now).value_or(0) > kBufferSets;
  }

  [[nodiscard]] const BufferFill& Fill(int slot) const { return entries_[slot].fill; }

 private:
  struct Entry {
    BufferFill fill;
    bool is_wanted = false;
    std::optional<Time> failing_since;
  };

  BySlot<Entry> entries_;
  int turn_ = kSlots;  // it or the next one below it is the slot in danger to be served next
};

}  // namespace tavrel

#endif  // TAVREL_FILES_PUMP_ORDER_H_
