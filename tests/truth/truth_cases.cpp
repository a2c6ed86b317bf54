#include "tests/truth/truth_cases.h"

#include <array>
#include <csignal>
#include <string>

namespace tavrel {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::sys_days;

// Moments of Central Europe, in universal time.
constexpr std::chrono::sys_seconds kEndOfSummerTime = sys_days(2026y / 10 / 25) + hours(1);
constexpr std::chrono::sys_seconds kBeginOfSummerTime = sys_days(2027y / 3 / 28) + hours(1);
constexpr seconds kPatience{120};  // a comparison of columns may take many intervals
constexpr seconds kToKnowThePace{25};
constexpr int kSetsToClimb = 60;
constexpr int kBuffer = 896;  // sets that an instrument holds

constexpr std::chrono::sys_seconds kMidnight = sys_days(2026y / 3 / 14) + hours(23);

using Action = std::function<void(TruthRun&, int)>;

// A fault of the line for so many seconds.
Action Faults(const std::string& fault) {
  return [fault](TruthRun& run, int duration) {
    run.Tell("fault all " + fault);
    run.GoOn(seconds(duration));
    run.Tell("fault all none");
  };
}

// Several faults one after the other, each for so many seconds.
Action FaultsInTurn(const std::vector<std::string>& faults) {
  return [faults](TruthRun& run, int duration) {
    for (const std::string& fault : faults) {
      Faults(fault)(run, duration);
    }
  };
}

// The sets are several seconds apart: a machine so busy that the program stands still in the middle
// of a set, until the series that began anew has its first sample, leaves nothing that shows the
// restart.
// The program has to know the pace of the sets before it can tell that some are missing.
void RestartInstrument(TruthRun& run, int times) {
  run.GoOn(kToKnowThePace);
  for (int time = 0; time < times; ++time) {
    run.GoOn(milliseconds(700 + run.Draw(2000)));
    run.Tell("restart 1");
  }
}

// The program finds its port again on its ten-second tick.
void PullOnce(TruthRun& run, milliseconds time) {
  run.GoOn(milliseconds(run.Draw(1500)));
  run.Tell("unplug");
  run.NoteCut();
  run.GoOn(time);
  run.Tell("plug");
  run.GoOnUntilRowsCome(kPatience);
}

void Replug(TruthRun& run, int times) {
  for (int time = 0; time < times; ++time) {
    PullOnce(run, milliseconds(run.Draw(1500)));
  }
}

Action Pulled(milliseconds duration) {
  return [duration](TruthRun& run, int times) {
    for (int time = 0; time < times; ++time) {
      PullOnce(run, duration);
    }
  };
}

// So many percent of all exchanges, in equal shares: requests and replies lost, replies garbled,
// cut and late.
Action Spoilt(int percent) {
  return [percent](TruthRun& run, int duration) {
    const std::string share = std::to_string(percent / 500.0);
    for (const char* fault :
         {"lost-request ", "lost-reply ", "garbage ", "cut-value ", "late-reply 150/"}) {
      run.Tell("fault all " + (fault + share));
    }
    run.GoOn(seconds(duration));
    run.Tell("fault all none");
  };
}

// A screen of the service and what is done in it; a key is pressed every so many seconds.
struct ScreenUse {
  int entry;  // of the menu, from 1
  const char* title;
  seconds between_keys;
  std::vector<std::string> keys;  // the last one leaves the screen
};

// Every screen of the service in turn. The tests of the firmware ask first, for a recording is on;
// the browser reads its registers again twice; an output is switched on; the terminal asks for a
// temperature.
void UseServiceScreens(TruthRun& run, int times) {
  const std::vector<ScreenUse> uses = {
      {1, "QS", 3s, {"Escape"}},
      {2, "COM1", 8s, {"Escape"}},
      {3, "Test +of +Memory", 4s, {"Left", "Return", "Escape"}},
      {4, "Test of Outputs", 3s, {"Tab", "Down", "Up", "Escape"}},
      {5, "Test +of +Watchdog", 4s, {"Left", "Return", "Escape"}},
      {6, "320", 22s, {"F5", "F5", "Escape"}},
      {7, "HD647180", 10s, {"Escape"}},
      {8, "Terminal", 1s, {"Y", "0", "2", "question", "Tab", "Escape"}},
  };
  for (int time = 0; time < times; ++time) {
    for (const ScreenUse& use : uses) {
      run.UseScreen(use.entry, use.title, use.keys, use.between_keys);
    }
  }
}

// Ovens that are switched on stand still at first: where two sets are alike nobody can tell which
// of them is in a row.
void LetTheOvensClimb(TruthRun& run) {
  run.SleepForSets(kSetsToClimb);
  run.GoOnUntilCaughtUp();
}

// The machine is switched off for so many sets. Where it comes up between two sampling instants
// is a matter of chance.
Action OffFor(int sets) {
  return [sets](TruthRun& run, int times) {
    LetTheOvensClimb(run);
    for (int time = 0; time < times; ++time) {
      run.GoOnUntilCaughtUp();
      run.GoOn(milliseconds(run.Draw(1500)));
      run.Kill();
      run.SleepForSets(sets);
      run.Start();
      run.GoOnUntilCaughtUp();
    }
  };
}

// The machine sleeps for so many sets with the program in it.
Action AsleepFor(int sets) {
  return [sets](TruthRun& run, int times) {
    LetTheOvensClimb(run);
    for (int time = 0; time < times; ++time) {
      run.GoOn(milliseconds(run.Draw(1500)));
      run.SleepForSets(sets);
      run.GoOnUntilCaughtUp();
    }
  };
}

// A month, for the ledger: the machine sleeps for days, and the instrument's clock is slow by
// nearly all that two clocks may differ. Without what the ledger learns of it that would be a lost
// set.
constexpr int kSecondsOfSeldomSets = 600;
constexpr int kSetsOfMonth = 31 * 24 * 3600 / kSecondsOfSeldomSets;
constexpr int kPartsOfMonth = 12;

void PassAMonth(TruthRun& run, int) {
  constexpr double kSlow = 190;  // ppm
  for (int part = 0; part < kPartsOfMonth; ++part) {
    run.SleepForSets(kSetsOfMonth / kPartsOfMonth, kSlow);
    run.GoOnUntilCaughtUp();
  }
}

Bench SeldomSets() {
  Bench bench;
  bench.recordings = Recordings::kSingle;
  bench.interval = kSecondsOfSeldomSets;
  bench.speedup = 1;
  bench.slept_sets = kSetsOfMonth;
  bench.is_seldom = true;
  bench.clock = OwnClock::kAll;
  bench.begins_at = kMidnight - hours(14);
  return bench;
}

// On which `sets` sets pass while the machine is off or asleep, `interval` seconds apart.
Bench Sleepy(Recordings recordings, int sets, int interval) {
  Bench bench;
  bench.recordings = recordings;
  bench.interval = 10 * interval;
  bench.overruns = sets >= kBuffer;
  bench.slept_sets = sets + kSetsToClimb;
  bench.clock = OwnClock::kAll;
  bench.begins_at = kMidnight - hours(14);
  return bench;
}

void KillAndStart(TruthRun& run, int times) {
  for (int time = 0; time < times; ++time) {
    run.GoOn(milliseconds(run.Draw(1200)));
    run.Kill();
    run.Start();
  }
}

void FillDisk(TruthRun& run, int times) {
  for (int time = 0; time < times; ++time) {
    run.FillDisk();
    run.GoOn(milliseconds(8000 + run.Draw(3000)));
    run.FreeDisk();
    run.GoOnUntilRowsCome(kPatience);
  }
}

// Killed in the middle of it, too: what waits in the hand is in no row yet.
void FillDiskAndKill(TruthRun& run, int times) {
  for (int time = 0; time < times; ++time) {
    run.FillDisk();
    run.GoOn(milliseconds(3000 + run.Draw(1000)));
    run.Kill();
    run.FreeDisk();
    run.Start();
    run.GoOnUntilRowsCome(kPatience);
  }
}

// For so long that the files are to be closed and opened again meanwhile.
void TakeDataAway(TruthRun& run, int duration) {
  run.RenameData("tavdat", "tavdat.away");
  run.GoOn(seconds(duration / 2));
  run.SleepFor(seconds(1201));
  run.GoOn(seconds(duration - duration / 2));
  run.RenameData("tavdat.away", "tavdat");
}

// Somebody sets the clock, or summer time does. The recording does not go by it.
void SetTheClock(TruthRun& run, int times) {
  constexpr std::array kMoments = {kEndOfSummerTime, kEndOfSummerTime - hours(1),
                                   kEndOfSummerTime + hours(21), kBeginOfSummerTime};
  for (int time = 0; time < times; ++time) {
    run.SetClock(kMoments.at(static_cast<std::size_t>(time) % kMoments.size()) - seconds(1));
    run.GoOn(seconds(2));
    run.GoOnUntilRowsCome(kPatience);
  }
  run.Kill();
  run.SetClock(kEndOfSummerTime - hours(1));
  run.Start();
  run.GoOnUntilRowsCome(kPatience);
}

// The cycle stands still for the last minutes of a day. Over the first midnight the program
// sleeps, over the second one it wakes, and it is started just before the third. Only the wall
// clock is set: on the other one the instrument would have taken the sets of two days.
void PassMidnight(TruthRun& run, int) {
  run.SetClock(kMidnight - seconds(60));
  run.GoOn(seconds(2));
  run.SetClock(kMidnight + seconds(1));
  run.GoOnUntilRowsCome(kPatience);
  run.SetClock(kMidnight + days(1) - seconds(2));
  run.GoOnUntilRowsCome(kPatience);
  run.Kill();
  run.SetClock(kMidnight + days(2) - seconds(4));
  run.Start();
  run.GoOnUntilRowsCome(kPatience);
}

void Stop(TruthRun& run, int duration) {
  run.Signal(SIGSTOP);
  run.GoOn(seconds(duration));
  run.Signal(SIGCONT);
}

// Nothing but the recording, which has enough to do.
void Watch(TruthRun& run, int) {
  run.GoOn(seconds(1));
}

}  // namespace

