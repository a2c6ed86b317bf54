#include "instrument/model_clock.h"

#include <algorithm>

namespace instrument {
namespace {

using Time = Instrument::Time;
using std::chrono::hours;

constexpr Time kLongestLag = hours(24) * 40;
// Beyond this lag the ovens are computed once a second only.
constexpr Time kCoarseBeyond = hours(6);
constexpr Time kPortion = std::chrono::minutes(10);

}  // namespace

ModelClock::Portion ModelClock::Take(Moment now) {
  const std::chrono::duration<double> real = now - start_;
  const auto due = std::chrono::floor<Time>(real * speedup_);
  const Time lag = std::max(due - taken_, Time(0));
  taken_ += std::max(lag - kLongestLag, Time(0));
  Portion portion;
  portion.pace = lag > kCoarseBeyond ? Instrument::Pace::kCoarse : Instrument::Pace::kFine;
  portion.time = std::min({lag, kLongestLag, kPortion});
  taken_ += portion.time;
  return portion;
}

Moment ModelClock::NextDue() const {
  const Time next = taken_ - taken_ % kStep + kStep;
  const std::chrono::duration<double> real = next / speedup_;
  return start_ + std::chrono::duration_cast<Moment::duration>(real);
}

}  // namespace instrument
