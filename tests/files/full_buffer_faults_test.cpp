#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "tests/files/announced_rows.h"
#include "tests/files/recording_bench.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Each exchange of the recorded inputs fails with a probability, in one of both ways.
class BadLine {
 public:
  BadLine(RecordingBench& bench, unsigned seed, double share)
      : bench_(bench), random_(seed), share_(share) {
    bench.line.on_command = [this](const std::string& each) { Hear(each); };
  }

  void End() {
    bench_.line.on_command = [](const std::string&) {};
  }

 private:
  void Hear(const std::string& command) {
    if (std::uniform_real_distribution(0.0, 1.0)(random_) < share_) {
      (random_() % 2 == 0 ? bench_.line.swallowed : bench_.line.dropped).insert(command);
    }
  }

  RecordingBench& bench_;
  std::mt19937 random_;
  double share_;
};

struct Story {
  Sampling sampling;
  std::vector<int> inputs;
  int interval;
};

// The machine is off for longer than the buffer lasts, and exchanges fail behind it.
void Tell(const Story& story, unsigned seed, double share) {
  RecordingBench bench(story.sampling, story.inputs, story.interval);
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(8));
  std::mt19937 random(seed);
  for (int outage = 0; outage < 2; ++outage) {
    const int rows = bench.fixture.state.SampleCount[kSlot];
    bench.fixture.clock.Advance(seconds(950 * story.interval) + milliseconds(random() % 10000));
    bench.KillAndStart();
    bench.fixture.engine.TakeUp(kSlot, std::nullopt);
    BadLine line(bench, static_cast<unsigned>(random()), share);
    bench.Run(20);
    line.End();
    ASSERT_TRUE(bench.RunToRows(rows + 920));
    bench.Run(5 * story.interval);
  }
  EXPECT_EQ(FirstMixedRow(bench), 0)
      << story.sampling.order << " " << story.sampling.distance << ", " << story.inputs.size()
      << " inputs each " << story.interval << " s, seed " << seed << ", share " << share << [&] {
           std::string all;
           for (const std::string& text : bench.fixture.Announced()) {
             all += "\n  " + text;
           }
           return all;
         }();
}

// Killed while room is made or the columns are compared: some inputs have given up a value more
// than others by then, and the buffer is not full any more.
TEST(FullBuffer, ShiftsNoColumnUntoldWhenTheProgramIsKilledMeanwhile) {
  const std::array<Sampling, 3> samplings = {Sampling{"together", 0}, Sampling{"ascending", 330},
                                             Sampling{"descending", 30}};
  for (const Sampling& sampling : samplings) {
    for (int exchanges = 1; exchanges <= 40; ++exchanges) {
      RecordingBench bench(sampling, {2, 7, 15}, 10);
      bench.wall_runs = true;
      bench.Start();
      ASSERT_TRUE(bench.RunToRows(8));
      const int rows = bench.fixture.state.SampleCount[kSlot];
      bench.fixture.clock.Advance(seconds(9500) + milliseconds(370 * exchanges));
      bench.KillAndStart();
      bench.fixture.engine.TakeUp(kSlot, std::nullopt);
      int heard = 0;
      bench.line.on_command = [&](const std::string&) { ++heard; };
      while (heard < exchanges) {
        bench.Run(0.05);
      }
      bench.KillAndStart();
      bench.fixture.engine.TakeUp(kSlot, std::nullopt);
      ASSERT_TRUE(bench.RunToRows(rows + 20));
      EXPECT_EQ(FirstMixedRow(bench), 0)
          << sampling.order << ", killed after " << exchanges << " exchanges";
      const ToldSets told = ToldLost(bench);
      EXPECT_GT(told.sets, 0) << sampling.order << ", " << exchanges;
      EXPECT_NEAR(told.sets, 950 - 896, told.about + 8) << sampling.order << ", " << exchanges;
    }
  }
}

TEST(FullBufferOnABadLine, NeverShiftsAColumnUntold) {
  const std::array<Sampling, 6> samplings = {
      Sampling{"together", 0},    Sampling{"ascending", 30},   Sampling{"ascending", 330},
      Sampling{"descending", 30}, Sampling{"descending", 330}, Sampling{"random", 200}};
  unsigned seed = 0;
  for (const Sampling& sampling : samplings) {
    for (const int interval : {2, 10}) {
      for (const double share : {0.02, 0.1, 0.3}) {
        ++seed;
        Tell({sampling, seed % 2 == 0 ? std::vector{2, 7, 15} : std::vector{1, 3}, interval}, seed,
             share);
      }
    }
  }
}

}  // namespace
}  // namespace tavrel