const std::vector<TruthCase>& TruthCases() {
  static const std::vector<TruthCase> cases = {
      {"nothing bad", Watch, 1, 1, {}},
      {"lost requests", Faults("lost-request 0.2"), 8, 120, {}},
      {"lost replies", Faults("lost-reply 0.2"), 8, 120, {}},
      {"garbage", Faults("garbage 0.2"), 8, 120, {}},
      {"wrong length", Faults("wrong-length 0.2"), 8, 120, {}},
      {"non-hex", Faults("non-hex 0.2"), 8, 120, {}},
      {"refusals", Faults("refusal 0.2"), 8, 120, {}},
      {"stale replies", Faults("stale 0.2"), 8, 120, {}},
      {"late replies", Faults("late-reply 150"), 8, 60, {}},
      {"just late replies",
       FaultsInTurn({"late-reply 105", "late-reply 118", "late-reply 130"}),
       4,
       40,
       {}},
      {"byte by byte",
       FaultsInTurn({"byte-by-byte 8", "byte-by-byte 18", "byte-by-byte 30"}),
       4,
       40,
       {}},
      {"spoilt 10 %", Spoilt(10), 0, 60, {}},
      {"spoilt 20 %", Spoilt(20), 8, 60, {}},
      {"spoilt 40 %", Spoilt(40), 0, 60, {}},
      {"one input spoilt", Spoilt(20), 8, 60, {.recordings = Recordings::kSingle}},
      {"15 inputs spoilt", Spoilt(20), 0, 60, {.recordings = Recordings::kWide, .interval = 50}},
      {"15 inputs, lost replies",
       Faults("lost-reply 0.1"),
       0,
       60,
       {.recordings = Recordings::kWide, .interval = 50}},
      {"silent 10 minutes", Faults("silence on"), 10, 10, {.interval = 60, .speedup = 60}},
      {"instrument restarted", RestartInstrument, 4, 40, {.interval = 30}},
      {"port pulled", Replug, 1, 20, {}},
      {"pulled for 0.5 s", Pulled(500ms), 0, 3, {.foreign = true}},
      {"pulled for 5 s", Pulled(5s), 1, 2, {.foreign = true}},
      {"pulled for 30 s", Pulled(30s), 0, 1, {.foreign = true}},
      {"pulled for 90 s", Pulled(90s), 0, 1, {.foreign = true}, true},
      {"killed", KillAndStart, 8, 200, {}},
      {"disk full", FillDisk, 1, 8, {.small_disk = true}},
      {"disk full and killed", FillDiskAndKill, 2, 10, {.small_disk = true}},
      {"data away",
       TakeDataAway,
       12,
       30,
       {.interval = 50,
        .slept_sets = 240,
        .clock = OwnClock::kAll,
        .begins_at = kMidnight - hours(12)}},
      {"clock set",
       SetTheClock,
       1,
       20,
       {.clock = OwnClock::kWall, .begins_at = kEndOfSummerTime - hours(2)}},
      {"midnight",
       PassMidnight,
       1,
       1,
       {.clock = OwnClock::kWall, .begins_at = kMidnight - hours(1)}},
      {"service screens", UseServiceScreens, 1, 5, {}},
      {"asleep an hour", Stop, 12, 12, {.interval = 300, .speedup = 300}},
      {"backlog of 20 on 15",
       Watch,
       1,
       1,
       {.recordings = Recordings::kWide, .interval = 60, .speedup = 1, .backlog = 20}},
      {"backlog of 896 on 15",
       Watch,
       0,
       1,
       {.recordings = Recordings::kWide, .interval = 300, .backlog = 896},
       true},
      {"asleep for 950 sets", AsleepFor(950), 0, 3, Sleepy(Recordings::kThree, 3 * 950, 2), true},
      {"off for 950, two inputs", OffFor(950), 1, 3, Sleepy(Recordings::kPair, 3 * 950, 2), true},
      {"off for 950 sets", OffFor(950), 0, 3, Sleepy(Recordings::kThree, 3 * 950, 2), true},
      {"off for 860, one", OffFor(860), 0, 1, Sleepy(Recordings::kWide, 860, 10), true},
      {"off for 896, one", OffFor(896), 0, 1, Sleepy(Recordings::kWide, 896, 10), true},
      {"off for 1500, one", OffFor(1500), 0, 1, Sleepy(Recordings::kWide, 1500, 10), true},
      {"off for 1500, one input", OffFor(1500), 0, 1, Sleepy(Recordings::kSingle, 1500, 10), true},
      {"off for 860, twelve", OffFor(860), 0, 1, Sleepy(Recordings::kTwelve, 860, 10), true},
      {"off for 896, twelve", OffFor(896), 0, 1, Sleepy(Recordings::kTwelve, 896, 10), true},
      {"a month, slow clock", PassAMonth, 0, 1, SeldomSets(), true},
      {"off for 1500, twelve", OffFor(1500), 0, 1, Sleepy(Recordings::kTwelve, 1500, 10), true},
  };
  return cases;
}

}  // namespace tavrel
