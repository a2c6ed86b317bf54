#ifndef TAVREL_INSTRUMENT_SAMPLER_H_
#define TAVREL_INSTRUMENT_SAMPLER_H_

#include <array>
#include <cstdint>

#include "instrument/registers.h"

namespace instrument {

// Says when which input is to be sampled. All instants are whole multiples of the interval on
// the instrument's own clock, so inputs of the same interval are sampled together.
class Sampler {
 public:
  // `hold_off` in seconds: the least time from starting an input to its first sample. A host
  // starts the inputs of one recording one after the other; within this time they still count
  // as started together.
  explicit Sampler(int hold_off) : hold_off_(hold_off) {}

  // Sets the interval in seconds; 0 or less means that the input is not sampled. A change
  // starts the input anew, the same value again changes nothing.
  void SetInterval(int input, int seconds, std::int64_t now);

  // The next sample of the input is taken at the first instant that lies at least one interval
  // ahead. Inputs of the same interval that were started and still wait for their first
  // instant move with it: their series begin in the same set.
  void Start(int input, std::int64_t now);

  // To be asked once for each second and input.
  [[nodiscard]] bool IsDue(int input, std::int64_t now);

  [[nodiscard]] int Interval(int input) const { return At(input).interval; }

 private:
  struct Series {
    int interval = 0;
    bool waiting = false;
    std::int64_t not_before = 0;
  };
  [[nodiscard]] const Series& At(int input) const {
    return series_.at(static_cast<std::size_t>(input));
  }

  int hold_off_;
  std::array<Series, kInputCount> series_{};
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_SAMPLER_H_
