#include "instrument/model_clock.h"

#include <algorithm>

namespace instrument {
namespace {

constexpr std::int64_t kHour = std::int64_t{3600} * Instrument::kTicksPerSecond;
constexpr std::int64_t kLongestLag = 40LL * 24LL * kHour;
// Beyond this lag the ovens are computed once a second only.
constexpr std::int64_t kCoarseBeyond = 6 * kHour;
constexpr std::int64_t kPortion = kHour / 6;

}  // namespace

ModelClock::Portion ModelClock::Take(Moment now) {
  const std::chrono::duration<double> real = now - start_;
  const auto due = static_cast<std::int64_t>(real.count() * speedup_ * Instrument::kTicksPerSecond);
  const std::int64_t lag = std::max<std::int64_t>(due - taken_, 0);
  taken_ += std::max<std::int64_t>(lag - kLongestLag, 0);
  Portion portion;
  portion.pace = lag > kCoarseBeyond ? Instrument::Pace::kCoarse : Instrument::Pace::kFine;
  portion.ticks = std::min({lag, kLongestLag, kPortion});
  taken_ += portion.ticks;
  return portion;
}

Moment ModelClock::NextDue() const {
  const std::chrono::duration<double> real(static_cast<double>(taken_ + 1) /
                                           (speedup_ * Instrument::kTicksPerSecond));
  return start_ + std::chrono::duration_cast<Moment::duration>(real);
}

}  // namespace instrument
