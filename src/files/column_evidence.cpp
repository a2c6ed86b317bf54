#include "files/column_evidence.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "files/recording_format.h"

namespace tavrel {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
// The number of the next samples when nobody knows how many there were: there were some.
constexpr std::int64_t kRealigned = 1000;

constexpr double kSlack = 0.001;  // seconds; a clock that is read is not finer

// An upper bound in parts of an interval that lies between `low` and `high`, as a time.
double MostTime(double parts, double low, double high) {
  return parts * (parts >= 0 ? high : low);
}

}  // namespace

void ColumnEvidence::Begin(const std::vector<int>& inputs, double interval) {
  *this = ColumnEvidence();
  meter_.Begin(interval);
  for (const int input : inputs) {
    At(input).recorded = true;
    At(input).certain = true;
  }
}

void ColumnEvidence::Resume(const SamplingOrder& order) {
  if (order.Base == 0) {
    return;
  }
  known_ = order;
  meter_.Resume(order.IntervalLow, order.IntervalHigh);
}

void ColumnEvidence::Learn(Time now) {
  for (Input& input : inputs_) {
    input.taken = 0;
  }
  BeginLearning(now);
}

void ColumnEvidence::LearnLate(Time now) {
  const auto inputs = std::count_if(inputs_.begin(), inputs_.end(),
                                    [](const Input& input) { return input.certain; });
  if (inputs > 1 && !was_learning_ && !AnyDoubt() && !IsLearned()) {
    is_late_ = true;
    BeginLearning(now);
  }
}

void ColumnEvidence::BeginAnew(const std::vector<int>& seen, int widest, bool keeps_interval) {
  const double low = is_too_high_ ? low_before_ : meter_.Low();
  const double high = is_too_high_ ? high_before_ : meter_.High();
  known_.reset();
  ForgetPlaces();
  if (keeps_interval) {
    meter_.Resume(low, high);
  }
  is_too_high_ = false;
  fell_ = false;
  too_low_ = 0;
  learning_ = false;
  was_learning_ = false;
  bool has_base = false;
  for (int input = kInputs; input >= 1; --input) {
    Input& each = At(input);
    const bool recorded = each.recorded;
    each = Input();
    each.recorded = recorded;
    each.certain = recorded;
    each.taken = kRealigned + std::count(seen.begin(), seen.end(), input);
    if (has_base) {
      Doubt(input, -widest, widest);
    }
    has_base = has_base || recorded;
  }
  PlanRound();
}

// ---- What is known of x.

// True if x of an input can be told from a sample of it.
bool ColumnEvidence::CanPlace() {
  if (!meter_.IsKnown()) {
    placed_ = false;
  }
  return meter_.IsKnown();
}

void ColumnEvidence::PlaceAt(std::int64_t sample, double now) {
  bounds_.Clear();
  origin_ = sample;
  moment_ = now;
  placed_ = true;
  for (Input& input : inputs_) {
    input.low = -kInfinity;
    input.high = kInfinity;
  }
  const double widest = kWidestSet * meter_.High();
  for (int first = 1; first <= kInputs; ++first) {
    for (int second = 1; second <= kInputs; ++second) {
      if (At(first).recorded && At(second).recorded) {
        static_cast<void>(bounds_.Tighten(first, second, widest));
      }
    }
  }
  for (const Seen& seen : std::exchange(seen_, {})) {
    Use(seen);
  }
  if (!known_) {
    return;
  }
  for (int input = 1; input <= kInputs; ++input) {
    if (At(input).recorded && At(known_->Base).recorded) {
      const double most = MostTime(known_->Most[input], meter_.Low(), meter_.High());
      const double least = -MostTime(-known_->Least[input], meter_.Low(), meter_.High());
      static_cast<void>(bounds_.Tighten(input, known_->Base, most + kSlack));
      static_cast<void>(bounds_.Tighten(known_->Base, input, kSlack - least));
    }
  }
}

// The bounds are kept as seen from a sample of about now, so that the drift of the two clocks
// counts only for the time since they were compared last.
void ColumnEvidence::MoveTo(double now) {
  const double steps = std::floor((now - moment_) / meter_.Middle());
  if (steps < 1) {
    return;
  }
  const double drift = steps * (meter_.High() - meter_.Low()) / 2;
  origin_ += static_cast<std::int64_t>(steps);
  moment_ += steps * meter_.Middle();
  bounds_.Loosen(drift);
  for (Input& input : inputs_) {
    input.low -= drift;
    input.high += drift;
  }
}

