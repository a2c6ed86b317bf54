#include "files/column_evidence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace tavrel {
namespace {

using ColumnVerdict = ColumnEvidence::Verdict;

constexpr int kCapacity = 896;

// An instrument as seen from its line, in exact arithmetic: sample m of an input is made at its
// first moment + m intervals. Shares nothing with the program.
class PlainInstrument {
 public:
  // `places` are seconds behind the beginning of a set, by input.
  PlainInstrument(double interval, std::map<int, double> places)
      : interval_(interval), places_(std::move(places)) {}

  void Begin(double first_set) {
    first_set_ = first_set;
    gone_.clear();
  }
  [[nodiscard]] long Made(int input, double now) const {
    const double since = now - first_set_ - places_.at(input);
    return since < 0 ? 0 : static_cast<long>(std::floor(since / interval_)) + 1;
  }
  // Samples that are not in the buffer any more, those that were pushed out among them.
  [[nodiscard]] long Gone(int input, double now) {
    long& gone = gone_[input];
    gone = std::max(gone, Made(input, now) - kCapacity);
    return gone;
  }
  [[nodiscard]] long Count(int input, double now) { return Made(input, now) - Gone(input, now); }
  // The number of the sample that is handed over, -1 for none.
  long Take(int input, double now) { return Count(input, now) > 0 ? gone_[input]++ : -1; }

 private:
  double interval_;
  std::map<int, double> places_;
  double first_set_ = 0;
  std::map<int, long> gone_;
};

// How one trial is set up.
struct Trial {
  int interval = 10;  // seconds
  std::string order = "together";
  int distance = 0;  // milliseconds
  std::vector<int> inputs;
  double spoilt = 0;  // share of the exchanges that fail
  double drift = 0;   // of the instrument's clock against that of the program
  double pace = 1;    // the instrument's time runs so much faster
  bool learns = true;
  unsigned seed = 1;
};

std::map<int, double> PlacesOf(const Trial& trial, std::mt19937& random) {
  std::vector<int> in_order = trial.inputs;
  if (trial.order == "descending") {
    std::reverse(in_order.begin(), in_order.end());
  } else if (trial.order == "random") {
    std::shuffle(in_order.begin(), in_order.end(), random);
  }
  std::map<int, double> places;
  double place = 0;
  for (const int input : in_order) {
    places[input] = place / trial.pace;
    place += trial.order == "together" ? 0 : trial.distance / 1000.0;
  }
  return places;
}

struct Tally {
  int doubts = 0;
  int lost = 0;  // in truth
  int uncertain = 0;
  int wrong = 0;
  std::string first_wrong;
};

// A host as the pump is one: it reads what is there, sleeps ten seconds after "no data" and after
// an exchange that failed, and asks the evidence for a verdict before it reads on.
class Host {
 public:
  explicit Host(const Trial& trial)
      : trial_(trial),
        random_(trial.seed),
        interval_(trial.interval * (1 + trial.drift) / trial.pace),
        instrument_(interval_, PlacesOf(trial, random_)) {
    now_ = 1 + Share() * 100;
    evidence_.Begin(trial.inputs, trial.interval);
    instrument_.Begin(now_ + interval_ * (1 + Share()));
    if (trial.learns) {
      evidence_.Learn(Now());
    }
  }

  // Reads so many sets.
  void Run(int sets, Tally& tally) {
    const long end = rows_ + sets;
    int idle = 0;
    while (rows_ < end && ++idle < 100000) {
      Step(tally);
    }
  }

  // The program is killed between two exchanges and started again after some time.
  void Restart(double away) {
    const SamplingOrder order = evidence_.Order();
    const ColumnEvidence before = evidence_;
    evidence_.Begin(trial_.inputs, trial_.interval);
    evidence_.Resume(order);
    for (const int input : trial_.inputs) {
      if (seen_[input]) {
        evidence_.ResumeTaken(input);
      }
      if (!before.IsCertain(input)) {
        evidence_.ResumeUncertain(input);
      }
    }
    now_ += away;
  }

  [[nodiscard]] const ColumnEvidence& Evidence() const { return evidence_; }
  [[nodiscard]] double IntervalOfInstrument() const { return interval_; }

