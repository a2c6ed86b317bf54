#ifndef TAVREL_INSTRUMENT_SAMPLE_BUFFER_H_
#define TAVREL_INSTRUMENT_SAMPLE_BUFFER_H_

#include <cstdint>
#include <deque>
#include <optional>

namespace instrument {

// One stored sample of an input: its running number since the last clear, from 1, and its word.
struct StoredSample {
  int number = 0;
  std::int16_t word = 0;
};

// The stored series of one input. It holds 896 samples; a further one pushes out the oldest.
class SampleBuffer {
 public:
  static constexpr int kCapacity = 896;

  // Stores `word` under the next number, which is returned. `lost` takes the sample that had to
  // go for it, if one had.
  int Store(std::int16_t word, std::optional<StoredSample>& lost);

  // Hands over the oldest sample, once; nothing when the buffer is empty.
  [[nodiscard]] std::optional<StoredSample> TakeOldest();

  // Empties the buffer; numbers begin at 1 again.
  void Clear();

  [[nodiscard]] int Count() const { return static_cast<int>(samples_.size()); }

 private:
  std::deque<StoredSample> samples_;
  int last_number_ = 0;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_SAMPLE_BUFFER_H_
