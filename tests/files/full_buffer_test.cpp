#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "tests/files/recording_bench.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

// The wall clock stands still in this test: a set is as old as there are sets waiting behind it.
TEST(FullBuffer, IsCountedFromTheSetThatWasWrittenLast) {
  RecordingBench bench({"descending", 500});
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(8));
  const std::int64_t steady = bench.room.state.Columns[kSlot].LastSet;
  bench.room.clock.Advance(seconds(3000));
  ASSERT_TRUE(bench.RunToRows(9));
  const std::int32_t rows = bench.room.state.SampleCount[kSlot];
  const std::int64_t waiting = (steady - bench.room.state.Columns[kSlot].LastSet) / 10;
  EXPECT_NEAR(static_cast<double>(waiting), 308 - rows, 1);
}

// Where the order is not known the columns cannot be compared before the buffer is full again. It
// is then met full a second time, with the other columns given up; each time costs three sets.
TEST(FullBuffer, IsNotGivenRoomAgainAndAgainWhereTheColumnsCannotBeCompared) {
  RecordingBench bench({"descending", 200}, {3, 11}, 2);
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(3));
  std::filesystem::remove(bench.room.directory.File(kHeldName));
  bench.KillAndStart();
  ASSERT_TRUE(bench.RunToRows(8));
  const std::int32_t rows = bench.room.state.SampleCount[kSlot];
  bench.room.clock.Advance(seconds(2 * 950));
  int taken = 0;
  bench.line.on_command = [&](const std::string& each) {
    taken += each == "X0B?" && !bench.line.buffers[{1, 11}].empty() ? 1 : 0;
  };
  ASSERT_TRUE(bench.RunToRows(rows + 20));
  const int written = bench.room.state.SampleCount[kSlot] - rows;
  EXPECT_GE(taken, written);
  EXPECT_LE(taken - written, 2 * FullBuffer::kMostSets + 1) << "one may be in hand";
}

}  // namespace
}  // namespace tavrel