 private:
  [[nodiscard]] ColumnEvidence::Time Now() const {
    return ColumnEvidence::Time(std::llround(now_ * 1e9));
  }
  double Share() { return std::uniform_real_distribution<>(0, 1)(random_); }

  // One exchange. `action` is what the instrument does; it may be done though the reply is lost.
  template <typename Action>
  bool Exchange(ColumnEvidence::Exchange& when, Action action) {
    when.asked = Now();
    const bool is_spoilt = Share() < trial_.spoilt;
    const bool is_heard = !is_spoilt || Share() < 0.5;
    now_ += 0.01 + Share() * 0.01;
    if (is_heard) {
      action();
    }
    now_ += 0.01 + Share() * 0.01;
    when.answered = Now();
    now_ += is_spoilt ? 0.3 : 0.015;
    return !is_spoilt;
  }

  void Step(Tally& tally) {
    if (asleep_until_ > now_ && !evidence_.IsLearning()) {
      now_ = asleep_until_;
    }
    if (evidence_.AnyDoubt()) {
      LookOnce();
      Collect(tally);
      return;
    }
    if (asleep_until_ > now_) {
      LearnOnce();
      return;
    }
    ReadOne(tally);
  }

  void LearnOnce() {
    const auto look = evidence_.NextLook();
    if (look.input == 0 || look.not_before > Now()) {
      now_ += 0.05;
      return;
    }
    LookOnce();
  }

  void LookOnce() {
    const auto look = evidence_.NextLook();
    if (look.not_before > Now()) {
      const double wait = std::chrono::duration<double>(look.not_before - Now()).count();
      now_ += std::ceil(wait / 0.05) * 0.05;
    }
    long count = 0;
    ColumnEvidence::Exchange when;
    if (Exchange(when, [&] { count = instrument_.Count(look.input, now_); })) {
      evidence_.NoteCount(look.input, static_cast<int>(count), when);
    } else if (evidence_.AnyDoubt()) {
      now_ += 10;
    }
    now_ += 0.02;
  }

  void ReadOne(Tally& tally) {
    for (auto place = trial_.inputs.rbegin(); place != trial_.inputs.rend(); ++place) {
      if (!seen_[*place]) {
        Read(*place, tally);
        return;
      }
    }
  }

  void Read(int input, Tally& tally) {
    long sample = -1;
    ColumnEvidence::Exchange when;
    const long before = instrument_.Gone(input, now_);
    const bool is_good = Exchange(when, [&] { sample = instrument_.Take(input, now_); });
    now_ += 0.02;
    if (!is_good) {
      was_lost_[input] = instrument_.Gone(input, now_) > before;
      tally.lost += was_lost_[input] ? 1 : 0;
      tally.doubts += evidence_.IsCertain(input) ? 1 : 0;
      asleep_until_ = now_ + 10;
      was_certain_ = evidence_.IsCertain(input);
      evidence_.Doubt(input);
      in_doubt_ = input;
      if (!evidence_.IsDoubted(input)) {
        Collect(tally);
      }
    } else if (sample < 0) {
      EXPECT_TRUE(evidence_.NoteEmpty(input, when)) << "on a line that loses nothing unnoticed";
      asleep_until_ = now_ + std::max(10.0, interval_ / 7);
    } else {
      evidence_.NoteTaken(input, when);
      Seen(input);
    }
  }

  void Seen(int input) {
    seen_[input] = true;
    const bool is_whole = std::all_of(trial_.inputs.begin(), trial_.inputs.end(),
                                      [this](int each) { return seen_[each]; });
    if (is_whole) {
      seen_.fill(false);
      ++rows_;
    }
  }

  void Collect(Tally& tally) {
    if (in_doubt_ == 0 || evidence_.IsDoubted(in_doubt_)) {
      return;
    }
    const int input = std::exchange(in_doubt_, 0);
    const ColumnVerdict verdict = evidence_.VerdictOf(input);
    const bool was_lost = was_lost_[input];
    if (verdict == ColumnVerdict::kUncertain) {
      tally.uncertain += was_certain_ ? 1 : 0;
      return;
    }
    if ((verdict == ColumnVerdict::kLost) != was_lost) {
      ++tally.wrong;
      tally.first_wrong = tally.first_wrong.empty() ? Describe(input) : tally.first_wrong;
    }
    if (was_lost) {
      Seen(input);
    }
  }

