#include "instrument/sampler.h"

#include <algorithm>

namespace instrument {

void Sampler::SetInterval(int input, int seconds, std::int64_t now) {
  Series& series = series_.at(static_cast<std::size_t>(input));
  const int interval = std::max(seconds, 0);
  if (interval == series.interval) {
    return;
  }
  series.interval = interval;
  Start(input, now);
}

void Sampler::Start(int input, std::int64_t now) {
  Series& started = series_.at(static_cast<std::size_t>(input));
  started.waiting = true;
  const std::int64_t not_before = now + std::max(started.interval, hold_off_);
  for (Series& series : series_) {
    if (series.waiting && series.interval == started.interval) {
      series.not_before = not_before;
    }
  }
}

bool Sampler::IsDue(int input, std::int64_t now) {
  Series& series = series_.at(static_cast<std::size_t>(input));
  if (series.interval == 0 || now < series.not_before || now % series.interval != 0) {
    return false;
  }
  series.waiting = false;
  return true;
}

}  // namespace instrument
