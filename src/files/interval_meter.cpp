#include "files/interval_meter.h"

#include <algorithm>

namespace tavrel {

namespace {

// What the header says is believed if nothing else is possible that is so far away from it.
constexpr double kBelievedFrom = 1 / 1.6;
constexpr double kBelievedTo = 1.6;
// Another pace is believed when it is known that well.
constexpr double kMeasuredWell = 1.2;

}  // namespace

void IntervalMeter::Begin(double nominal) {
  *this = IntervalMeter();
  nominal_ = nominal;
}

void IntervalMeter::Resume(double low, double high) {
  low_ = low;
  high_ = high;
}

void IntervalMeter::NoteExact(int input, std::int64_t made, double asked, double answered) {
  Anchor& anchor = anchors_[input];
  if (made < 1) {
    return;  // the first sample may be later than one interval
  }
  if (anchor.made == 0) {
    anchor = {made, asked, answered};
    return;
  }
  const auto steps = static_cast<double>(made - anchor.made);
  if (steps < 0) {
    return;
  }
  least_ = std::max(least_, (asked - anchor.answered) / (steps + 1));
  NoteAtLeast(input, made, answered);
}

void IntervalMeter::NoteAtLeast(int input, std::int64_t made, double answered) {
  const Anchor& anchor = anchors_[input];
  const std::int64_t whole = made - anchor.made - 1;  // steps that surely lie between the moments
  if (anchor.made > 0 && whole > 0) {
    const double most = (answered - anchor.asked) / static_cast<double>(whole);
    most_ = most_ > 0 ? std::min(most_, most) : most;
  }
  Judge();
}

void IntervalMeter::Judge() {
  if (most_ <= 0) {
    return;
  }
  // The measurements contradict each other: the clock was set, or samples are missing.
  if (least_ > most_) {
    Forget();
    return;
  }
  if (IsKnown() && (least_ > high_ || most_ < low_)) {
    low_ = 0;
    high_ = 0;
  }
  const double low = nominal_ * (1 - kDrift);
  const double high = nominal_ * (1 + kDrift);
  const bool fits = least_ <= high && most_ >= low;
  if (fits) {
    const bool is_told = least_ > nominal_ * kBelievedFrom && most_ < nominal_ * kBelievedTo;
    low_ = is_told ? low : low_;
    high_ = is_told ? high : high_;
    return;
  }
  if (most_ < least_ * kMeasuredWell) {
    low_ = least_ * (1 - kDrift);
    high_ = most_ * (1 + kDrift);
  }
}

void IntervalMeter::Forget() {
  anchors_ = {};
  least_ = 0;
  most_ = 0;
  low_ = 0;
  high_ = 0;
}

}  // namespace tavrel