// The sample was there at that moment: x is no later than this.
double ColumnEvidence::LatestStart(std::int64_t sample, double at) const {
  const auto steps = static_cast<double>(sample - origin_);
  return at - moment_ - (steps * (steps >= 0 ? meter_.Low() : meter_.High())) + kSlack;
}

// The sample was not there at that moment: x is later than this.
double ColumnEvidence::EarliestStart(std::int64_t sample, double at) const {
  const auto steps = static_cast<double>(sample - origin_);
  return at - moment_ - (steps * (steps >= 0 ? meter_.High() : meter_.Low())) - kSlack;
}

bool ColumnEvidence::NoteMade(int input, std::int64_t sample, double at) {
  return sample < 0 || bounds_.Tighten(input, 0, LatestStart(sample, at));
}

bool ColumnEvidence::NoteNotMade(int input, std::int64_t sample, double at) {
  return bounds_.Tighten(0, input, -EarliestStart(sample, at));
}

// A count that is wrong once, up or down, is no fall.
void ColumnEvidence::NoteFall(int input, std::int64_t made) {
  Input& noted = At(input);
  if (!noted.certain) {
    return;
  }
  noted.counted = std::max(noted.counted, std::min(noted.last_made, made));
  noted.last_made = made;
  noted.falls = made < noted.counted ? noted.falls + 1 : 0;
  int falls = 0;
  for (const Input& each : inputs_) {
    falls += each.falls;
  }
  fell_ = fell_ || falls >= kConflicts;
}

void ColumnEvidence::ForgetFalls(int input) {
  At(input).counted = 0;
  At(input).last_made = 0;
  At(input).falls = 0;
}

void ColumnEvidence::NoteLow() {
  ++too_low_;
}

// Samples that cannot be there yet: the clock was set, or the order has changed.

void ColumnEvidence::NoteHigh() {
  ++too_high_;
  if (too_high_ >= kConflicts) {
    is_too_high_ = true;
    low_before_ = meter_.Low();
    high_before_ = meter_.High();
    known_.reset();
    ForgetPlaces();
  }
}

void ColumnEvidence::ForgetPlaces() {
  too_high_ = 0;
  placed_ = false;
  seen_.clear();
  meter_.Forget();
}

// The clock says nothing about the samples any more. The distances between the inputs stay known.
void ColumnEvidence::ForgetClock() {
  bounds_.Free(0);
  seen_.clear();
  meter_.ForgetCounts();
  too_low_ = 0;
  for (Input& input : inputs_) {
    input.low = -kInfinity;
    input.high = kInfinity;
  }
}

// A place that is looked at again and again fills the list: half of it is given up then, the older
// notes, but for the first ones.
void ColumnEvidence::Keep(const Seen& seen) {
  if (seen_.size() == kMostSeen) {
    const auto first = seen_.begin() + kInputs;
    seen_.erase(first, first + kMostSeen / 2);
  }
  seen_.push_back(seen);
}

void ColumnEvidence::Use(const Seen& seen) {
  if (!At(seen.input).certain) {
    return;
  }
  static_cast<void>(NoteMade(seen.input, seen.made - 1, seen.answered));
  if (seen.is_exact) {
    static_cast<void>(NoteNotMade(seen.input, seen.made, seen.asked));
  }
}

// ---- What the line says.

void ColumnEvidence::NoteTaken(int input, const Exchange& when) {
  Input& noted = At(input);
  const std::int64_t sample = noted.taken;
  ++noted.taken;
  if (!noted.certain || noted.doubted) {
    return;
  }
  if (!CanPlace() || !placed_) {
    Keep({input, noted.taken, false, InSeconds(when.asked), InSeconds(when.answered)});
    meter_.NoteAtLeast(input, noted.taken, InSeconds(when.answered));
    return;
  }
  MoveTo(InSeconds(when.answered));
  if (NoteMade(input, sample, InSeconds(when.answered))) {
    too_high_ = 0;
    meter_.NoteAtLeast(input, noted.taken, InSeconds(when.answered));
  } else {
    NoteHigh();
  }
}

bool ColumnEvidence::NoteEmpty(int input, const Exchange& when) {
  const Input& noted = At(input);
  if (!noted.certain || noted.doubted) {
    return true;
  }
  const int before = too_low_;
  NoteCount(input, 0, when);
  return too_low_ <= before;
}