  [[nodiscard]] std::string Describe(int input) const {
    return "seed " + std::to_string(trial_.seed) + ", S " + std::to_string(trial_.interval) + ", " +
           trial_.order + " " + std::to_string(trial_.distance) + " ms, " +
           std::to_string(trial_.inputs.size()) + " inputs, input " + std::to_string(input) +
           ", row " + std::to_string(rows_);
  }

  Trial trial_;
  std::mt19937 random_;
  double interval_;
  PlainInstrument instrument_;
  ColumnEvidence evidence_;
  double now_ = 0;
  double asleep_until_ = 0;
  int in_doubt_ = 0;
  bool was_certain_ = false;
  long rows_ = 0;
  std::array<bool, 16> seen_{};
  std::array<bool, 16> was_lost_{};
};

std::vector<int> DrawInputs(std::mt19937& random, int count) {
  std::vector<int> all(15);
  std::iota(all.begin(), all.end(), 1);
  std::shuffle(all.begin(), all.end(), random);
  all.resize(static_cast<std::size_t>(count));
  std::sort(all.begin(), all.end());
  return all;
}

Trial DrawTrial(unsigned seed) {
  constexpr std::array kIntervals = {1, 2, 3, 6, 10, 20, 30, 60, 120, 300, 600, 1800, 3600};
  constexpr std::array kOrders = {"together", "ascending", "descending", "random"};
  constexpr std::array kDistances = {0, 30, 200, 500};
  std::mt19937 random(seed);
  const auto draw = [&random](std::size_t below) { return random() % below; };
  Trial trial;
  trial.seed = seed;
  trial.interval = kIntervals.at(draw(kIntervals.size()));
  trial.order = kOrders.at(draw(kOrders.size()));
  trial.inputs = DrawInputs(random, 1 + static_cast<int>(draw(15)));
  do {
    trial.distance = kDistances.at(draw(kDistances.size()));
  } while (trial.distance * static_cast<int>(trial.inputs.size()) > 1000 * trial.interval);
  trial.spoilt = 0.4 * static_cast<double>(draw(100)) / 100;
  trial.drift = (static_cast<double>(draw(200)) - 100) * 1e-6;
  trial.learns = draw(4) != 0;
  trial.pace = draw(8) == 0 ? 10 : 1;
  return trial;
}

// What the looks of a doubt have shown is not forgotten when somebody doubts the input once more,
// nor does the doubt become a wider one.
TEST(ColumnEvidence, IsNotShakenByASecondDoubtOfTheSameInput) {
  int open_looks = 0;
  for (int input = 1; input <= 3; ++input) {
    PlainInstrument instrument(10, {{1, 0.0}, {2, 4.0}, {3, 8.0}});
    instrument.Begin(5);
    ColumnEvidence evidence;
    evidence.Begin({1, 2, 3}, 10);
    double now = 14;
    const auto when = [&now] {
      const ColumnEvidence::Time time(std::llround(now * 1e9));
      return ColumnEvidence::Exchange{time, time + std::chrono::milliseconds(20)};
    };
    for (int each = 1; each <= 3; ++each) {
      instrument.Take(each, now);
      evidence.NoteTaken(each, when());
    }
    evidence.Doubt(input);
    ColumnEvidence again = evidence;
    for (int look = 0; look < 40 && evidence.AnyDoubt(); ++look) {
      now += 0.7;
      const int asked = evidence.NextLook().input;
      ASSERT_EQ(again.NextLook().input, asked) << look;
      const int count = static_cast<int>(instrument.Count(asked, now));
      evidence.NoteCount(asked, count, when());
      again.NoteCount(asked, count, when());
      EXPECT_EQ(again.VerdictOf(input), evidence.VerdictOf(input)) << look;
      EXPECT_EQ(again.Looks(input), evidence.Looks(input)) << look;
      open_looks += evidence.AnyDoubt() ? 1 : 0;
      if (evidence.AnyDoubt() && look % 2 == 1) {
        again.Doubt(input, -5, 5);
      }
    }
  }
  EXPECT_GT(open_looks, 3);
}

// Some inputs come in doubt at the same time, of which some have lost a value. Each has taken what
// there was before, and a few samples wait.
class DoubtsAtOnce {
 public:
  DoubtsAtOnce(std::map<int, double> places, const SamplingOrder& order) : instrument_(10, places) {
    std::vector<int> inputs;
    for (const auto& [input, place] : places) {
      inputs.push_back(input);
    }
    evidence.Begin(inputs, 10);
    evidence.Resume(order);
    instrument_.Begin(5);
    for (const int input : inputs) {
      while (instrument_.Take(input, now_) >= 0) {
      }
    }
    now_ += 40;
  }

