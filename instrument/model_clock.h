#ifndef TAVREL_INSTRUMENT_MODEL_CLOCK_H_
#define TAVREL_INSTRUMENT_MODEL_CLOCK_H_

#include "instrument/instrument.h"
#include "instrument/line_timing.h"

namespace instrument {

// Turns real time into the instruments' time, which may run faster.
class ModelClock {
 public:
  // Without a cause from outside the instruments' time is advanced as often as this. Who asks for
  // it in between gets it to the millisecond.
  static constexpr Instrument::Time kStep = Instrument::kOvenStep;

  struct Portion {
    Instrument::Time time{0};
    Instrument::Pace pace = Instrument::Pace::kFine;
  };

  explicit ModelClock(double speedup) : speedup_(speedup) {}
  void Start(Moment now) { start_ = now; }

  // The time that is due by `now`, in portions that take some milliseconds to compute. After a
  // long stop of the process there are many portions, the first of them at the coarse pace;
  // of a stop longer than 40 days of the instruments' time only the last 40 days are made up.
  [[nodiscard]] Portion Take(Moment now);

  // When the next step is due; in the past while portions are left.
  [[nodiscard]] Moment NextDue() const;

 private:
  double speedup_;
  Moment start_{};
  Instrument::Time taken_{0};
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_MODEL_CLOCK_H_