void ColumnEvidence::NoteCount(int input, int count, const Exchange& when) {
  const Input& noted = At(input);
  if (!noted.recorded || count < 0 || count > kBufferSets) {
    return;
  }
  const std::int64_t made = noted.taken + count;
  const bool is_exact = count < kBufferSets;  // a full buffer may have lost some
  NoteFall(input, made);
  // A count that has fallen belongs to series that have begun anew, and measures nothing.
  const bool is_measure = noted.certain && is_exact && noted.falls == 0;
  if (!CanPlace() && is_measure) {
    meter_.NoteExact(input, made, InSeconds(when.asked), InSeconds(when.answered));
  }
  if (CanPlace()) {
    if (!placed_) {
      PlaceAt(made, InSeconds(when.answered));
    }
    MoveTo(InSeconds(when.answered));
    if (noted.doubted) {
      LookAtDoubted(input, count, when);
    } else if (noted.certain && is_exact) {
      const bool is_low = !NoteNotMade(input, made, InSeconds(when.asked));
      const bool is_high = !NoteMade(input, made - 1, InSeconds(when.answered));
      // What was seen so often stays so: the next sample after a restart may come at its time.
      too_low_ = is_low || too_low_ >= kConflicts ? too_low_ + 1 : 0;
      if (is_high) {
        NoteHigh();
      } else if (!is_low) {
        meter_.NoteExact(input, made, InSeconds(when.asked), InSeconds(when.answered));
      }
    }
    Judge();
  } else if (noted.doubted) {
    ++At(input).looks;
  } else if (is_measure) {
    Keep({input, made, true, InSeconds(when.asked), InSeconds(when.answered)});
  }
  EndRound(when.answered);
}

// An input in doubt is looked at as if nothing was lost.
void ColumnEvidence::LookAtDoubted(int input, int count, const Exchange& when) {
  Input& noted = At(input);
  ++noted.looks;
  if (count >= kBufferSets) {
    return;
  }
  const std::int64_t made = noted.taken + count;
  const double low = EarliestStart(made, InSeconds(when.asked));
  const double high = made > 0 ? LatestStart(made - 1, InSeconds(when.answered)) : kInfinity;
  if (low > noted.high || high < noted.low) {
    if (low > noted.high) {
      NoteLow();
    }
    noted.low = low;
    noted.high = high;
    return;
  }
  noted.low = std::max(noted.low, low);
  noted.high = std::min(noted.high, high);
}

// ---- The verdict.

void ColumnEvidence::Doubt(int input, int least, int most) {
  Input& doubted = At(input);
  if (!doubted.recorded || doubted.doubted) {
    return;
  }
  doubted.verdict = Verdict::kOpen;
  if (!doubted.certain) {
    doubted.verdict = Verdict::kUncertain;
    return;
  }
  doubted.doubted = true;
  doubted.least = least;
  doubted.most = most;
  doubted.low = -kInfinity;
  doubted.high = kInfinity;
  doubted.looks = 0;
  ForgetFalls(input);
  meter_.ForgetCount(input);
  too_low_ = 0;
  not_before_ = {};
  PlanRound();
}

bool ColumnEvidence::AnyDoubt() const {
  return std::any_of(inputs_.begin(), inputs_.end(),
                     [](const Input& input) { return input.doubted; });
}

// An input that is decided helps to decide the others.
void ColumnEvidence::Judge() {
  for (int pass = 0; pass < kInputs; ++pass) {
    bool any = false;
    for (int input = 1; input <= kInputs; ++input) {
      if (At(input).doubted && placed_) {
        JudgeInput(input);
        any = any || !At(input).doubted;
      }
    }
    if (!any && !JudgeTogether()) {
      return;
    }
  }
}

bool ColumnEvidence::IsLookedAt(int input) const {
  return At(input).doubted && At(input).low != -kInfinity;
}

ColumnEvidence::Shifts ColumnEvidence::ShiftsOf(int input) const {
  const Input& judged = At(input);
  Shifts shifts{judged.most + 1, judged.least - 1};
  for (int ahead = judged.least; ahead <= judged.most; ++ahead) {
    if (IsPossible(judged, input, ahead)) {
      shifts = {std::min(shifts.least, ahead), ahead};
    }
  }
  return shifts;
}

void ColumnEvidence::JudgeInput(int input) {
  Input& judged = At(input);
  if (!IsLookedAt(input)) {
    return;
  }
  const Shifts possible = ShiftsOf(input);
  if (possible.least == possible.most) {
    Settle(input, possible.least);
  } else if (possible.least > possible.most) {
    const double least = judged.low - (judged.most * meter_.High());
    if (least > bounds_.Most(input, 0)) {
      NoteLow();
    } else {
      NoteHigh();
    }
    judged.low = -kInfinity;
    judged.high = kInfinity;
  }
}

