#ifndef TAVREL_INSTRUMENT_SAMPLER_H_
#define TAVREL_INSTRUMENT_SAMPLER_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "instrument/registers.h"

namespace instrument {

// The order in which the inputs of one set are sampled.
enum class SamplingOrder : std::uint8_t {
  kTogether,    // all at the same instant
  kAscending,   // input 1 first
  kDescending,  // input 15 first
  kRandom,      // an order drawn once, the same in every set
};

// How the inputs of one set follow each other.
struct Scan {
  SamplingOrder order = SamplingOrder::kTogether;
  std::chrono::milliseconds distance{0};  // 0..500, between one input and the next
};

// The farthest that two successive inputs of a set may lie apart.
inline constexpr std::chrono::milliseconds kWidestDistance{500};

// The time from the first to the last of the inputs 1..15.
[[nodiscard]] std::chrono::milliseconds WidthOf(const Scan& scan);

// True if the inputs of one set are all sampled before the next set begins.
[[nodiscard]] bool FitsInto(const Scan& scan, std::chrono::milliseconds interval);

// Says when which input is to be sampled. A set begins at a whole multiple of the interval on
// the instrument's own clock; each input follows at its own distance from there, which is always
// the same. Input 0 is sampled when the set begins.
class Sampler {
 public:
  using Time = std::chrono::milliseconds;

  // `hold_off`: the least time from starting an input to its first set. A host starts the inputs
  // of one recording one after the other; within this time they still count as started
  // together. `seed` draws the random order.
  Sampler(Time hold_off, const Scan& scan, std::uint64_t seed);

  // False and no change if the inputs of a set would not fit into the interval. 0 or less means
  // that the input is not sampled. A change starts the input anew, the same value again changes
  // nothing.
  [[nodiscard]] bool SetInterval(int input, Time interval, Time now);

  // The input is sampled from the first set on that begins at least one interval ahead. Inputs
  // of the same interval whose first set has not begun move with it: their series begin in the
  // same set.
  void Start(int input, Time now);

  // A power failure at `now`: the series of all inputs begin in the next set of their interval.
  void Restart(Time now);

  // The first instant after `now` at which the input is sampled; nothing if it is not.
  [[nodiscard]] std::optional<Time> NextInstant(int input, Time now) const;

  [[nodiscard]] Time Interval(int input) const { return At(input).interval; }

 private:
  struct Series {
    Time interval{0};
    Time offset{0};     // of the input in its set
    Time first_set{0};  // the first set may not begin before this
  };
  [[nodiscard]] const Series& At(int input) const {
    return series_.at(static_cast<std::size_t>(input));
  }

  Time hold_off_;
  Scan scan_;
  std::array<Series, kInputCount> series_{};
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_SAMPLER_H_
