#include <algorithm>
#include <chrono>

#include "files/column_evidence.h"

// Which counts are looked at next, of a doubt and while the order of the inputs is learned, and
// when further looks cannot tell more. What the looks say is judged in column_evidence.cpp.
namespace tavrel {

namespace {

// Parts of the interval: between two rounds of a doubt, between two counts while learning.
constexpr double kBetweenRounds = 1.0 / 48;
constexpr double kBetweenCounts = 1.0 / 256;

// The steps of an input and of its neighbour are known so well, in parts of the interval, that
// further looks cannot tell more.
constexpr double kWatchedWell = 1.0 / 40;

// The distance of two inputs is learned when it is known so well.
constexpr double kLearnedWell = 1.0 / 5;
constexpr double kLearnedEnough = 1.0 / 2;  // for one neighbour to be asked instead of all
constexpr int kLearningIntervals = 12;      // after so many there is nothing more to learn

ColumnEvidence::Time After(ColumnEvidence::Time time, double seconds) {
  return time +
         std::chrono::duration_cast<ColumnEvidence::Time>(std::chrono::duration<double>(seconds));
}

}  // namespace

// True if the steps of the input and of all that can tell about it are seen as sharply as they
// can be: what is possible now stays possible.
bool ColumnEvidence::IsWatched(int input) const {
  if (!placed_) {
    return false;
  }
  const double sharp = kWatchedWell * meter_.Middle();
  if (At(input).high - At(input).low > sharp) {
    return false;
  }
  return std::all_of(round_.begin(), round_.end(), [&](int other) {
    const Input& each = At(other);
    const double width = each.doubted ? each.high - each.low : bounds_.Width(other, 0);
    return width <= sharp;
  });
}

ColumnEvidence::Look ColumnEvidence::NextLook() const {
  if (place_ >= round_.size()) {
    return {};
  }
  return {round_[place_], not_before_};
}

// First those that are certain, so that a restart of the instrument is seen before anything is
// concluded, then those in doubt.
void ColumnEvidence::PlanRound() {
  round_.clear();
  place_ = 0;
  const bool any_doubt = AnyDoubt();
  ByInput<bool> is_asked{};
  for (int input = kInputs; input >= 1; --input) {
    if (!At(input).doubted) {
      continue;
    }
    const int neighbour = NeighbourOf(input);
    for (int other = 1; other <= kInputs; ++other) {
      const bool is_useful = neighbour == 0 || other == neighbour;
      if (is_useful && At(other).certain && !At(other).doubted) {
        is_asked[other] = true;
      }
    }
  }
  for (int input = kInputs; input >= 1; --input) {
    const bool is_learned = !any_doubt && learning_ && At(input).certain;
    if (is_asked[input] || is_learned) {
      round_.push_back(input);
    }
  }
  for (int input = kInputs; input >= 1; --input) {
    if (At(input).doubted) {
      round_.push_back(input);
    }
  }
}

// The input whose distance is known best; 0 if none is known well enough to go without the
// others.
int ColumnEvidence::NeighbourOf(int input) const {
  int best = 0;
  double width = placed_ ? kLearnedEnough * meter_.Middle() : 0;
  for (int other = 1; other <= kInputs; ++other) {
    const bool is_certain = At(other).certain && !At(other).doubted;
    if (other != input && is_certain && bounds_.Width(input, other) < width) {
      best = other;
      width = bounds_.Width(input, other);
    }
  }
  return best;
}

double ColumnEvidence::Step() const {
  return meter_.IsKnown() ? meter_.Middle() : meter_.Nominal();
}

void ColumnEvidence::EndRound(Time now) {
  if (round_.empty()) {
    return;
  }
  ++place_;
  if (!AnyDoubt()) {
    LearnMore(now);
    return;
  }
  if (place_ < round_.size()) {
    return;
  }
  for (int input = 1; input <= kInputs; ++input) {
    const bool is_over = At(input).looks >= kMostRounds || IsWatched(input);
    if (At(input).doubted && is_over) {
      MakeUncertain(input);
    }
  }
  PlanRound();
  not_before_ = After(now, Step() * kBetweenRounds);
}

void ColumnEvidence::BeginLearning(Time now) {
  learning_ = true;
  was_learning_ = true;
  learning_since_ = InSeconds(now);
  PlanRound();
}

void ColumnEvidence::LearnMore(Time now) {
  const bool is_over = InSeconds(now) - learning_since_ > kLearningIntervals * Step();
  if (!learning_ || is_over || IsLearned()) {
    learning_ = false;
    round_.clear();
    return;
  }
  if (place_ >= round_.size()) {
    PlanRound();
  }
  not_before_ = After(now, Step() * kBetweenCounts);
}

bool ColumnEvidence::IsLearned() const {
  const SamplingOrder order = Order();
  for (std::size_t input = 1; input <= kInputs; ++input) {
    const bool is_known = order.Most[input] - order.Least[input] <= kLearnedWell;
    if (At(static_cast<int>(input)).certain && !is_known) {
      return false;
    }
  }
  return order.Base != 0;
}

}  // namespace tavrel
