#ifndef TAVREL_INSTRUMENT_MODEL_CLOCK_H_
#define TAVREL_INSTRUMENT_MODEL_CLOCK_H_

#include <cstdint>

#include "instrument/instrument.h"
#include "instrument/line_timing.h"

namespace instrument {

// Turns real time into ticks of the instruments' time, which may run faster.
class ModelClock {
 public:
  struct Portion {
    std::int64_t ticks = 0;
    Instrument::Pace pace = Instrument::Pace::kFine;
  };

  explicit ModelClock(double speedup) : speedup_(speedup) {}
  void Start(Moment now) { start_ = now; }

  // The ticks that are due by `now`, in portions that take some milliseconds to compute. After a
  // long stop of the process there are many portions, the first of them at the coarse pace;
  // of a stop longer than 40 days of the instruments' time only the last 40 days are made up.
  [[nodiscard]] Portion Take(Moment now);

  // When the next tick is due; in the past while portions are left.
  [[nodiscard]] Moment NextDue() const;

 private:
  double speedup_;
  Moment start_{};
  std::int64_t taken_ = 0;  // ticks
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_MODEL_CLOCK_H_
