#ifndef TAVREL_TESTS_TRUTH_TRUTH_FILE_H_
#define TAVREL_TESTS_TRUTH_TRUTH_FILE_H_

#include <cstdint>
#include <istream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tavrel {

// What became of a sample that an instrument took.
enum class SampleFate : std::uint8_t {
  kWaiting,    // still in the instrument
  kGood,       // handed over in a reply that went out whole
  kCut,        // handed over as kGood, but perhaps nobody was there to take the reply, or too late
  kLost,       // handed over in a reply that was lost, damaged or late
  kOverrun,    // pushed out of a full buffer
  kForgotten,  // gone with a restart of the instrument
  kCleared,    // gone with its buffer, which was cleared
};

// One sample of one input.
struct TakenSample {
  double seconds = 0;  // the instrument's own time
  std::int16_t word = 0;
  SampleFate fate = SampleFate::kWaiting;
  // The samples of one set have the same number in all inputs that were started together,
  // however far apart they were taken. Numbers begin at 1 again with each clearing and restart,
  // which are counted here.
  int epoch = 0;
  int number = 0;
};

// The samples of each input in the order in which they were taken, by instrument and input.
using InputKey = std::pair<int, int>;
struct LineTruth {
  std::map<InputKey, std::vector<TakenSample>> inputs;
  int handed = 0;    // samples that were handed over, whatever became of the reply
  int lost = 0;      // of these, those whose fate is kLost
  int overruns = 0;  // samples that were pushed out of a full buffer
};

// Reads a truth file of tavrel-instrument. `cuts` are counts of handed samples: the last one of
// each count may have been on its way when its reader was cut off.
[[nodiscard]] LineTruth ReadLineTruth(std::istream& file, const std::vector<int>& cuts);

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_TRUTH_FILE_H_
