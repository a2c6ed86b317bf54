#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/files/announced_rows.h"
#include "tests/files/recording_bench.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

bool TellsOfLostSets(RecordingBench& bench) {
  const auto announced = bench.fixture.Announced();
  return std::any_of(announced.begin(), announced.end(), [](const std::string& text) {
    return text.find("before this row ") != std::string::npos;
  });
}

// A recording that the program has taken up: it has not seen its first samples.
void TakeUp(RecordingBench& bench, int rows) {
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(3));
  std::filesystem::remove(bench.fixture.directory.File(kHeldName));
  bench.KillAndStart();
  while (bench.fixture.state.SampleCount[kSlot] < rows) {
    bench.Run(0.05);
  }
}

struct Pace {
  int interval;  // seconds
  int rows;      // until the order of the inputs is learned
};

class RestartedLine : public testing::TestWithParam<Pace> {};

INSTANTIATE_TEST_SUITE_P(Intervals, RestartedLine,
                         testing::Values(Pace{1, 40}, Pace{3, 24}, Pace{10, 14}),
                         [](const auto& each) { return std::to_string(each.param.interval); });

// The instrument is switched off and on at any moment, and is back sooner or later. The program
// goes on meanwhile, or stands still until the series that begin anew have their first samples.
TEST_P(RestartedLine, MixesAndForgetsNoSetsWithoutTellingSo) {
  const int interval = GetParam().interval;
  const std::array<Sampling, 6> samplings = {
      Sampling{"together", 0},     Sampling{"ascending", 30},   Sampling{"ascending", 330},
      Sampling{"descending", 200}, Sampling{"descending", 330}, Sampling{"random", 200}};
  int turn = 0;
  int runs = 0;
  int untold = 0;
  for (const Sampling& sampling : samplings) {
    for (const int later : {400, 900, 1400, 4000, 7000, 14000}) {
      ++turn;
      for (int phase = turn % 5; phase < 24; phase += 5) {
        ++runs;
        const bool is_pair = phase % 2 == 0;
        RecordingBench bench(sampling, is_pair ? std::vector{2, 6} : std::vector{1, 5, 9},
                             interval);
        TakeUp(bench, GetParam().rows);
        bench.Run(interval > 1 ? 9 + 0.05 * phase : 0.05 * phase);
        bench.line.Restart(milliseconds(later));
        if (turn % 2 == 0) {
          bench.fixture.clock.Advance(milliseconds(later + 300));
        }
        ASSERT_TRUE(bench.RunToRows(GetParam().rows + 30));
        EXPECT_EQ(FirstMixedRow(bench), 0)
            << sampling.order << " " << sampling.distance << ", phase " << phase << ", back after "
            << later << " ms, stands still: " << (turn % 2 == 0);
        untold += MissingSets(bench) == 0 || TellsOfLostSets(bench) ? 0 : 1;
      }
    }
  }
  // A set that was made and forgotten between two reads, with the next one at its time, leaves no
  // trace.
  EXPECT_LE(untold, 1) << "of " << runs << " restarts";
}

// Restarts at any moment, one after the other, each sooner than the next set is made or the pump
// looks for one: hardly a set is ever handed over, and no comparison of columns ends undisturbed.
TEST(Restart, AgainAndAgainIsToldWithAllSetsThatAreLost) {
  const std::array<Sampling, 3> samplings = {Sampling{"together", 0}, Sampling{"ascending", 20},
                                             Sampling{"random", 50}};
  for (const Sampling& sampling : samplings) {
    for (unsigned seed = 0; seed < 60; ++seed) {
      RecordingBench bench(sampling, seed % 2 == 0 ? std::vector{2, 6} : std::vector{1, 5, 9}, 3);
      bench.Start();
      bench.Run(25);
      std::mt19937 random(seed);
      for (int time = 0; time < 10 + static_cast<int>(seed % 30); ++time) {
        bench.Run(0.7 + 0.05 * static_cast<double>(random() % 40));
        bench.line.RestartInPlace();
      }
      ASSERT_TRUE(bench.RunToRows(bench.fixture.state.SampleCount[kSlot] + 20));
      const ToldSets told = ToldLost(bench);
      EXPECT_EQ(FirstMixedRow(bench), 0) << sampling.order << ", seed " << seed;
      EXPECT_NEAR(told.sets, MissingSets(bench), told.about) << sampling.order << ", seed " << seed;
    }
  }
}

