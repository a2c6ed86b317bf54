// Recordings whose buffers in the instruments come near their ends, on a line whose exchanges take
// the time that they take at 4800 baud.
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/bench_program.h"
#include "tests/support/grid_run.h"
#include "tests/support/sampling_line.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;

class BufferDanger : public testing::Test {
 protected:
  struct Recording {
    int slot;
    int inet;
    std::vector<int> inputs;
    int interval;  // seconds
    int stored;    // sets that wait at the start
  };

  static std::string NameOf(int slot) { return std::string("M260314") + char('@' + slot) + ".OVN"; }

  static UnitRecord HeaderOf(const Recording& recording) {
    UnitRecord unit = BenchProgram::Header(recording.inet, recording.slot % 2 + 1, 0, true);
    unit.UnitChannels = static_cast<std::int16_t>(recording.inputs.size());
    for (const int input : recording.inputs) {
      unit.UnitRole.at(static_cast<std::size_t>(input - 1)) = 1;
    }
    const bool is_fast = recording.interval % 10 != 0;
    unit.UnitFast = is_fast ? 1 : 0;
    unit.UnitInterval =
        static_cast<std::int16_t>(is_fast ? recording.interval : recording.interval / 10);
    return unit;
  }

  // All inputs of a recording are sampled together, each recording at a phase of its own.
  void Install(const Recording& recording) {
    bench.Install(recording.slot, NameOf(recording.slot), HeaderOf(recording));
    const nanoseconds phase = seconds(recording.interval) * recording.slot / 13;
    for (const int input : recording.inputs) {
      line.Sample(recording.inet, input, seconds(recording.interval), phase, recording.stored);
    }
    recordings.push_back(recording);
  }

  // Two slots on each of six instruments, of two inputs each. Half of them record input 1.
  void InstallTwelve(int interval, int stored) {
    for (int slot = 1; slot <= kSlots; ++slot) {
      const int inet = (slot + 1) / 2;
      const std::vector<int> inputs = slot % 2 == 0 ? std::vector{1, 2} : std::vector{7, 15};
      Install({slot, inet, inputs, interval, stored});
    }
  }

  bool AllAreRead() {
    return std::ranges::all_of(recordings, [this](const Recording& recording) {
      return line.Waiting(recording.inet, recording.inputs.front()) <= 1;
    });
  }

  // Each file holds its values from the first one on, without a gap, the first set twice, and all
  // inputs of a row are of one set.
  void ExpectWholeFiles(int at_least) {
    for (const Recording& recording : recordings) {
      const auto samples = bench.Samples(NameOf(recording.slot));
      const std::size_t columns = recording.inputs.size();
      ASSERT_GE(samples.size() / columns, static_cast<std::size_t>(at_least)) << recording.slot;
      for (std::size_t word = 0; word < samples.size(); ++word) {
        const std::size_t row = word / columns;
        ASSERT_EQ(samples[word], std::max<std::size_t>(row, 1))
            << "slot " << recording.slot << ", row " << row;
      }
    }
  }

  BenchProgram bench;
  SamplingLine line{bench.clock, bench.port};
  std::vector<Recording> recordings;
};

TEST_F(BufferDanger, TwelveNearlyFullBuffersLoseNoSet) {
  InstallTwelve(10, 860);
  bench.Start();
  GridRun run(bench);
  EXPECT_TRUE(run.Until([this] { return AllAreRead(); }, minutes(40)));
  EXPECT_EQ(line.Overrun(), 0);
  ExpectWholeFiles(861);
}

}  // namespace
}  // namespace tavrel
