#ifndef TAVREL_FILES_COLUMN_EVIDENCE_H_
#define TAVREL_FILES_COLUMN_EVIDENCE_H_

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "files/interval_meter.h"
#include "files/time_bounds.h"
#include "state/column_memory.h"

namespace tavrel {

// Judges whether an input of a recording has lost a value on the line. Knows no link, no file and
// no clock: numbers go in, a verdict comes out.
//
// Sample m of input k is made at x(k) + m S: S is the interval, x(k) the input's own phase. The
// samples that were made are those that were taken and those that wait (register R), so each
// count that is read, each value that is handed over and each "no data" bounds x(k). Of an input
// in doubt nobody knows whether one sample more was taken; its counts bound x(k), or x(k) - S if
// a value was lost. What the other inputs and the clock say about x(k) tells which of the two it
// is, or leaves both possible: then it is uncertain, and never guessed.
//
// The samples of one set are made within one interval. Inputs may be sampled together or one
// after the other in any order; their distances are constant, for they share a clock.
class ColumnEvidence {
 public:
  using Time = std::chrono::nanoseconds;

  // An exchange on the line: what it says was so at some moment between the two.
  struct Exchange {
    Time asked{};
    Time answered{};
  };

  enum class Verdict {
    kNone,       // the input was not in doubt
    kOpen,       // more looks are needed
    kNotLost,    // the next value of the input belongs to the set in hand
    kLost,       // the value was handed over; the next one belongs to the next set
    kUncertain,  // no look can tell
  };

  // The count of `input` is to be read, not before `not_before`; input 0: nothing is to be read.
  struct Look {
    int input = 0;
    Time not_before{};
  };

  // Counts that are looked at for each input in doubt before it is given up.
  static constexpr int kMostRounds = 144;

  // The bound of `x(i) - x(j)` in parts of the interval when nothing is known. Fifteen inputs at
  // even distances reach 14/15 of it; an instrument always ends one set before it begins the next.
  static constexpr double kWidestSet = 15.0 / 16;

  // Begins anew for these inputs (1..15) and the interval in seconds that the header tells.
  // Nothing is known, and no input is in doubt.
  void Begin(const std::vector<int>& inputs, double interval);

  // What was learned before, for a recording that goes on.
  void Resume(const SamplingOrder& order);

  // The set in hand was begun before: its value of that input has arrived.
  void ResumeTaken(int input) { ++At(input).taken; }

  // A doubt of that input was given up before: it is never certain again.
  void ResumeUncertain(int input) { At(input).certain = false; }

  // Series that have just been cleared are worth watching: their first samples show the order.
  void Learn(Time now);
  [[nodiscard]] bool IsLearning() const { return learning_; }

  // A recording that goes on has handed over all that it held: its next samples are worth watching,
  // too, once and if the order is not known.
  void LearnLate(Time now);
  [[nodiscard]] bool IsLearningLate() const { return learning_ && is_late_; }

  [[nodiscard]] SamplingOrder Order() const;

  // A value of that input has arrived.
  void NoteTaken(int input, const Exchange& when);

  // The input had no data. False if its value must have been there: it is lost.
  [[nodiscard]] bool NoteEmpty(int input, const Exchange& when);

  // Register R of the input.
  void NoteCount(int input, int count, const Exchange& when);

  // What the line says cannot be: samples were there earlier or later than they can be. The
  // instrument was switched off and on, or the clock was set.
  [[nodiscard]] bool SawRestart() const { return too_low_ >= kConflicts || is_too_high_ || fell_; }

  // Samples that had been counted are gone, and nobody has taken them. Unlike all other signs of a
  // restart this one says nothing against the interval.
  [[nodiscard]] bool SawFall() const { return fell_; }

  // So many samples of the input wait, as its counts have said; more may have been made since.
  [[nodiscard]] std::int64_t CountedWaiting(int input) const {
    return std::max<std::int64_t>(At(input).counted - At(input).taken, 0);
  }

  // What was counted of the input does not belong to what comes: somebody else has taken of it.
  void ForgetFalls(int input);

  // What the line has said once is enough.
  void SuspectRestart() { too_low_ = kConflicts; }

  // What was there too early was no restart: it is forgotten.
  void ForgetHigh() { is_too_high_ = false; }

  // Something was said that cannot be, once or more often.
  [[nodiscard]] bool HasConflict() const { return too_low_ + too_high_ > 0 || is_too_high_; }

  // The series of all inputs have begun anew at some time, in one set. Nothing is known of their
  // order, and their next samples are up to `widest` sets away from those that are thought to be
  // next: those of one set, but for the inputs of which a value is `seen`, which are one ahead.
  // All are doubted but one, and all are certain once more. `keeps_interval`: it is believed still.
  void BeginAnew(const std::vector<int>& seen, int widest, bool keeps_interval);

  // The next sample of the input is the one it was thought to be, or one later.
  void Doubt(int input) { Doubt(input, 0, 1); }

  // The next sample of the input is between `least` and `most` later than it was thought to be.
  void Doubt(int input, int least, int most);

  // The place of the input among the others is not known.
  void MakeUncertain(int input);

  // False once a doubt of the input was given up: its place among the others is not known.
  [[nodiscard]] bool IsCertain(int input) const { return At(input).certain; }

  [[nodiscard]] bool IsDoubted(int input) const { return At(input).doubted; }
  [[nodiscard]] bool AnyDoubt() const;
  [[nodiscard]] Verdict VerdictOf(int input) const { return At(input).verdict; }

  // By how many samples a decided input was ahead of where it was thought to be.
  [[nodiscard]] int Ahead(int input) const { return At(input).ahead; }

