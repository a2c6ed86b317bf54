#include "files/ledger_clock.h"

#include <algorithm>
#include <cmath>

namespace tavrel {
namespace {

// Of times that a damaged journal tells no number of sets may come that does not fit.
constexpr double kMostSets = 1e15;

std::int64_t WholeSets(double sets) {
  return static_cast<std::int64_t>(std::floor(std::clamp(sets, -kMostSets, kMostSets)));
}

}  // namespace

LedgerClock::LedgerClock(double interval) : interval_(interval) {
  SetBox(0, 0, interval * (1 - kRate), interval * (1 + kRate));
}

void LedgerClock::SetBox(double least_p, double most_p, double least_t, double most_t) {
  corners_ = {{least_p, least_t}, {most_p, least_t}, {most_p, most_t}, {least_p, most_t}};
}

void LedgerClock::Begin(const Moment& moment, const Range& made) {
  double least_t = interval_ * (1 - kRate);
  double most_t = interval_ * (1 + kRate);
  if (!corners_.empty()) {
    const auto [least, most] =
        std::minmax_element(corners_.begin(), corners_.end(),
                            [](const Point& left, const Point& right) { return left.t < right.t; });
    least_t = least->t;
    most_t = most->t;
  }
  origin_ = moment.answered;
  const double asked = moment.asked - origin_ - kRounding;
  const auto next = static_cast<double>(made.most);
  const auto last = static_cast<double>(made.least) - 1;
  const double last_time = last * (last < 0 ? most_t : least_t);
  SetBox(asked - next * most_t, kRounding - last_time, least_t, most_t);
  Clip(1, next, asked);
  Clip(-1, -last, -kRounding);  // the set before was made: p + last T <= 0
}

LedgerClock::Range LedgerClock::MadeAt(const Moment& moment) const {
  double least = kMostSets;
  double most = 0;
  for (const Point& corner : corners_) {
    least = std::min(least, (moment.asked - kRounding - origin_ - corner.p) / corner.t);
    most = std::max(most, (moment.answered + kRounding - origin_ - corner.p) / corner.t + 1);
  }
  const std::int64_t made = std::max<std::int64_t>(WholeSets(least) + 1, 0);
  return {made, std::max(made, WholeSets(most))};
}

bool LedgerClock::Learn(const Moment& moment, std::int64_t made) {
  const auto number = static_cast<double>(made);
  Clip(1, number, moment.asked - kRounding - origin_);
  Clip(-1, -(number - 1), -(moment.answered + kRounding - origin_));
  Simplify();
  return !corners_.empty();
}

// What is left is possible only where factor_p p + factor_t T >= least.
void LedgerClock::Clip(double factor_p, double factor_t, double least) {
  const auto inside = [&](const Point& corner) {
    return factor_p * corner.p + factor_t * corner.t - least;
  };
  std::vector<Point> left;
  for (std::size_t place = 0; place < corners_.size(); ++place) {
    const Point& from = corners_[place];
    const Point& to = corners_[(place + 1) % corners_.size()];
    const double at_from = inside(from);
    const double at_to = inside(to);
    if (at_from >= 0) {
      left.push_back(from);
    }
    if ((at_from >= 0) != (at_to >= 0)) {
      const double part = at_from / (at_from - at_to);
      left.push_back({from.p + part * (to.p - from.p), from.t + part * (to.t - from.t)});
    }
  }
  corners_ = std::move(left);
}

// A wider area with few corners holds all that is possible, too.
void LedgerClock::Simplify() {
  if (corners_.size() <= kMostCorners) {
    return;
  }
  Point least = corners_.front();
  Point most = least;
  for (const Point& corner : corners_) {
    least = {std::min(least.p, corner.p), std::min(least.t, corner.t)};
    most = {std::max(most.p, corner.p), std::max(most.t, corner.t)};
  }
  SetBox(least.p, most.p, least.t, most.t);
}

}  // namespace tavrel
