#include "files/buffer_fill.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "files/recording_format.h"

namespace tavrel {
namespace {

// The clocks of two machines differ: one part in 5000 is 200 ppm.
constexpr std::int64_t kClockError = 5000;

// Sets that are made in a time are at most its intervals rounded up, for nobody knows when in
// its interval it began.
std::int64_t MostMade(std::chrono::nanoseconds time, std::chrono::nanoseconds interval) {
  const std::int64_t longest = time.count() + time.count() / kClockError;
  return (longest + interval.count() - 1) / interval.count();
}

}  // namespace

void BufferFill::TakeReading(int sets, std::chrono::seconds interval,
                             std::chrono::nanoseconds now) {
  was_full_ = MayHaveBeenFull(now);
  count_ = std::clamp(sets, 0, kBufferSets);
  since_ = now;
  interval_ = std::max(interval, std::chrono::seconds(1));
}

// A buffer that may be full holds no more than 895 sets behind this one, however many it has
// dropped; and one that seemed empty had this set all the same.
void BufferFill::TakeSet(std::chrono::nanoseconds now) {
  const auto most = MostWithoutLimit(now);
  if (!most) {
    return;
  }
  was_full_ = was_full_ || *most >= kBufferSets;
  const int waiting = std::clamp(*most, 1, kBufferSets);
  if (waiting != *most) {
    count_ = waiting;
    since_ = now;
  }
  --count_;
}

std::optional<int> BufferFill::MostWithoutLimit(std::chrono::nanoseconds now) const {
  if (!IsKnown()) {
    return std::nullopt;
  }
  const std::int64_t most = count_ + MostMade(now - since_, interval_);
  return static_cast<int>(std::clamp<std::int64_t>(most, 0, std::numeric_limits<int>::max()));
}

std::optional<int> BufferFill::MostWaiting(std::chrono::nanoseconds now) const {
  const auto most = MostWithoutLimit(now);
  return most ? std::optional(std::min(*most, kBufferSets)) : std::nullopt;
}

std::optional<int> BufferFill::LeastRoom(std::chrono::nanoseconds now) const {
  const auto most = MostWaiting(now);
  return most ? std::optional(kBufferSets - *most) : std::nullopt;
}

bool BufferFill::IsInDanger(std::chrono::nanoseconds now) const {
  return LeastRoom(now).value_or(kBufferSets) < kDangerRoom;
}

bool BufferFill::MayHaveBeenFull(std::chrono::nanoseconds now) const {
  return was_full_ || MostWaiting(now) == kBufferSets;
}

}  // namespace tavrel
