#ifndef TAVREL_PLATFORM_PROGRESS_METER_H_
#define TAVREL_PLATFORM_PROGRESS_METER_H_

#include <chrono>
#include <cstddef>
#include <functional>

#include "platform/clock.h"

namespace tavrel {

inline constexpr int kNoProgress = -1;  // the bar is hidden

// Decides when an operation takes so long that a bar must tell how far it is: after half a second,
// and from then on with each whole percent. One meter serves one operation.
class ProgressMeter {
 public:
  static constexpr std::chrono::milliseconds kPatience{500};

  // `clock` outlives the meter. `show` gets the percents, 0..100.
  ProgressMeter(const Clock& clock, std::function<void(int percent)> show)
      : clock_(clock), show_(std::move(show)), begin_(clock.Elapsed()) {}

  void Step(std::size_t done, std::size_t of) {
    if (of == 0 || clock_.Elapsed() - begin_ < kPatience) {
      return;
    }
    const int percent = static_cast<int>(done * 100 / of);
    if (percent != shown_) {
      shown_ = percent;
      show_(percent);
    }
  }

 private:
  const Clock& clock_;
  std::function<void(int)> show_;
  std::chrono::nanoseconds begin_;
  int shown_ = kNoProgress;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_PROGRESS_METER_H_