  void Doubt(int input, bool is_lost) {
    if (is_lost) {
      instrument_.Take(input, now_);
    }
    evidence.Doubt(input);
  }

  void LookUntilDecided() {
    while (evidence.AnyDoubt()) {
      const auto look = evidence.NextLook();
      now_ = std::max(now_, std::chrono::duration<double>(look.not_before).count()) + 0.01;
      const auto count = static_cast<int>(instrument_.Count(look.input, now_));
      const ColumnEvidence::Time time(std::llround(now_ * 1e9));
      const std::chrono::milliseconds half(10);
      evidence.NoteCount(look.input, count, {time - half, time + half});
      now_ += 0.04;
    }
  }

  ColumnEvidence evidence;

 private:
  PlainInstrument instrument_;
  double now_ = 504.5;
};

// The second input is sampled so many intervals behind the base; of all others nothing is known.
SamplingOrder OrderOfTwo(int base, int second, float behind) {
  SamplingOrder order;
  order.Base = base;
  order.IntervalLow = 9.998;
  order.IntervalHigh = 10.002;
  order.Least.Fill(-1);
  order.Most.Fill(1);
  order.Least[base] = order.Most[base] = 0;
  order.Least[second] = behind - 0.01F;
  order.Most[second] = behind + 0.01F;
  return order;
}

// Nothing beside them is certain: one of them alone has lost a value, and the distance tells which;
// where both have or none has, nobody can know it.
TEST(ColumnEvidence, JudgesTwoInputsInDoubtByEachOther) {
  for (const bool is_first_lost : {false, true}) {
    for (const bool is_second_lost : {false, true}) {
      DoubtsAtOnce doubts({{4, 0.0}, {9, 3.0}}, OrderOfTwo(4, 9, 0.3F));
      doubts.Doubt(4, is_first_lost);
      doubts.Doubt(9, is_second_lost);
      doubts.LookUntilDecided();
      const auto expected = [&](bool is_lost) {
        return is_first_lost == is_second_lost ? ColumnVerdict::kUncertain
               : is_lost                       ? ColumnVerdict::kLost
                                               : ColumnVerdict::kNotLost;
      };
      EXPECT_EQ(doubts.evidence.VerdictOf(4), expected(is_first_lost)) << is_second_lost;
      EXPECT_EQ(doubts.evidence.VerdictOf(9), expected(is_second_lost)) << is_first_lost;
    }
  }
}

// The distance of the one that is certain is not known: each of the others may be sampled behind
// it, or before it with a value lost.
TEST(ColumnEvidence, JudgesAllButOneByEachOther) {
  for (const int lost : {0, 5, 9}) {
    DoubtsAtOnce doubts({{2, 0.0}, {5, 4.0}, {9, 7.0}}, OrderOfTwo(5, 9, 0.3F));
    doubts.Doubt(5, lost == 5);
    doubts.Doubt(9, lost == 9);
    doubts.LookUntilDecided();
    for (const int input : {5, 9}) {
      const ColumnVerdict expected = lost == 0       ? ColumnVerdict::kUncertain
                                     : lost == input ? ColumnVerdict::kLost
                                                     : ColumnVerdict::kNotLost;
      EXPECT_EQ(doubts.evidence.VerdictOf(input), expected) << input << " of lost " << lost;
    }
  }
}

TEST(ColumnEvidence, IsNeverWrongAboutSeveralDoubtsAtOnce) {
  int decided = 0;
  int uncertain = 0;
  for (unsigned seed = 1; seed <= 600; ++seed) {
    std::mt19937 random(seed);
    const auto inputs = DrawInputs(random, 2 + static_cast<int>(random() % 5));
    std::map<int, double> places;
    for (const int input : inputs) {
      places[input] = 0.01 * static_cast<double>(random() % 930);
    }
    const double behind = (places[inputs[1]] - places[inputs[0]]) / 10;
    DoubtsAtOnce doubts(places, seed % 4 == 0
                                    ? SamplingOrder()
                                    : OrderOfTwo(inputs[0], inputs[1], static_cast<float>(behind)));
    std::map<int, bool> lost;
    for (const int input : inputs) {
      if (random() % 3 != 0) {
        lost[input] = random() % 2 == 0;
        doubts.Doubt(input, lost[input]);
      }
    }
    doubts.LookUntilDecided();
    for (const auto& [input, is_lost] : lost) {
      const ColumnVerdict verdict = doubts.evidence.VerdictOf(input);
      (verdict == ColumnVerdict::kUncertain ? uncertain : decided) += 1;
      EXPECT_NE(verdict, is_lost ? ColumnVerdict::kNotLost : ColumnVerdict::kLost)
          << "seed " << seed << ", input " << input;
    }
  }
  EXPECT_GT(decided, 300) << uncertain;
  std::printf("%d decided, %d uncertain\n", decided, uncertain);
}

TEST(ColumnEvidence, ServesARecordingOfOneInputByTime) {
  Tally tally;
  for (unsigned seed = 1000; seed <= 1100; ++seed) {
    Trial trial = DrawTrial(seed);
    trial.inputs = {static_cast<int>(1 + (seed % 15))};
    trial.learns = true;
    trial.spoilt = 0.1;
    Host host(trial);
    host.Run(60, tally);
  }
  EXPECT_EQ(tally.wrong, 0) << tally.first_wrong;
  EXPECT_GT(tally.lost, 100);
  EXPECT_LT(tally.uncertain * 100, tally.doubts * 5) << tally.uncertain << " of " << tally.doubts;
}

TEST(ColumnEvidence, IsNeverWrongWhateverTheOrderAndTheLine) {
  std::map<std::string, Tally> tallies;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    const Trial trial = DrawTrial(seed);
    Tally tally;
    Host host(trial);
    for (int part = 0; part < 3; ++part) {
      host.Run(25, tally);
      if (part < 2 && seed % 3 == 0) {
        host.Restart(trial.interval * (seed % 7) * 0.9);
      }
    }
    EXPECT_EQ(tally.wrong, 0) << tally.first_wrong;
    Tally& sum = tallies[trial.inputs.size() == 1 ? "one input"
                         : trial.learns           ? "learned"
                                                  : "not learned"];
    sum.doubts += tally.doubts;
    sum.lost += tally.lost;
    sum.uncertain += tally.uncertain;
  }
  for (const auto& [name, tally] : tallies) {
    std::printf("%s: %d doubts, %d lost, %d uncertain\n", name.c_str(), tally.doubts, tally.lost,
                tally.uncertain);
  }
}

// Set m is made at 10 m seconds. Set 6 is gone with a restart, behind which the instrument keeps
// its phase.
TEST(ColumnEvidence, RemembersARestartThoughTheNextSampleComesAtItsTime) {
  ColumnEvidence evidence;
  evidence.Begin({3}, 10);
  const auto count = [&evidence](int number, int at) {
    const ColumnEvidence::Time when = std::chrono::milliseconds(at);
    evidence.NoteCount(3, number, {when, when});
  };
  for (int set = 1; set <= 5; ++set) {
    count(0, 10000 * set - 100);
    count(1, 10000 * set + 100);
    evidence.NoteTaken(3, {std::chrono::seconds(10 * set + 1), std::chrono::seconds(10 * set + 1)});
  }
  count(0, 61000);
  count(0, 62000);
  EXPECT_TRUE(evidence.SawRestart()) << "set 6 must be there";
  count(1, 70100);
  EXPECT_TRUE(evidence.SawRestart());
}

}  // namespace
}  // namespace tavrel