  // Counts of the input that were looked at since its doubt began.
  [[nodiscard]] int Looks(int input) const { return At(input).looks; }

  // What is still open was no doubt: nothing speaks against it.
  void Withdraw();

  // An unknown number of samples of all inputs is gone, of some by as many as `widest` more than
  // of others. The next samples of all inputs are taken for those of one set, and doubted.
  void Realign(int widest);

  // After Realign(), when nothing is in doubt any more: how many samples the input is behind the
  // one that is farthest ahead (0 for an uncertain one), and that one before the first of all (0 if
  // none is certain).
  [[nodiscard]] int Behind(int input) const;
  [[nodiscard]] int Aligned() const;

  // True if the order is known of all inputs.
  [[nodiscard]] bool IsOrderKnown() const { return placed_ && IsLearned(); }

  // No further look: what is not decided is uncertain, and stays so.
  void GiveUp();

  // The look that helps most now: of a doubt, else of learning.
  [[nodiscard]] Look NextLook() const;

  // The number of sets that were made since the one in hand by that moment; empty if the clock
  // does not tell.
  struct Range {
    std::int64_t least = 0;
    std::int64_t most = 0;
  };
  [[nodiscard]] std::optional<Range> MadeSince(int input, Time now);

  [[nodiscard]] const IntervalMeter& Interval() const { return meter_; }

  // It is what it was believed to be before.
  void BelieveInterval(const IntervalMeter& before) { meter_.Resume(before.Low(), before.High()); }

 private:
  static constexpr int kConflicts = 2;

  [[nodiscard]] static double InSeconds(Time time) {
    return std::chrono::duration<double>(time).count();
  }

  struct Input {
    bool recorded = false;
    bool certain = false;  // its place among the others is known
    bool doubted = false;
    std::int64_t taken = 0;  // number of the next sample, if nothing was lost
    int least = 0;           // the next sample is so much later, while it is in doubt
    int most = 0;
    double low = 0;  // x of an input in doubt by its own counts, if nothing was lost
    double high = 0;
    int looks = 0;
    int ahead = 0;
    std::int64_t counted = 0;    // so many samples were made, as two counts have said
    std::int64_t last_made = 0;  // as the last count has said
    int falls = 0;               // counts in a row that have said less
    Verdict verdict = Verdict::kNone;
  };

  [[nodiscard]] Input& At(int input) { return inputs_[input]; }
  [[nodiscard]] const Input& At(int input) const { return inputs_[input]; }

  // What was seen of an input before the interval was known.
  struct Seen {
    int input = 0;
    std::int64_t made = 0;  // so many samples at that time
    bool is_exact = false;  // not more of them either
    double asked = 0;
    double answered = 0;
  };
  static constexpr std::size_t kMostSeen = 512;

  void Keep(const Seen& seen);
  void Use(const Seen& seen);
  [[nodiscard]] bool CanPlace();
  void PlaceAt(std::int64_t sample, double now);
  void MoveTo(double now);
  [[nodiscard]] double LatestStart(std::int64_t sample, double at) const;
  [[nodiscard]] double EarliestStart(std::int64_t sample, double at) const;
  [[nodiscard]] bool NoteMade(int input, std::int64_t sample, double at);
  [[nodiscard]] bool NoteNotMade(int input, std::int64_t sample, double at);
  void NoteFall(int input, std::int64_t made);
  void NoteLow();
  void NoteHigh();
  void ForgetPlaces();
  void ForgetClock();
  [[nodiscard]] std::int64_t Foremost() const;
  void LookAtDoubted(int input, int count, const Exchange& when);
  // By how many samples an input in doubt can be ahead: none at all if `least` is above `most`.
  struct Shifts {
    int least = 0;
    int most = -1;
  };

  void Judge();
  void JudgeInput(int input);
  [[nodiscard]] Shifts ShiftsOf(int input) const;
  [[nodiscard]] bool IsLookedAt(int input) const;
  [[nodiscard]] double MostAheadOf(int first, int second) const;
  [[nodiscard]] std::optional<TimeBounds> ShiftsTogether() const;
  [[nodiscard]] bool JudgeTogether();
  [[nodiscard]] bool IsPossible(const Input& input, int index, int ahead) const;
  [[nodiscard]] bool IsWatched(int input) const;
  void Settle(int input, int ahead);
  void Release(int input, Verdict verdict);
  void PlanRound();
  [[nodiscard]] int NeighbourOf(int input) const;
  void EndRound(Time now);
  void BeginLearning(Time now);
  void LearnMore(Time now);
  [[nodiscard]] bool IsLearned() const;
  [[nodiscard]] double Step() const;

  ByInput<Input> inputs_{};
  IntervalMeter meter_;
  TimeBounds bounds_;  // of x, as seen from sample `origin_` and the moment `moment_`
  bool placed_ = false;
  std::int64_t origin_ = 0;
  double moment_ = 0;  // seconds
  int too_low_ = 0;
  int too_high_ = 0;
  bool is_too_high_ = false;
  bool fell_ = false;
  double low_before_ = 0;  // the interval as it was believed until then
  double high_before_ = 0;

  std::vector<int> round_;
  std::size_t place_ = 0;  // in round_
  Time not_before_{};

  bool learning_ = false;
  bool was_learning_ = false;
  bool is_late_ = false;
  double learning_since_ = 0;
  std::vector<Seen> seen_;
  std::optional<SamplingOrder> known_;  // of an earlier run, until it can be used
};

}  // namespace tavrel

#endif  // TAVREL_FILES_COLUMN_EVIDENCE_H_