bool ColumnEvidence::IsPossible(const Input& input, int index, int ahead) const {
  const double longest = MostTime(ahead, meter_.Low(), meter_.High());
  const double shortest = -MostTime(-ahead, meter_.Low(), meter_.High());
  return input.low - longest <= bounds_.Most(index, 0) &&
         input.high - shortest >= bounds_.Least(index, 0);
}

void ColumnEvidence::Settle(int input, int ahead) {
  Input& settled = At(input);
  const double longest = MostTime(ahead, meter_.Low(), meter_.High());
  const double shortest = -MostTime(-ahead, meter_.Low(), meter_.High());
  static_cast<void>(bounds_.Tighten(input, 0, settled.high - shortest));
  static_cast<void>(bounds_.Tighten(0, input, longest - settled.low));
  settled.taken += ahead;
  settled.ahead = ahead;
  ForgetFalls(input);
  meter_.ForgetCount(input);
  Release(input, ahead > 0 ? Verdict::kLost : Verdict::kNotLost);
}

void ColumnEvidence::Release(int input, Verdict verdict) {
  At(input).doubted = false;
  At(input).verdict = verdict;
  round_.clear();
  place_ = 0;
  if (AnyDoubt() || learning_) {
    PlanRound();
  }
}

void ColumnEvidence::Withdraw() {
  for (int input = 1; input <= kInputs; ++input) {
    if (At(input).doubted) {
      Release(input, Verdict::kNone);
    }
  }
}

void ColumnEvidence::Realign(int widest) {
  ForgetClock();
  bool has_base = false;
  for (int input = kInputs; input >= 1; --input) {
    Input& each = At(input);
    each.doubted = false;
    each.taken = kRealigned;
    ForgetFalls(input);
    if (each.certain && has_base) {
      Doubt(input, -widest, widest);
    }
    has_base = has_base || each.certain;
  }
  PlanRound();
}

std::int64_t ColumnEvidence::Foremost() const {
  std::int64_t foremost = 0;
  for (const Input& input : inputs_) {
    foremost = input.certain ? std::max(foremost, input.taken) : foremost;
  }
  return foremost;
}

int ColumnEvidence::Behind(int input) const {
  return At(input).certain ? static_cast<int>(Foremost() - At(input).taken) : 0;
}

int ColumnEvidence::Aligned() const {
  return static_cast<int>(std::max<std::int64_t>(Foremost() - kRealigned, 0));
}

void ColumnEvidence::GiveUp() {
  for (int input = 1; input <= kInputs; ++input) {
    if (At(input).doubted) {
      MakeUncertain(input);
    }
  }
}

void ColumnEvidence::MakeUncertain(int input) {
  At(input).certain = false;
  bounds_.Free(input);
  Release(input, Verdict::kUncertain);
}

SamplingOrder ColumnEvidence::Order() const {
  if (!placed_) {
    return known_.value_or(SamplingOrder());
  }
  SamplingOrder order;
  order.IntervalLow = meter_.Low();
  order.IntervalHigh = meter_.High();
  for (int input = 1; input <= kInputs; ++input) {
    if (order.Base == 0 && At(input).certain && !At(input).doubted) {
      order.Base = input;
    }
    order.Least[input] = -1;
    order.Most[input] = 1;
    if (order.Base != 0 && At(input).recorded) {
      const double most = bounds_.Most(input, order.Base);
      const double least = bounds_.Most(order.Base, input);
      const double most_parts = most / (most >= 0 ? meter_.Low() : meter_.High());
      const double least_parts = least / (least >= 0 ? meter_.Low() : meter_.High());
      order.Most[input] = static_cast<float>(std::min(1.0, most_parts));
      order.Least[input] = static_cast<float>(std::max(-1.0, -least_parts));
    }
  }
  return order;
}

std::optional<ColumnEvidence::Range> ColumnEvidence::MadeSince(int input, Time now) {
  if (!CanPlace() || !placed_ || bounds_.Width(input, 0) == kInfinity) {
    return std::nullopt;
  }
  MoveTo(InSeconds(now));
  const double since = InSeconds(now) - moment_;
  const auto made = [this, since](double start) {
    return origin_ + 1 + static_cast<std::int64_t>(std::floor((since - start) / meter_.Middle()));
  };
  const std::int64_t taken = At(input).taken;
  return Range{made(bounds_.Most(input, 0)) - taken, made(bounds_.Least(input, 0)) - taken};
}

}  // namespace tavrel
