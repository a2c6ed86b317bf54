#include "instrument/sample_buffer.h"

namespace instrument {

int SampleBuffer::Store(std::int16_t word, std::optional<StoredSample>& lost) {
  lost.reset();
  if (Count() == kCapacity) {
    lost = samples_.front();
    samples_.pop_front();
  }
  samples_.push_back({++last_number_, word});
  return last_number_;
}

std::optional<StoredSample> SampleBuffer::TakeOldest() {
  if (samples_.empty()) {
    return std::nullopt;
  }
  const StoredSample oldest = samples_.front();
  samples_.pop_front();
  return oldest;
}

void SampleBuffer::Clear() {
  samples_.clear();
  last_number_ = 0;
}

}  // namespace instrument