// Each set is forgotten before anybody has counted it: no count falls, and the comparison is given
// up while the interval is not known. From there on the wall clock counts what is lost, each set
// once.
TEST(Restart, BehindEachSetIsToldWithAllSetsThatAreLost) {
  constexpr std::array kStorms = {std::pair(2, 4),  std::pair(2, 12), std::pair(3, 7),
                                  std::pair(3, 12), std::pair(10, 7), std::pair(10, 30)};
  for (const auto& [interval, sets] : kStorms) {
    RecordingBench bench({"together", 0}, {1, 5, 9}, interval);
    bench.wall_runs = true;
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(14));
    for (int set = 0; set < sets; ++set) {
      const int before = bench.line.Sets();
      while (bench.line.Sets() == before) {
        bench.Run(0.05);
      }
      bench.line.RestartInPlace();
    }
    ASSERT_TRUE(bench.RunToRows(bench.fixture.state.SampleCount[kSlot] + 20));
    const ToldSets told = ToldLost(bench);
    EXPECT_EQ(FirstMixedRow(bench), 0) << sets << " sets each " << interval << " s";
    EXPECT_NEAR(told.sets, MissingSets(bench), told.about)
        << sets << " sets each " << interval << " s";
  }
}

// The interval is not known yet; what waits has been counted.
TEST(Restart, WithinTheFirstSetsIsToldWithAllSetsThatAreLost) {
  const std::array<Sampling, 4> samplings = {Sampling{"together", 0}, Sampling{"ascending", 330},
                                             Sampling{"random", 200}, Sampling{"descending", 700}};
  int runs = 0;
  int untold = 0;
  for (const int interval : {3, 10}) {
    for (const Sampling& sampling : samplings) {
      for (int phase = 1; phase < 40; phase += 3) {
        RecordingBench bench(sampling, phase % 2 == 0 ? std::vector{1, 5, 9} : std::vector{2, 6},
                             interval);
        bench.wall_runs = true;
        bench.Start();
        bench.Run(0.05 * interval * phase);
        bench.line.RestartInPlace();
        ASSERT_TRUE(bench.RunToRows(30));
        ++runs;
        const ToldSets told = ToldLost(bench);
        const int missing = MissingSets(bench);
        const std::string where = sampling.order + ", phase " + std::to_string(phase);
        EXPECT_EQ(FirstMixedRow(bench), 0) << where;
        untold += missing > 0 && told.sets == 0 ? 1 : 0;
        EXPECT_LE(told.sets, missing + told.about) << where;
      }
    }
  }
  EXPECT_EQ(untold, 0) << "of " << runs << " restarts";
}

// Killed while the columns are compared behind a restart that came in the middle of a set.
TEST(Restart, ShiftsNoColumnUntoldWhenTheProgramIsKilledMeanwhile) {
  int runs = 0;
  const std::array<Sampling, 3> samplings = {Sampling{"together", 0}, Sampling{"ascending", 330},
                                             Sampling{"descending", 30}};
  for (const Sampling& sampling : samplings) {
    for (int phase = 0; phase < 60; ++phase) {
      RecordingBench bench(sampling, {1, 5, 9}, 3);
      bench.wall_runs = true;
      TakeUp(bench, 24);
      bench.Run(0.05 * phase);
      bench.line.Restart(milliseconds(400 + 70 * phase));
      while (!bench.fixture.state.ColumnsInDoubt[kSlot] &&
             bench.fixture.state.SampleCount[kSlot] < 40) {
        bench.Run(0.05);
      }
      bench.Run(0.05 * (phase % 12));
      const auto compared = bench.fixture.state.Columns[kSlot].Compared;
      runs += compared == ColumnMemory::Comparison::kRestart ? 1 : 0;
      bench.KillAndStart();
      ASSERT_TRUE(bench.RunToRows(bench.fixture.state.SampleCount[kSlot] + 20));
      EXPECT_EQ(FirstMixedRow(bench), 0) << sampling.order << ", phase " << phase;
      EXPECT_TRUE(compared != ColumnMemory::Comparison::kRestart || MissingSets(bench) == 0 ||
                  TellsOfLostSets(bench))
          << sampling.order << ", phase " << phase;
    }
  }
  EXPECT_GT(runs, 50);
}

// So many sets were waiting when the instrument was switched off.
TEST(Restart, IsToldWithTheSetsThatAreLost) {
  for (const int input : {1, 8, 15}) {
    for (const int waiting : {1, 2, 5, 30}) {
      RecordingBench bench({"together", 0}, {2, input}, 10);
      TakeUp(bench, 14);
      const int before = bench.line.Sets();
      bench.fixture.clock.Advance(seconds(10 * waiting));
      ASSERT_EQ(bench.line.Sets() - before, waiting);
      bench.line.Restart(seconds(12));
      ASSERT_TRUE(bench.RunToRows(40));
      const std::string start = "the instrument was switched off and on; before this row about ";
      int told = 0;
      for (const std::string& text : bench.fixture.Announced()) {
        const std::size_t place = text.find(start);
        told += place != std::string::npos ? std::stoi(text.substr(place + start.size())) : 0;
      }
      // Those that were not made while it was off are lost, too.
      EXPECT_NEAR(told, waiting + 1, 1) << "input " << input;
    }
  }
}

}  // namespace
}  // namespace tavrel
